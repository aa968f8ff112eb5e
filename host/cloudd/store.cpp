#include "host/cloudd/store.h"

#include "host/cloudd/names.h"

#include <QDateTime>
#include <QFile>
#include <QLoggingCategory>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <fcntl.h>
#include <unistd.h>

namespace cloudd {

namespace {

Q_LOGGING_CATEGORY(storeLog, "cloudd.store")

constexpr int Format = 1;
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

template <typename Row> Item itemOf(const Row& row)
{
    return { row.value(0).toString(), row.value(1).toString(), row.value(2).toString(),
        row.value(3).toString(), row.value(4).toBool(), row.value(5).toLongLong(), row.value(6).toString() };
}

template <typename Row> Task taskOf(const Row& row)
{
    return { row.value(0).toString(), row.value(1).toString(), row.value(2).toString(),
        row.value(3).toString(), row.value(4).toString(), row.value(5).toBool(),
        static_cast<TaskStatus>(row.value(6).toInt()), static_cast<State>(row.value(7).toInt()),
        row.value(8).toLongLong(), row.value(9).toLongLong(), row.value(10).toString(),
        row.value(11).toString() };
}

template <typename Rows> std::optional<Item> firstItem(Rows rows)
{
    return rows.next() ? std::optional(itemOf(rows)) : std::nullopt;
}

/// Fails like any statement of QSqlQuery, and says why.
QVariant firstValue(QSqlQuery& query, const char* statement)
{
    return query.exec(QLatin1String(statement)) && query.next() ? query.value(0) : QVariant();
}

[[noreturn]] void fail(const QByteArray& statement, const QSqlQuery& query)
{
    qCWarning(storeLog, "%s: %s", statement.constData(), qPrintable(query.lastError().text()));
    throw Refusal(State::StorageFailed);
}

} // namespace

QString newId(char kind)
{
    return QLatin1Char(kind) + QString::fromLatin1(QUuid::createUuid().toRfc4122().toHex());
}

Store::Transaction::Transaction(Store& store)
    : m_store(store)
    , m_open(true)
{
    if (m_store.m_depth == 0)
        m_store.run("BEGIN IMMEDIATE");
    ++m_store.m_depth;
}

Store::Transaction::~Transaction()
{
    if (!m_open)
        return;
    // A part that was not committed spoils the whole: the exception on its way ends that, too.
    if (--m_store.m_depth == 0)
        QSqlQuery(QSqlDatabase::database(m_store.m_connection)).exec(QStringLiteral("ROLLBACK"));
}

void Store::Transaction::commit()
{
    if (m_store.m_depth == 1)
        m_store.run("COMMIT");
    --m_store.m_depth;
    m_open = false;
}

Store::Rows::~Rows()
{
    if (!m_store)
        return;
    m_query.finish();
    m_store->m_prepared.insert(m_statement, m_query);
}

Store::Store()
    : m_connection(newId('s'))
{
}

Store::~Store()
{
    m_prepared.clear();
    QSqlDatabase::removeDatabase(m_connection);
}

QString Store::open(const QString& path)
{
    const QString why = openRecords(path);
    return why.isEmpty() ? why : QStringLiteral("\"%1\": %2").arg(path, why);
}

QString Store::openRecords(const QString& path)
{
    // SQLite gives the files beside it the same permissions.
    const int file =
        ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0)
        return QStringLiteral("can not be made or written to");
    close(file);
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    database.setDatabaseName(path);
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    if (!database.open())
        return database.lastError().text();

    // Nothing is written before it is known that the file is ours and whole.
    QSqlQuery query(database);
    const QVariant format = firstValue(query, "PRAGMA user_version");
    const QVariant tables = firstValue(query, "SELECT count(*) FROM sqlite_master");
    if (!format.isValid() || !tables.isValid())
        return QStringLiteral("is damaged, or no file of records (%1)").arg(query.lastError().text());
    if (format.toInt() > Format)
        return QStringLiteral("was written by a newer version");
    const bool isNew = format.toInt() == 0;
    if (isNew && tables.toInt() > 0)
        return QStringLiteral("holds other records");
    if (firstValue(query, "PRAGMA quick_check").toString() != QLatin1String("ok"))
        return QStringLiteral("is damaged");
    query.finish();

    try {
        for (const char* setting :
            { "PRAGMA journal_mode = WAL", "PRAGMA synchronous = FULL", "PRAGMA foreign_keys = ON" })
            run(setting);
        if (!isNew)
            return {};
        Transaction transaction(*this);
        for (const char* statement : Tables)
            run(statement);
        run("PRAGMA user_version = 1");
        transaction.commit();
    } catch (const Refusal&) {
        return QStringLiteral("can not be written");
    }
    return {};
}

QSqlQuery Store::prepared(const QByteArray& statement)
{
    if (const auto unused = m_prepared.find(statement); unused != m_prepared.end()) {
        QSqlQuery query = unused.value();
        m_prepared.erase(unused);
        return query;
    }
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    query.setForwardOnly(true);
    if (!query.prepare(QString::fromLatin1(statement)))
        fail(statement, query);
    return query;
}

Store::Rows Store::run(const QByteArray& statement, std::initializer_list<QVariant> values)
{
    QSqlQuery query = prepared(statement);
    int place = 0;
    for (const QVariant& value : values) {
        // A text without characters may be what Qt calls null, which would become NULL.
        const bool isEmptyText = value.type() == QVariant::String && value.toString().isEmpty();
        query.bindValue(place++, isEmptyText ? QVariant(QLatin1String("")) : value);
    }
    if (!query.exec())
        fail(statement, query);
    return { *this, statement, query };
}

Member Store::member(const QString& userId)
{
    Rows found = run("SELECT g.id, g.name, g.rootId, g.createTime, u.roamingMode FROM users u"
                     " JOIN groups g ON g.ownerId = u.id WHERE u.id = ?",
        { userId });
    if (found.next())
        return { userId, found.value(0).toString(), found.value(1).toString(), found.value(2).toString(),
            found.value(3).toLongLong(), found.value(4).toString() };
    found.finish();

    Member made { userId, newId('g'), QLatin1String(GroupName), newId('f'), now(), QStringLiteral("auto") };
    Transaction transaction(*this);
    run("INSERT INTO users (id, roamingMode) VALUES (?, ?)", { userId, made.roamingMode });
    run("INSERT INTO groups (id, ownerId, name, rootId, createTime) VALUES (?, ?, ?, ?, ?)",
        { made.groupId, userId, made.groupName, made.rootId, made.createTime });
    const Item root = insert({ made.rootId, made.groupId, {}, {}, true, 0, {} });
    // From the beginning, so that no file can have the name.
    addFolder(root, QLatin1String(WorkspaceName));
    transaction.commit();
    return made;
}

Item Store::workspace(const Member& member)
{
    const Item root = itemOfId(member.rootId);
    QString name = QLatin1String(WorkspaceName);
    for (int number = 1;; ++number) {
        const auto known = child(root.id, name);
        if (!known)
            return addFolder(root, name);
        if (known->isFolder)
            return *known;
        // Records that are older than the folder's being made with them.
        name = numberedName(QLatin1String(WorkspaceName), number);
    }
}

void Store::setRoamingMode(const QString& userId, const QString& mode)
{
    run("UPDATE users SET roamingMode = ? WHERE id = ?", { mode, userId });
}

Item Store::insert(const Item& item)
{
    const QVariant parent = item.parentId.isEmpty() ? QVariant() : QVariant(item.parentId);
    run("INSERT INTO items (id, groupId, parentId, name, isFolder, size, sha256, createTime, changeTime)"
        " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
        { item.id, item.groupId, parent, item.name, item.isFolder, item.size, item.sha256, now(), now() });
    return item;
}

Item Store::itemOfId(const QString& id)
{
    const auto found = firstItem(run(select(ItemColumns, "items WHERE id = ?"), { id }));
    if (!found)
        throw Refusal(State::NotFound);
    return *found;
}

std::optional<Item> Store::child(const QString& folderId, const QString& name)
{
    return firstItem(run(select(ItemColumns, "items WHERE parentId = ? AND name = ?"), { folderId, name }));
}

std::vector<Item> Store::children(const QString& folderId, const QString& after, int most)
{
    Rows rows = run(select(ItemColumns, "items WHERE parentId = ? AND name > ? ORDER BY name LIMIT ?"),
        { folderId, after, most });
    std::vector<Item> items;
    while (rows.next())
        items.push_back(itemOf(rows));
    return items;
}

Item Store::item(const Member& member, const QString& pathOrId)
{
    const auto named = firstItem(
        run(select(ItemColumns, "items WHERE id = ? AND groupId = ?"), { pathOrId, member.groupId }));
    if (named)
        return *named;
    Item found = itemOfId(member.rootId);
    const QStringList parts = pathParts(pathOrId);
    for (const QString& part : parts) {
        const auto next = child(found.id, part);
        if (!next)
            throw Refusal(State::NotFound);
        found = *next;
    }
    return found;
}

Item Store::folder(const Member& member, const QString& pathOrId, Missing missing)
{
    try {
        Item found = item(member, pathOrId);
        if (!found.isFolder)
            throw Refusal(missing == Missing::Make ? State::NameTaken : State::NotFound);
        return found;
    } catch (const Refusal& refusal) {
        if (refusal.state != State::NotFound || missing == Missing::Refuse)
            throw;
    }
    Transaction transaction(*this);
    Item folder = itemOfId(member.rootId);
    const QStringList parts = pathParts(pathOrId);
    for (const QString& part : parts) {
        const auto next = child(folder.id, part);
        if (next && !next->isFolder)
            throw Refusal(State::NameTaken);
        folder = next ? *next : addFolder(folder, part);
    }
    transaction.commit();
    return folder;
}

Item Store::addFolder(const Item& parent, const QString& name)
{
    Rows above = run("WITH RECURSIVE above(id) AS (VALUES (?) UNION ALL SELECT parentId FROM items"
                     " JOIN above USING (id) WHERE parentId IS NOT NULL) SELECT count(*) FROM above",
        { parent.id });
    if (!above.next() || above.value(0).toInt() > MostFolderDepth)
        throw Refusal(State::WrongArguments);
    above.finish();
    return insert({ newId('f'), parent.groupId, parent.id, itemName(name), true, 0, {} });
}

Item Store::putFile(const Item& folder, const QString& name, qint64 size, const QString& sha256)
{
    auto known = child(folder.id, name);
    if (!known)
        return insert({ newId('f'), folder.groupId, folder.id, itemName(name), false, size, sha256 });
    if (known->isFolder)
        throw Refusal(State::NameTaken);
    run("UPDATE items SET size = ?, sha256 = ?, changeTime = ? WHERE id = ?",
        { size, sha256, now(), known->id });
    known->size = size;
    known->sha256 = sha256;
    return *known;
}

QString Store::freeName(const Item& folder, const QString& name)
{
    const auto isFree = [&](const QString& tried) { return !child(folder.id, tried); };
    if (isFree(name))
        return name;
    // Thousands of files may have the same name: one that is free, after one that is not, is found by
    // halving.
    int taken = 0;
    int free = 1;
    for (; !isFree(numberedName(name, free)); free *= 2)
        taken = free;
    while (free - taken > 1) {
        const int middle = taken + (free - taken) / 2;
        (isFree(numberedName(name, middle)) ? free : taken) = middle;
    }
    return numberedName(name, free);
}

QString Store::pathOf(const Item& item)
{
    QString path = item.name;
    for (QString above = item.parentId; !above.isEmpty();) {
        const Item folder = itemOfId(above);
        if (!folder.name.isEmpty())
            path.prepend(folder.name + QLatin1Char('/'));
        above = folder.parentId;
    }
    return path;
}

bool Store::isNamed(const QString& sha256)
{
    return run("SELECT 1 FROM items WHERE sha256 = ? LIMIT 1", { sha256 }).next();
}

void Store::add(const Task& task)
{
    run("INSERT INTO tasks (id, userId, source, folderId, name, autoRename, status, state, transferred, "
        "total, itemId,"
        " sha256) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        { task.id, task.userId, task.source, task.folderId, task.name, task.autoRename,
            static_cast<int>(TaskStatus::Waiting), static_cast<int>(State::Ok), 0, -1, QString(),
            QString() });
}

void Store::end(const Task& task)
{
    if (!task.id.startsWith(QLatin1Char(Task::KeptKind))) {
        run("DELETE FROM tasks WHERE id = ?", { task.id });
        return;
    }
    Transaction transaction(*this);
    run("UPDATE tasks SET status = ?, state = ?, transferred = ?, total = ?, itemId = ?, sha256 = ?,"
        " ended = (SELECT coalesce(max(ended), 0) + 1 FROM tasks) WHERE id = ?",
        { static_cast<int>(task.status), static_cast<int>(task.state), task.transferred, task.total,
            task.itemId, task.sha256, task.id });
    run("DELETE FROM tasks WHERE userId = ? AND ended <="
        " (SELECT ended FROM tasks WHERE userId = ? AND ended > 0 ORDER BY ended DESC LIMIT 1 OFFSET ?)",
        { task.userId, task.userId, KeptTasks });
    transaction.commit();
}

std::optional<Task> Store::task(const QString& userId, const QString& id)
{
    Rows row = run(select(TaskColumns, "tasks WHERE id = ? AND userId = ?"), { id, userId });
    return row.next() ? std::optional(taskOf(row)) : std::nullopt;
}

std::vector<Task> Store::unfinishedTasks()
{
    Rows rows = run(select(TaskColumns, "tasks WHERE ended IS NULL ORDER BY number"));
    std::vector<Task> tasks;
    while (rows.next())
        tasks.push_back(taskOf(rows));
    return tasks;
}

} // namespace cloudd
