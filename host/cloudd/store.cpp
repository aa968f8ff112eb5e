#include "host/cloudd/store.h"

#include "host/cloudd/names.h"

#include <QDateTime>
#include <QUuid>

namespace cloudd {

namespace {

constexpr int Format = 2;
constexpr int KeptTasks = 1000;
constexpr auto GroupName = "My Cloud";
constexpr auto WorkspaceName = "My Documents";

constexpr const char* Tables[] = {
    "CREATE TABLE users (id TEXT PRIMARY KEY NOT NULL, roamingMode TEXT NOT NULL)",
    "CREATE TABLE groups (id TEXT PRIMARY KEY NOT NULL, ownerId TEXT NOT NULL UNIQUE REFERENCES users(id),"
    " name TEXT NOT NULL, rootId TEXT NOT NULL, createTime INTEGER NOT NULL)",
    "CREATE TABLE items (id TEXT PRIMARY KEY NOT NULL, groupId TEXT NOT NULL REFERENCES groups(id),"
    " parentId TEXT REFERENCES items(id), name TEXT NOT NULL, isFolder INTEGER NOT NULL, size INTEGER NOT "
    "NULL,"
    " sha256 TEXT NOT NULL, createTime INTEGER NOT NULL, changeTime INTEGER NOT NULL, UNIQUE (parentId, "
    "name))",
    "CREATE INDEX itemsByContent ON items (sha256)",
    "CREATE TABLE tasks (number INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT NOT NULL UNIQUE,"
    " userId TEXT NOT NULL REFERENCES users(id), source TEXT NOT NULL, folderId TEXT NOT NULL REFERENCES "
    "items(id),"
    " name TEXT NOT NULL, autoRename INTEGER NOT NULL, status INTEGER NOT NULL, state INTEGER NOT NULL,"
    " transferred INTEGER NOT NULL, total INTEGER NOT NULL, itemId TEXT NOT NULL, sha256 TEXT NOT NULL,"
    " ended INTEGER)",
    "CREATE INDEX tasksByEnd ON tasks (userId, ended)",
    "CREATE INDEX tasksByLastEnd ON tasks (ended)",
};

/// Of format 2 (SyncRecords).
constexpr const char* SyncTables[] = {
    "CREATE TABLE IF NOT EXISTS syncFolders (id TEXT PRIMARY KEY NOT NULL, userId TEXT NOT NULL REFERENCES "
    "users(id),"
    " localPath TEXT NOT NULL UNIQUE, cloudFolderId TEXT NOT NULL REFERENCES items(id), kind TEXT NOT NULL,"
    " lastSyncTime INTEGER NOT NULL, lastError TEXT NOT NULL)",
    "CREATE TABLE IF NOT EXISTS syncEntries (folderId TEXT NOT NULL REFERENCES syncFolders(id) ON DELETE CASCADE,"
    " path TEXT NOT NULL, isFolder INTEGER NOT NULL, itemId TEXT NOT NULL, sha256 TEXT NOT NULL,"
    " size INTEGER NOT NULL, inode INTEGER NOT NULL, modified INTEGER NOT NULL, changed INTEGER NOT NULL,"
    " PRIMARY KEY (folderId, path)) WITHOUT ROWID",
    "CREATE INDEX IF NOT EXISTS itemsByChange ON items (groupId, changeTime)",
};

constexpr auto ItemColumns = "id, groupId, parentId, name, isFolder, size, sha256";
constexpr auto TaskColumns =
    "id, userId, source, folderId, name, autoRename, status, state, transferred, total, itemId, sha256";

qint64 now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

/// "SELECT <columns> FROM <rest>"
QByteArray select(const char* columns, const char* rest)
{
    return QByteArray("SELECT ") + columns + " FROM " + rest;
}

template <typename Row> Item readItem(const Row& row)
{
    return { row.value(0).toString(), row.value(1).toString(), row.value(2).toString(),
        row.value(3).toString(), row.value(4).toBool(), row.value(5).toLongLong(), row.value(6).toString() };
}

template <typename Row> Task readTask(const Row& row)
{
    return { row.value(0).toString(), row.value(1).toString(), row.value(2).toString(),
        row.value(3).toString(), row.value(4).toString(), row.value(5).toBool(),
        static_cast<TaskStatus>(row.value(6).toInt()), static_cast<State>(row.value(7).toInt()),
        row.value(8).toLongLong(), row.value(9).toLongLong(), row.value(10).toString(),
        row.value(11).toString() };
}

template <typename Rows> std::optional<Item> readFirstItem(Rows rows)
{
    return rows.next() ? std::optional(readItem(rows)) : std::nullopt;
}

} // namespace

QString makeId(char kind)
{
    return QLatin1Char(kind) + QString::fromLatin1(QUuid::createUuid().toRfc4122().toHex());
}

QString Store::open(const QString& path)
{
    const QString why = openRecords(path);
    return why.isEmpty() ? why : QStringLiteral("\"%1\": %2").arg(path, why);
}

QString Store::openRecords(const QString& path)
{
    bool isNew = false;
    QString why = m_database.open(path, Format, isNew);
    if (!why.isEmpty())
        return why;

    try {
        Transaction transaction(*this);
        if (isNew) {
            for (const char* statement : Tables)
                m_database.run(statement);
        }
        // Older records do not have these.
        m_database.run(
            "CREATE TABLE IF NOT EXISTS localCopies (itemId TEXT PRIMARY KEY NOT NULL REFERENCES items(id),"
            " sha256 TEXT NOT NULL)");
        m_database.run(
            "CREATE TABLE IF NOT EXISTS labels (itemId TEXT PRIMARY KEY NOT NULL REFERENCES items(id),"
            " label TEXT NOT NULL, setupId TEXT NOT NULL, changeTime INTEGER NOT NULL)");
        for (const char* statement : SyncTables)
            m_database.run(statement);
        m_database.run("PRAGMA user_version = 2");
        transaction.commit();
    } catch (const Error&) {
        return QStringLiteral("can not be written");
    }
    return {};
}

Member Store::ensureMember(const QString& userId)
{
    Database::Rows found =
        m_database.run("SELECT g.id, g.name, g.rootId, g.createTime, u.roamingMode FROM users u"
                       " JOIN groups g ON g.ownerId = u.id WHERE u.id = ?",
            { userId });
    if (found.next())
        return { userId, found.value(0).toString(), found.value(1).toString(), found.value(2).toString(),
            found.value(3).toLongLong(), found.value(4).toString() };
    found.finish();

    Member made { userId, makeId('g'), QLatin1String(GroupName), makeId('f'), now(), QStringLiteral("auto") };
    Transaction transaction(*this);
    m_database.run("INSERT INTO users (id, roamingMode) VALUES (?, ?)", { userId, made.roamingMode });
    m_database.run("INSERT INTO groups (id, ownerId, name, rootId, createTime) VALUES (?, ?, ?, ?, ?)",
        { made.groupId, userId, made.groupName, made.rootId, made.createTime });
    const Item root = insert({ made.rootId, made.groupId, {}, {}, true, 0, {} });
    // Added at once, so that no file can take the name.
    addFolder(root, QLatin1String(WorkspaceName));
    transaction.commit();
    return made;
}

Item Store::ensureWorkspace(const Member& member)
{
    const Item root = findItemById(member.rootId);
    QString name = QLatin1String(WorkspaceName);
    for (int number = 1;; ++number) {
        const auto known = findChild(root.id, name);
        if (!known)
            return addFolder(root, name);
        if (known->isFolder)
            return *known;
        // A file has the name: the records are older than the line above that adds the folder.
        name = makeNumberedName(QLatin1String(WorkspaceName), number);
    }
}

void Store::setRoamingMode(const QString& userId, const QString& mode)
{
    m_database.run("UPDATE users SET roamingMode = ? WHERE id = ?", { mode, userId });
}

Item Store::insert(const Item& item)
{
    const QVariant parent = item.parentId.isEmpty() ? QVariant() : QVariant(item.parentId);
    m_database.run(
        "INSERT INTO items (id, groupId, parentId, name, isFolder, size, sha256, createTime, changeTime)"
        " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
        { item.id, item.groupId, parent, item.name, item.isFolder, item.size, item.sha256, now(), now() });
    return item;
}

Item Store::findItemById(const QString& id)
{
    const auto found = readFirstItem(m_database.run(select(ItemColumns, "items WHERE id = ?"), { id }));
    if (!found)
        throw Error(State::NotFound);
    return *found;
}

std::optional<Item> Store::findChild(const QString& folderId, const QString& name)
{
    return readFirstItem(
        m_database.run(select(ItemColumns, "items WHERE parentId = ? AND name = ?"), { folderId, name }));
}

std::vector<Item> Store::listChildren(const QString& folderId, const QString& after, int most)
{
    Database::Rows rows =
        m_database.run(select(ItemColumns, "items WHERE parentId = ? AND name > ? ORDER BY name LIMIT ?"),
            { folderId, after, most });
    std::vector<Item> items;
    while (rows.next())
        items.push_back(readItem(rows));
    return items;
}

Item Store::findItem(const Member& member, const QString& pathOrId)
{
    const auto named = readFirstItem(m_database.run(
        select(ItemColumns, "items WHERE id = ? AND groupId = ?"), { pathOrId, member.groupId }));
    if (named)
        return *named;
    Item found = findItemById(member.rootId);
    const QStringList parts = splitCloudPath(pathOrId);
    for (const QString& part : parts) {
        const auto next = findChild(found.id, part);
        if (!next)
            throw Error(State::NotFound);
        found = *next;
    }
    return found;
}

Item Store::findFolder(const Member& member, const QString& pathOrId, Missing missing)
{
    try {
        Item found = findItem(member, pathOrId);
        if (!found.isFolder)
            throw Error(missing == Missing::Create ? State::NameTaken : State::NotFound);
        return found;
    } catch (const Error& error) {
        if (error.state != State::NotFound || missing == Missing::Fail)
            throw;
    }
    Transaction transaction(*this);
    Item folder = findItemById(member.rootId);
    const QStringList parts = splitCloudPath(pathOrId);
    for (const QString& part : parts) {
        const auto next = findChild(folder.id, part);
        if (next && !next->isFolder)
            throw Error(State::NameTaken);
        folder = next ? *next : addFolder(folder, part);
    }
    transaction.commit();
    return folder;
}

Item Store::addFolder(const Item& parent, const QString& name)
{
    Database::Rows above =
        m_database.run("WITH RECURSIVE above(id) AS (VALUES (?) UNION ALL SELECT parentId FROM items"
                       " JOIN above USING (id) WHERE parentId IS NOT NULL) SELECT count(*) FROM above",
            { parent.id });
    if (!above.next() || above.value(0).toInt() > MaxFolderDepth)
        throw Error(State::WrongArguments);
    above.finish();
    return insert({ makeId('f'), parent.groupId, parent.id, checkItemName(name), true, 0, {} });
}

Item Store::putFile(const Item& folder, const QString& name, qint64 size, const QString& sha256)
{
    auto known = findChild(folder.id, name);
    if (!known)
        return insert({ makeId('f'), folder.groupId, folder.id, checkItemName(name), false, size, sha256 });
    if (known->isFolder)
        throw Error(State::NameTaken);
    m_database.run("UPDATE items SET size = ?, sha256 = ?, changeTime = ? WHERE id = ?",
        { size, sha256, now(), known->id });
    known->size = size;
    known->sha256 = sha256;
    return *known;
}

QString Store::findFreeName(const Item& folder, const QString& name)
{
    const auto isFree = [&](const QString& tried) { return !findChild(folder.id, tried); };
    if (isFree(name))
        return name;
    // Thousands of files may have the same name, so a free number is found by doubling and halving.
    int taken = 0;
    int free = 1;
    for (; !isFree(makeNumberedName(name, free)); free *= 2)
        taken = free;
    while (free - taken > 1) {
        const int middle = taken + (free - taken) / 2;
        (isFree(makeNumberedName(name, middle)) ? free : taken) = middle;
    }
    return makeNumberedName(name, free);
}

QString Store::findPath(const Item& item)
{
    QString path = item.name;
    for (QString above = item.parentId; !above.isEmpty();) {
        const Item folder = findItemById(above);
        if (!folder.name.isEmpty())
            path.prepend(folder.name + QLatin1Char('/'));
        above = folder.parentId;
    }
    return path;
}

bool Store::removeItem(const Item& item)
{
    const auto isUsed = [&](const char* statement) { return m_database.run(statement, { item.id }).next(); };
    if (item.parentId.isEmpty() || isUsed("SELECT 1 FROM items WHERE parentId = ? LIMIT 1")
        || isUsed("SELECT 1 FROM tasks WHERE folderId = ? AND ended IS NULL LIMIT 1")
        || isUsed("SELECT 1 FROM syncFolders WHERE cloudFolderId = ?"))
        return false;
    Transaction transaction(*this);
    m_database.run("DELETE FROM labels WHERE itemId = ?", { item.id });
    m_database.run("DELETE FROM localCopies WHERE itemId = ?", { item.id });
    // Ended uploads can still be queried.
    m_database.run("UPDATE tasks SET folderId = ? WHERE folderId = ?", { item.parentId, item.id });
    m_database.run("DELETE FROM items WHERE id = ?", { item.id });
    transaction.commit();
    return true;
}

Usage Store::measure(const Item& folder)
{
    Database::Rows row =
        m_database.run("WITH RECURSIVE below(id, isFolder, size) AS (SELECT id, isFolder, size FROM items"
                       " WHERE parentId = ? UNION ALL SELECT i.id, i.isFolder, i.size FROM items i"
                       " JOIN below b ON i.parentId = b.id)"
                       " SELECT total(NOT isFolder), total(isFolder), total(size) FROM below",
            { folder.id });
    if (!row.next())
        throw Error(State::StorageFailed);
    return { row.value(0).toLongLong(), row.value(1).toLongLong(), row.value(2).toLongLong() };
}

std::vector<ChangedFile> Store::listChangedFiles(const Member& member, const QString& part, int most)
{
    Database::Rows rows = m_database.run(
        "SELECT id, groupId, parentId, name, isFolder, size, sha256, changeTime FROM items WHERE groupId = ?"
        " AND NOT isFolder AND instr(lower(name), lower(?)) ORDER BY changeTime DESC, id LIMIT ?",
        { member.groupId, part, most });
    std::vector<ChangedFile> files;
    while (rows.next())
        files.push_back({ readItem(rows), rows.value(7).toLongLong() });
    return files;
}

bool Store::isContentUsed(const QString& sha256)
{
    return m_database.run("SELECT 1 FROM items WHERE sha256 = ? LIMIT 1", { sha256 }).next();
}

QString Store::findLocalCopy(const QString& itemId)
{
    Database::Rows row = m_database.run("SELECT sha256 FROM localCopies WHERE itemId = ?", { itemId });
    return row.next() ? row.value(0).toString() : QString();
}

void Store::recordLocalCopy(const QString& itemId, const QString& sha256)
{
    // The file may have been removed while it was copied.
    m_database.run("INSERT OR REPLACE INTO localCopies (itemId, sha256) SELECT id, ? FROM items WHERE id = ?",
        { sha256, itemId });
}

std::optional<LabelStatus> Store::findLabelStatus(const QString& itemId)
{
    Database::Rows row =
        m_database.run("SELECT label, setupId, changeTime FROM labels WHERE itemId = ?", { itemId });
    if (!row.next())
        return std::nullopt;
    return LabelStatus { row.value(0).toString(), row.value(1).toString(), row.value(2).toLongLong() };
}

LabelStatus Store::recordLabelStatus(const QString& itemId, const QString& label, const QString& setupId)
{
    LabelStatus status { label, setupId, now() };
    m_database.run("INSERT OR REPLACE INTO labels (itemId, label, setupId, changeTime) VALUES (?, ?, ?, ?)",
        { itemId, label, setupId, status.changeTime });
    return status;
}

void Store::add(const Task& task)
{
    m_database.run(
        "INSERT INTO tasks (id, userId, source, folderId, name, autoRename, status, state, transferred, "
        "total, itemId,"
        " sha256) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        { task.id, task.userId, task.source, task.folderId, task.name, task.autoRename,
            static_cast<int>(TaskStatus::Waiting), static_cast<int>(State::Ok), 0, -1, QString(),
            QString() });
}

void Store::recordEnd(const Task& task)
{
    if (!task.id.startsWith(QLatin1Char(Task::PublicKind))) {
        m_database.run("DELETE FROM tasks WHERE id = ?", { task.id });
        return;
    }
    Transaction transaction(*this);
    m_database.run(
        "UPDATE tasks SET status = ?, state = ?, transferred = ?, total = ?, itemId = ?, sha256 = ?,"
        " ended = (SELECT coalesce(max(ended), 0) + 1 FROM tasks) WHERE id = ?",
        { static_cast<int>(task.status), static_cast<int>(task.state), task.transferred, task.total,
            task.itemId, task.sha256, task.id });
    m_database.run(
        "DELETE FROM tasks WHERE userId = ? AND ended <="
        " (SELECT ended FROM tasks WHERE userId = ? AND ended > 0 ORDER BY ended DESC LIMIT 1 OFFSET ?)",
        { task.userId, task.userId, KeptTasks });
    transaction.commit();
}

std::optional<Task> Store::findTask(const QString& userId, const QString& id)
{
    Database::Rows row =
        m_database.run(select(TaskColumns, "tasks WHERE id = ? AND userId = ?"), { id, userId });
    return row.next() ? std::optional(readTask(row)) : std::nullopt;
}

std::vector<Task> Store::listUnfinishedTasks()
{
    Database::Rows rows = m_database.run(select(TaskColumns, "tasks WHERE ended IS NULL ORDER BY number"));
    std::vector<Task> tasks;
    while (rows.next())
        tasks.push_back(readTask(rows));
    return tasks;
}

} // namespace cloudd
