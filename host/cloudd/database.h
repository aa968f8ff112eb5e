// A file of SQLite: its statements, prepared once each, and transactions. What is in it, Store knows.
#pragma once

#include <QHash>
#include <QSqlQuery>
#include <QString>
#include <QVariant>
#include <initializer_list>
#include <utility>

namespace cloudd {

class Database {
public:
    class Transaction {
    public:
        /// A nested one is part of the outermost.
        explicit Transaction(Database& database);
        ~Transaction();
        Transaction(const Transaction&) = delete;
        Transaction& operator=(const Transaction&) = delete;
        void commit();

    private:
        Database& m_database;
        bool m_open;
    };

    /// The rows that a statement returned. A read transaction may be open until it is destroyed or finished;
    /// the prepared statement can be used again then.
    class Rows {
    public:
        Rows(Database& database, const QByteArray& statement, const QSqlQuery& query)
            : m_database(&database)
            , m_statement(statement)
            , m_query(query)
        {
        }
        Rows(Rows&& other) noexcept
            : m_database(std::exchange(other.m_database, nullptr))
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
        Database* m_database;
        QByteArray m_statement;
        QSqlQuery m_query;
    };

    Database();
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Opens or makes the file; `isNew` where it holds nothing. Returns the error, also for a file that is damaged, of a newer
    /// format or not ours; nothing is written to it then, and nothing else may be called.
    QString open(const QString& path, int format, bool& isNew);
    /// Throws Error(StorageFailed).
    Rows run(const QByteArray& statement, std::initializer_list<QVariant> values = {});

private:
    QSqlQuery prepare(const QByteArray& statement);

    QString m_connection;
    QHash<QByteArray, QSqlQuery> m_prepared; ///< by their SQL, those that are not in use
    int m_depth = 0;                         ///< of nested transactions
};

} // namespace cloudd
