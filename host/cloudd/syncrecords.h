// What is recorded of sync folders: folders of this machine that are kept in step with a folder of the cloud, and for
// each file and folder in them the version that both sides had when they were last equal.
//
//     for (const SyncFolder& folder : records.list(userId)) ...
//     records.recordEntry(folder.id, "a/b.txt", { ... });
//
// All functions throw Error(StorageFailed).
#pragma once

#include "host/cloudd/store.h"

#include <QMap>

namespace cloudd {

struct SyncFolder {
    static constexpr char IdKind = 's';

    QString id; ///< makeId(IdKind)
    QString userId;
    QString localPath; ///< absolute, without a "/" at its end
    QString cloudFolderId;
    QString kind;            ///< "folder", or "desktop": the user's desktop, at most one of a user
    qint64 lastSyncTime = 0; ///< ms since 1970; 0: never
    QString lastError;       ///< of the last sync, a word; empty when it has succeeded
};

/// The version of a file or folder that both sides had.
struct SyncEntry {
    bool isFolder = false;
    QString itemId;
    QString sha256;
    // Of the local file then. A file that they are true of still has that content. `changed` is 0 for one that has
    // changed too recently for its time stamps to say so.
    qint64 size = 0;
    qint64 inode = 0;
    qint64 modified = 0; ///< ns since 1970
    qint64 changed = 0;
};

class SyncRecords {
public:
    explicit SyncRecords(Store& store)
        : m_database(store.database())
    {
    }

    std::vector<SyncFolder> listAll();
    std::vector<SyncFolder> list(const QString& userId);
    /// Throws Error(NotFound) as well.
    SyncFolder find(const QString& userId, const QString& id);
    void add(const SyncFolder& folder);
    void remove(const QString& id);
    /// `keepEntries`: the files have moved with the folder.
    void setLocalPath(const QString& id, const QString& path, bool keepEntries);
    void recordEnd(const QString& id, const QString& error);

    QMap<QString, SyncEntry> listEntries(const QString& folderId); ///< by path, relative to the folder
    bool hasEntries(const QString& folderId);
    void recordEntry(const QString& folderId, const QString& path, const SyncEntry& entry);
    void removeEntry(const QString& folderId, const QString& path);

private:
    std::vector<SyncFolder> read(Database::Rows rows);

    Database& m_database;
};

} // namespace cloudd
