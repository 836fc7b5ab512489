#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

// A thin RAII layer over the SQLite C API: one connection, its prepared statements, and
// the errors as SQLite reports them. The content engine turns those errors into the
// numbers and texts of the database engine the content was made for.
namespace content::sqlite {

// Thrown by the wrapper; carries SQLite's primary result code and message.
class Error : public std::exception
{
public:
    Error(int code, QString message);
    int code() const noexcept { return m_code; }
    const QString &message() const noexcept { return m_message; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    int m_code;
    QString m_message;
    QByteArray m_what;
};

class Statement;

class Connection
{
public:
    // Opens with sqlite3_open_v2 flags; throws Error on failure.
    Connection(const QString &fileNameOrUri, int flags);
    ~Connection();
    Q_DISABLE_COPY_MOVE(Connection)

    // An empty writable database in memory.
    static std::unique_ptr<Connection> openMemory();

    sqlite3 *handle() const { return m_db; }

    // Runs one or more statements that return no rows.
    void execute(const QString &sql);
    // Prepares one statement; throws Error with SQLite's message on failure.
    std::unique_ptr<Statement> prepare(const QString &sql);

    QString lastErrorMessage() const;

private:
    sqlite3 *m_db = nullptr;
};

class Statement
{
public:
    ~Statement();
    Q_DISABLE_COPY_MOVE(Statement)

    // Binds by 1-based index. A null QVariant binds NULL.
    void bind(int index, const QVariant &value);
    // Steps once: true while a row is ready, false when done. Throws Error on failure.
    bool step();
    void reset();

    int columnCount() const;
    QString columnName(int column) const;
    // The table and column a result column comes from, where SQLite knows it.
    QString columnTableName(int column) const;
    QString columnOriginName(int column) const;
    // NULL as a null QVariant; integers as int where they fit, else qlonglong.
    QVariant value(int column) const;

    sqlite3_stmt *handle() const { return m_stmt; }

private:
    friend class Connection;
    Statement(sqlite3 *db, sqlite3_stmt *stmt);
    sqlite3 *m_db;
    sqlite3_stmt *m_stmt;
};

} // namespace content::sqlite
