// The database records.sqlite: users with their private groups, folders and files, transfers. A change
// survives a crash and a power failure once its function has returned, or, in a Transaction, once that was
// committed.
//
//     Store::Transaction transaction(store);
//     const Item folder = store.findFolder(member, path, Store::Missing::Create);
//     store.add(task);
//     transaction.commit();                       // rolled back without it
//
// All functions throw Error(StorageFailed) when the database can not be read or written.
#pragma once

#include "host/cloudd/database.h"
#include "host/cloudd/state.h"

#include <optional>
#include <vector>

namespace cloudd {

/// A user, with the private group.
struct Member {
    QString userId;
    QString groupId;
    QString groupName;
    QString rootId;        ///< the group's root folder
    qint64 createTime = 0; ///< ms since 1970
    QString roamingMode;
};

/// A folder or a file of a group.
struct Item {
    QString id;
    QString groupId;
    QString parentId; ///< empty for a root folder
    QString name;     ///< empty for a root folder
    bool isFolder = false;
    qint64 size = 0; ///< bytes
    QString sha256;
};

enum class TaskStatus { Waiting = 0, Finished = 1, Failed = 2, Running = 3, Cancelled = 6 };

/// A transfer of a file of this machine into a folder.
struct Task {
    static constexpr char PublicKind = 't';   ///< of an id that a client gets, to query the task later
    static constexpr char InternalKind = 'n'; ///< of all other ids

    QString id; ///< makeId() of one of the kinds
    QString userId;
    QString source;
    QString folderId;
    QString name;                            ///< as requested; the item may get another one
    bool autoRename = false;                 ///< numbers a name that is taken, instead of adding a version
    TaskStatus status = TaskStatus::Waiting; ///< Running is never recorded
    State state = State::Ok;
    qint64 transferred = 0; ///< bytes
    qint64 total = -1;      ///< bytes, or -1: not known yet
    QString itemId;         ///< of the file, when it has finished
    QString sha256;
};

/// What is known of a file since it was set up as a web document.
struct LabelStatus {
    QString label;
    QString setupId;       ///< of whoever set it up last
    qint64 changeTime = 0; ///< ms since 1970
};

/// A file, and when it got its present version.
struct ChangedFile {
    Item file;
    qint64 changeTime = 0; ///< ms since 1970
};

/// What is in a folder, at any depth.
struct Usage {
    qint64 files = 0;
    qint64 folders = 0; ///< without itself
    qint64 bytes = 0;
};

class Store {
public:
    enum class Missing { Fail, Create };

    /// A nested one is part of the outermost.
    class Transaction : public Database::Transaction {
    public:
        explicit Transaction(Store& store)
            : Database::Transaction(store.m_database)
        {
        }
    };

    /// Opens or makes the file. Returns the error; the file is unchanged then, and nothing else may be
    /// called.
    QString open(const QString& path);

    /// Adds the user, with the private group and its folders, when there is none.
    Member ensureMember(const QString& userId);
    /// The folder "My Documents", which every user has; added where it is missing.
    Item ensureWorkspace(const Member& member);
    void setRoamingMode(const QString& userId, const QString& mode);

    /// By a cloud path or an id, in the member's group. Throws Error: NotFound, WrongArguments.
    Item findItem(const Member& member, const QString& pathOrId);
    /// The same for a folder; can make missing folders of a path. Throws Error(NameTaken) as well, when a
    /// name in the path is that of a file.
    Item findFolder(const Member& member, const QString& pathOrId, Missing missing);
    Item findItemById(const QString& id);
    std::optional<Item> findChild(const QString& folderId, const QString& name);
    /// At most `most` items, sorted by name, after the name `after`.
    std::vector<Item> listChildren(const QString& folderId, const QString& after, int most);
    /// Throws Error(WrongArguments) where the folder would be too deep.
    Item addFolder(const Item& parent, const QString& name);
    /// Adds a file, or a new version of the file of that name. Throws Error(NameTaken) when that is a folder.
    Item putFile(const Item& folder, const QString& name, qint64 size, const QString& sha256);
    /// The name, with a number when an item of the folder has it already.
    QString findFreeName(const Item& folder, const QString& name);
    /// Relative to the root folder.
    QString findPath(const Item& item);
    /// Removes a file, or a folder that is empty. False when it is in use: a folder with items, with uploads under way
    /// or that a sync folder belongs to.
    bool removeItem(const Item& item);
    Usage measure(const Item& folder);
    /// The member's files whose name contains `part` (all for an empty one), the last changed first.
    std::vector<ChangedFile> listChangedFiles(const Member& member, const QString& part, int most);
    /// Whether a file has this content.
    bool isContentUsed(const QString& sha256);

    /// The SHA-256 of the local copy of a file that was made last; empty when there was none.
    QString findLocalCopy(const QString& itemId);
    void recordLocalCopy(const QString& itemId, const QString& sha256);

    std::optional<LabelStatus> findLabelStatus(const QString& itemId);
    /// Returns what it has recorded.
    LabelStatus recordLabelStatus(const QString& itemId, const QString& label, const QString& setupId);

    void add(const Task& task);
    /// Records how it ended. Ended tasks of PublicKind are kept, the last 1000 of a user; others are deleted.
    void recordEnd(const Task& task);
    std::optional<Task> findTask(const QString& userId, const QString& id);
    /// In the order in which they were added.
    std::vector<Task> listUnfinishedTasks();

    /// For the tables of SyncRecords.
    Database& database() { return m_database; }

private:
    QString openRecords(const QString& path);
    Item insert(const Item& item);

    Database m_database;
};

/// A new random id, which can not be guessed.
QString makeId(char kind);

} // namespace cloudd
