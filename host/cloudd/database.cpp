#include "host/cloudd/database.h"

#include "host/cloudd/state.h"

#include <QFile>
#include <QLoggingCategory>
#include <QSqlDatabase>
#include <QSqlError>
#include <QUuid>
#include <fcntl.h>
#include <unistd.h>

namespace cloudd {

namespace {

Q_LOGGING_CATEGORY(storeLog, "cloudd.store")

/// Invalid when the statement fails; query.lastError() has the reason.
QVariant queryValue(QSqlQuery& query, const char* statement)
{
    return query.exec(QLatin1String(statement)) && query.next() ? query.value(0) : QVariant();
}

[[noreturn]] void fail(const QByteArray& statement, const QSqlQuery& query)
{
    qCWarning(storeLog, "%s: %s", statement.constData(), qPrintable(query.lastError().text()));
    throw Error(State::StorageFailed);
}

} // namespace

Database::Transaction::Transaction(Database& database)
    : m_database(database)
    , m_open(true)
{
    if (m_database.m_depth == 0)
        m_database.run("BEGIN IMMEDIATE");
    ++m_database.m_depth;
}

Database::Transaction::~Transaction()
{
    if (!m_open)
        return;
    // An inner one that was not committed: the exception under way rolls back the outermost.
    if (--m_database.m_depth == 0)
        QSqlQuery(QSqlDatabase::database(m_database.m_connection)).exec(QStringLiteral("ROLLBACK"));
}

void Database::Transaction::commit()
{
    if (m_database.m_depth == 1)
        m_database.run("COMMIT");
    --m_database.m_depth;
    m_open = false;
}

Database::Rows::~Rows()
{
    if (!m_database)
        return;
    m_query.finish();
    m_database->m_prepared.insert(m_statement, m_query);
}

Database::Database()
    : m_connection(QUuid::createUuid().toString())
{
}

Database::~Database()
{
    m_prepared.clear();
    QSqlDatabase::removeDatabase(m_connection);
}

QString Database::open(const QString& path, int format, bool& isNew)
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

    // Nothing is written to a file that is damaged or not ours.
    QSqlQuery query(database);
    const QVariant found = queryValue(query, "PRAGMA user_version");
    const QVariant tables = queryValue(query, "SELECT count(*) FROM sqlite_master");
    if (!found.isValid() || !tables.isValid())
        return QStringLiteral("is damaged, or no file of records (%1)").arg(query.lastError().text());
    if (found.toInt() > format)
        return QStringLiteral("was written by a newer version");
    isNew = found.toInt() == 0;
    if (isNew && tables.toInt() > 0)
        return QStringLiteral("holds other records");
    if (queryValue(query, "PRAGMA quick_check").toString() != QLatin1String("ok"))
        return QStringLiteral("is damaged");
    query.finish();

    try {
        for (const char* setting :
            { "PRAGMA journal_mode = WAL", "PRAGMA synchronous = FULL", "PRAGMA foreign_keys = ON" })
            run(setting);
    } catch (const Error&) {
        return QStringLiteral("can not be written");
    }
    return {};
}

QSqlQuery Database::prepare(const QByteArray& statement)
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

Database::Rows Database::run(const QByteArray& statement, std::initializer_list<QVariant> values)
{
    QSqlQuery query = prepare(statement);
    int place = 0;
    for (const QVariant& value : values) {
        // An empty QString may be a null one, which would become NULL.
        const bool isEmptyString = value.type() == QVariant::String && value.toString().isEmpty();
        query.bindValue(place++, isEmptyString ? QVariant(QLatin1String("")) : value);
    }
    if (!query.exec())
        fail(statement, query);
    return { *this, statement, query };
}

} // namespace cloudd
