#include "host/cloudd/syncrecords.h"

#include <QDateTime>

namespace cloudd {

namespace {

const QByteArray SelectFolders =
    "SELECT id, userId, localPath, cloudFolderId, kind, lastSyncTime, lastError FROM syncFolders ";

} // namespace

std::vector<SyncFolder> SyncRecords::read(Database::Rows rows)
{
    std::vector<SyncFolder> folders;
    while (rows.next())
        folders.push_back({ rows.value(0).toString(), rows.value(1).toString(), rows.value(2).toString(),
            rows.value(3).toString(), rows.value(4).toString(), rows.value(5).toLongLong(),
            rows.value(6).toString() });
    return folders;
}

std::vector<SyncFolder> SyncRecords::listAll()
{
    return read(m_database.run(SelectFolders + "ORDER BY rowid"));
}

std::vector<SyncFolder> SyncRecords::list(const QString& userId)
{
    return read(m_database.run(SelectFolders + "WHERE userId = ? ORDER BY rowid", { userId }));
}

SyncFolder SyncRecords::find(const QString& userId, const QString& id)
{
    const std::vector<SyncFolder> found =
        read(m_database.run(SelectFolders + "WHERE userId = ? AND id = ?", { userId, id }));
    if (found.empty())
        throw Error(State::NotFound);
    return found.front();
}

void SyncRecords::add(const SyncFolder& folder)
{
    m_database.run(
        "INSERT INTO syncFolders (id, userId, localPath, cloudFolderId, kind, lastSyncTime, lastError)"
        " VALUES (?, ?, ?, ?, ?, 0, '')",
        { folder.id, folder.userId, folder.localPath, folder.cloudFolderId, folder.kind });
}

void SyncRecords::remove(const QString& id)
{
    m_database.run("DELETE FROM syncFolders WHERE id = ?", { id });
}

void SyncRecords::setLocalPath(const QString& id, const QString& path, bool keepEntries)
{
    Database::Transaction transaction(m_database);
    m_database.run("UPDATE syncFolders SET localPath = ?, lastError = '' WHERE id = ?", { path, id });
    if (!keepEntries)
        m_database.run("DELETE FROM syncEntries WHERE folderId = ?", { id });
    transaction.commit();
}

void SyncRecords::recordEnd(const QString& id, const QString& error)
{
    m_database.run("UPDATE syncFolders SET lastSyncTime = ?, lastError = ? WHERE id = ?",
        { QDateTime::currentMSecsSinceEpoch(), error, id });
}

QMap<QString, SyncEntry> SyncRecords::listEntries(const QString& folderId)
{
    Database::Rows rows = m_database.run(
        "SELECT path, isFolder, itemId, sha256, size, inode, modified, changed FROM syncEntries WHERE folderId = ?",
        { folderId });
    QMap<QString, SyncEntry> entries;
    while (rows.next())
        entries.insert(rows.value(0).toString(),
            { rows.value(1).toBool(), rows.value(2).toString(), rows.value(3).toString(),
                rows.value(4).toLongLong(), rows.value(5).toLongLong(), rows.value(6).toLongLong(),
                rows.value(7).toLongLong() });
    return entries;
}

bool SyncRecords::hasEntries(const QString& folderId)
{
    return m_database.run("SELECT 1 FROM syncEntries WHERE folderId = ? LIMIT 1", { folderId }).next();
}

void SyncRecords::recordEntry(const QString& folderId, const QString& path, const SyncEntry& entry)
{
    m_database.run(
        "INSERT OR REPLACE INTO syncEntries (folderId, path, isFolder, itemId, sha256, size, inode,"
        " modified, changed) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
        { folderId, path, entry.isFolder, entry.itemId, entry.sha256, entry.size, entry.inode, entry.modified,
            entry.changed });
}

void SyncRecords::removeEntry(const QString& folderId, const QString& path)
{
    m_database.run("DELETE FROM syncEntries WHERE folderId = ? AND path = ?", { folderId, path });
}

} // namespace cloudd
