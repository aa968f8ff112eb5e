// The records in records.sqlite: users with their private groups, folders and files, transfers. What has
// returned survives a crash and a power failure, unless it happened in a Transaction: then what was committed
// does.
//
//     Store::Transaction transaction(store);
//     const Item folder = store.folder(member, path, Store::Missing::Make);
//     store.add(task);
//     transaction.commit();                       // without it nothing has happened
//
// Everything throws Refusal(StorageFailed) when the records can not be read or written.
#pragma once

#include "host/cloudd/state.h"

#include <QHash>
#include <QSqlQuery>
#include <QString>
#include <QVariant>
#include <initializer_list>
#include <optional>
#include <utility>
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
    static constexpr char KeptKind = 't';   ///< of an id that somebody is told, to ask for the task later
    static constexpr char UnkeptKind = 'n'; ///< of the others

    QString id; ///< newId() of one of the kinds
    QString userId;
    QString source;
    QString folderId;
    QString name;            ///< wished; what the item is called in the end is the item's
    bool autoRename = false; ///< a taken name gets a number; else a file of that name gets a new version
    TaskStatus status = TaskStatus::Waiting; ///< Running is never recorded
    State state = State::Ok;
    qint64 transferred = 0; ///< bytes
    qint64 total = -1;      ///< bytes, or -1: not known yet
    QString itemId;         ///< of the file, when it has finished
    QString sha256;
};

class Store {
public:
    enum class Missing { Refuse, Make };

    class Transaction {
    public:
        /// Within another one it is a part of that.
        explicit Transaction(Store& store);
        ~Transaction();
        Transaction(const Transaction&) = delete;
        Transaction& operator=(const Transaction&) = delete;
        void commit();

    private:
        Store& m_store;
        bool m_open;
    };

    Store();
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    /// Opens or makes the file. Returns why it can not be used; it is then as it was, and nothing may be
    /// called.
    QString open(const QString& path);

    /// The user's records are made when there are none.
    Member member(const QString& userId);
    /// The folder "My Documents", which the records of a user have from the beginning.
    Item workspace(const Member& member);
    void setRoamingMode(const QString& userId, const QString& mode);

    /// What a cloud path or an id says, in the member's group. Throws Refusal(NotFound) and
    /// Refusal(WrongArguments).
    Item item(const Member& member, const QString& pathOrId);
    /// The same of a folder. Missing folders of a path can be made; throws Refusal(NameTaken) where a file is
    /// in the way.
    Item folder(const Member& member, const QString& pathOrId, Missing missing);
    Item itemOfId(const QString& id);
    std::optional<Item> child(const QString& folderId, const QString& name);
    /// So many at most, by name, after the name `after`.
    std::vector<Item> children(const QString& folderId, const QString& after, int most);
    /// Throws Refusal(WrongArguments) where the folder would be too deep.
    Item addFolder(const Item& parent, const QString& name);
    /// A new file, or a new version of the file of that name. Throws Refusal(NameTaken) when that is a
    /// folder.
    Item putFile(const Item& folder, const QString& name, qint64 size, const QString& sha256);
    /// The name itself when nothing in the folder has it, else numbered.
    QString freeName(const Item& folder, const QString& name);
    /// From the root folder, without a "/" in front.
    QString pathOf(const Item& item);
    /// True when a file has this content.
    bool isNamed(const QString& sha256);

    void add(const Task& task);
    /// Records how it ended. Of a user's ended tasks whose ids say so the last 1000 are kept.
    void end(const Task& task);
    std::optional<Task> task(const QString& userId, const QString& id);
    /// In the order in which they were added.
    std::vector<Task> unfinishedTasks();

private:
    /// What a statement has found. Until it is destroyed (or finished) a read transaction may be open; then
    /// the prepared statement waits for its next use.
    class Rows {
    public:
        Rows(Store& store, const QByteArray& statement, const QSqlQuery& query)
            : m_store(&store)
            , m_statement(statement)
            , m_query(query)
        {
        }
        Rows(Rows&& other) noexcept
            : m_store(std::exchange(other.m_store, nullptr))
            , m_statement(std::move(other.m_statement))
            , m_query(other.m_query)
        {
        }
        Rows& operator=(Rows&&) = delete;
        ~Rows();

        bool next() { return m_query.next(); }
        QVariant value(int column) const { return m_query.value(column); }
        void finish() { m_query.finish(); }

    private:
        Store* m_store;
        QByteArray m_statement;
        QSqlQuery m_query;
    };

    QString openRecords(const QString& path);
    QSqlQuery prepared(const QByteArray& statement);
    Rows run(const QByteArray& statement, std::initializer_list<QVariant> values = {});
    Item insert(const Item& item);

    QString m_connection;
    QHash<QByteArray, QSqlQuery> m_prepared; ///< by their texts, those that nobody uses now
    int m_depth = 0;                         ///< of transactions
};

/// Not guessable, and not used before.
QString newId(char kind);

} // namespace cloudd
