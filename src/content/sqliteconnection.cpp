#include "sqliteconnection.h"

#include <sqlite3.h>

#include <limits>

namespace content::sqlite {

Error::Error(int code, QString message)
    : m_code(code)
    , m_message(std::move(message))
    , m_what(m_message.toUtf8())
{
}

Connection::Connection(const QString &fileNameOrUri, int flags)
{
    const int rc = sqlite3_open_v2(fileNameOrUri.toUtf8().constData(), &m_db, flags, nullptr);
    if (rc != SQLITE_OK) {
        const QString message
            = m_db ? QString::fromUtf8(sqlite3_errmsg(m_db)) : QString::fromUtf8(sqlite3_errstr(rc));
        // A failed open still hands back a handle that must be closed.
        sqlite3_close_v2(m_db);
        m_db = nullptr;
        throw Error(rc, message);
    }
    sqlite3_extended_result_codes(m_db, 0);
}

Connection::~Connection()
{
    // Use the _v2 variant so that statements still alive at this point defer the
    // deallocation instead of making the close fail with SQLITE_BUSY.
    sqlite3_close_v2(m_db);
}

std::unique_ptr<Connection> Connection::openMemory()
{
    return std::make_unique<Connection>(
        QStringLiteral(":memory:"), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
}

void Connection::execute(const QString &sql)
{
    char *message = nullptr;
    const int rc = sqlite3_exec(m_db, sql.toUtf8().constData(), nullptr, nullptr, &message);
    if (rc != SQLITE_OK) {
        const QString text = message ? QString::fromUtf8(message) : QString::fromUtf8(sqlite3_errstr(rc));
        sqlite3_free(message);
        throw Error(rc, text);
    }
}

std::unique_ptr<Statement> Connection::prepare(const QString &sql)
{
    const QByteArray utf8 = sql.toUtf8();
    sqlite3_stmt *stmt = nullptr;
    const int rc = sqlite3_prepare_v2(m_db, utf8.constData(), int(utf8.size()), &stmt, nullptr);
    if (rc != SQLITE_OK)
        throw Error(rc, lastErrorMessage());
    if (!stmt)
        throw Error(SQLITE_MISUSE, QStringLiteral("empty statement"));
    return std::unique_ptr<Statement>(new Statement(m_db, stmt));
}

QString Connection::lastErrorMessage() const
{
    return QString::fromUtf8(sqlite3_errmsg(m_db));
}

Statement::Statement(sqlite3 *db, sqlite3_stmt *stmt)
    : m_db(db)
    , m_stmt(stmt)
{
}

Statement::~Statement()
{
    sqlite3_finalize(m_stmt);
}

void Statement::bind(int index, const QVariant &value)
{
    int rc = SQLITE_OK;
    if (value.isNull()) {
        rc = sqlite3_bind_null(m_stmt, index);
    } else {
        switch (value.typeId()) {
        case QMetaType::Bool:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Char:
        case QMetaType::UChar:
        case QMetaType::Long:
        case QMetaType::LongLong:
            rc = sqlite3_bind_int64(m_stmt, index, value.toLongLong());
            break;
        case QMetaType::Double:
        case QMetaType::Float:
            rc = sqlite3_bind_double(m_stmt, index, value.toDouble());
            break;
        case QMetaType::QByteArray: {
            const QByteArray bytes = value.toByteArray();
            rc = sqlite3_bind_blob64(
                m_stmt, index, bytes.constData(), sqlite3_uint64(bytes.size()), SQLITE_TRANSIENT);
            break;
        }
        default: {
            const QByteArray utf8 = value.toString().toUtf8();
            rc = sqlite3_bind_text64(
                m_stmt, index, utf8.constData(), sqlite3_uint64(utf8.size()), SQLITE_TRANSIENT, SQLITE_UTF8);
            break;
        }
        }
    }
    if (rc != SQLITE_OK)
        throw Error(rc, QString::fromUtf8(sqlite3_errmsg(m_db)));
}

bool Statement::step()
{
    const int rc = sqlite3_step(m_stmt);
    if (rc == SQLITE_ROW)
        return true;
    if (rc == SQLITE_DONE)
        return false;
    throw Error(rc, QString::fromUtf8(sqlite3_errmsg(m_db)));
}

void Statement::reset()
{
    sqlite3_reset(m_stmt);
    sqlite3_clear_bindings(m_stmt);
}

int Statement::columnCount() const
{
    return sqlite3_column_count(m_stmt);
}

QString Statement::columnName(int column) const
{
    return QString::fromUtf8(sqlite3_column_name(m_stmt, column));
}

QString Statement::columnTableName(int column) const
{
    return QString::fromUtf8(sqlite3_column_table_name(m_stmt, column));
}

QString Statement::columnOriginName(int column) const
{
    return QString::fromUtf8(sqlite3_column_origin_name(m_stmt, column));
}

QVariant Statement::value(int column) const
{
    switch (sqlite3_column_type(m_stmt, column)) {
    case SQLITE_INTEGER: {
        const qint64 v = sqlite3_column_int64(m_stmt, column);
        if (v >= std::numeric_limits<int>::min() && v <= std::numeric_limits<int>::max())
            return QVariant(int(v));
        return QVariant(qlonglong(v));
    }
    case SQLITE_FLOAT:
        return QVariant(sqlite3_column_double(m_stmt, column));
    case SQLITE_TEXT: {
        const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(m_stmt, column));
        return QVariant(QString::fromUtf8(text, sqlite3_column_bytes(m_stmt, column)));
    }
    case SQLITE_BLOB: {
        const auto *data = static_cast<const char *>(sqlite3_column_blob(m_stmt, column));
        return QVariant(QByteArray(data, sqlite3_column_bytes(m_stmt, column)));
    }
    default:
        return QVariant();
    }
}

} // namespace content::sqlite
