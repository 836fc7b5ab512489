#include "database.h"

#include "contenterrors.h"
#include "greekcollation.h"
#include "jetimport.h"
#include "jetreader.h"
#include "recordsetdata.h"
#include "sqliteconnection.h"

#include <logging.h>

#include <sqlite3.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace content {

namespace {

const QByteArray SqliteMagic("SQLite format 3\0", 16);

bool isSqlite(const QByteArray &head)
{
    return head.startsWith(SqliteMagic);
}

QString sqliteUri(const QString &path)
{
    // immutable: the content is a finished product; SQLite then takes no locks and
    // writes nothing beside the file, which also suits a read-only school share.
    return QStringLiteral("file:")
        + QString::fromLatin1(QUrl::toPercentEncoding(QFileInfo(path).absoluteFilePath(), "/"))
        + QStringLiteral("?mode=ro&immutable=1");
}

// An index built by another program on a NOCASE text column is in that program's
// order, not the Greek one; such a file is read through a copy in memory with its
// indexes rebuilt.
bool hasNocaseIndex(sqlite::Connection &db)
{
    auto stmt = db.prepare(
        QStringLiteral("SELECT 1 FROM sqlite_schema AS s, pragma_index_xinfo(s.name) AS x "
                       "WHERE s.type = 'index' AND x.key = 1 AND upper(x.coll) = 'NOCASE' LIMIT 1"));
    return stmt->step();
}

std::unique_ptr<sqlite::Connection> copyToMemory(sqlite::Connection &source)
{
    auto memory = sqlite::Connection::openMemory();
    installGreekTextRules(memory->handle());
    sqlite3_backup *backup = sqlite3_backup_init(memory->handle(), "main", source.handle(), "main");
    if (!backup)
        return nullptr;
    const int rc = sqlite3_backup_step(backup, -1);
    sqlite3_backup_finish(backup);
    if (rc != SQLITE_DONE)
        return nullptr;
    memory->execute(QStringLiteral("REINDEX"));
    return memory;
}

std::unique_ptr<sqlite::Connection> openSqlite(const QString &path)
{
    try {
        auto db
            = std::make_unique<sqlite::Connection>(sqliteUri(path), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
        installGreekTextRules(db->handle());
        // A damaged or truncated file is found now rather than by the first query.
        auto check = db->prepare(QStringLiteral("PRAGMA quick_check"));
        if (!check->step() || check->value(0).toString() != u"ok")
            throw errors::unrecognizedFormat(path);
        check.reset();
        if (hasNocaseIndex(*db)) {
            try {
                if (auto memory = copyToMemory(*db))
                    return memory;
            } catch (const sqlite::Error &e) {
                // Keys that the Greek rule finds equal: read the file as it is.
                platform::logPassedOver(&e, std::source_location::current(), lcContent());
            }
        }
        return db;
    } catch (const sqlite::Error &e) {
        if (e.code() == SQLITE_CANTOPEN || e.code() == SQLITE_PERM)
            throw errors::cannotOpen(path);
        throw errors::unrecognizedFormat(path);
    }
}

} // namespace

struct Database::Private
{
    std::unique_ptr<sqlite::Connection> db;
    QString path;
};

Database::Database()
    : d(std::make_unique<Private>())
{
}

Database::~Database() = default;

std::unique_ptr<Database> Database::OpenDatabase(const QString &path, const OpenOptions &options)
{
    if (path.trimmed().isEmpty())
        throw errors::invalidFileName();
    const QFileInfo info(path);
    if (!info.exists())
        throw errors::fileNotFound(path);
    QFile file(path);
    if (info.isDir() || !file.open(QIODevice::ReadOnly))
        throw errors::cannotOpen(path);
    const QByteArray head = file.peek(100);

    std::unique_ptr<sqlite::Connection> connection;
    if (isSqlite(head)) {
        file.close();
        connection = openSqlite(path);
    } else if (jet::hasJetSignature(head)) {
        const QByteArray bytes = file.readAll();
        file.close();
        jet::ImportOptions importOptions;
        importOptions.jet3CodePage = options.jet3CodePage;
        importOptions.progress = options.progress;
        connection = jet::importJet(path, bytes, importOptions);
    } else {
        throw errors::unrecognizedFormat(path);
    }
    return fromConnection(std::move(connection), path);
}

std::unique_ptr<Database> Database::fromConnection(
    std::unique_ptr<sqlite::Connection> connection, const QString &path)
{
    std::unique_ptr<Database> database(new Database);
    installGreekTextRules(connection->handle());
    database->d->db = std::move(connection);
    database->d->path = path;
    return database;
}

std::unique_ptr<Recordset> Database::OpenRecordset(const QString &source, int type, int options)
{
    Q_UNUSED(options)
    RecordsetSource what = resolveRecordsetSource(*d->db, tableNames(), source);
    const bool tableType = what.isTable && (type == dbOpenDefault || type == dbOpenTable);
    if (type == dbOpenTable && !what.isTable)
        throw errors::invalidArgument();
    std::unique_ptr<Recordset> recordset(new Recordset);
    readSnapshot(*d->db, what, d->path, recordset->d.get());
    recordset->d->tableType = tableType;
    recordset->d->forwardOnly = type == dbOpenForwardOnly;
    if (tableType)
        readTableIndexes(*d->db, what.table, recordset->d.get());
    return recordset;
}

QStringList Database::tableNames() const
{
    QStringList names;
    auto stmt = d->db->prepare(QStringLiteral(
        "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
        "ORDER BY rowid"));
    while (stmt->step())
        names << stmt->value(0).toString();
    return names;
}

sqlite3 *Database::handle() const
{
    return d->db->handle();
}

QString Database::path() const
{
    return d->path;
}

void Database::saveCopy(const QString &destination) const
{
    const QFileInfo target(destination);
    if (target.exists() && !d->path.isEmpty()
        && target.canonicalFilePath() == QFileInfo(d->path).canonicalFilePath())
        throw errors::invalidOperation();
    const QString temporary = target.absoluteFilePath() + QStringLiteral(".part");
    QFile::remove(temporary);
    try {
        {
            sqlite::Connection out(temporary, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
            sqlite3_backup *backup = sqlite3_backup_init(out.handle(), "main", d->db->handle(), "main");
            if (!backup)
                throw sqlite::Error(sqlite3_errcode(out.handle()), out.lastErrorMessage());
            const int rc = sqlite3_backup_step(backup, -1);
            sqlite3_backup_finish(backup);
            if (rc != SQLITE_DONE)
                throw sqlite::Error(rc, out.lastErrorMessage());
            // Rebuilt with SQLite's own NOCASE, so that the sqlite3 shell finds the file
            // consistent; the program rebuilds them its way when it opens the file.
            out.execute(QStringLiteral("REINDEX; PRAGMA journal_mode = DELETE;"));
        }
        QFile::remove(destination);
        if (!QFile::rename(temporary, destination))
            throw errors::cannotOpen(destination);
    } catch (const sqlite::Error &) {
        QFile::remove(temporary);
        throw errors::cannotOpen(destination);
    } catch (...) {
        QFile::remove(temporary);
        throw;
    }
}

QString sqlQuote(const QString &value, QChar quote)
{
    QString doubled = value;
    doubled.replace(quote, QString(2, quote));
    return quote + doubled + quote;
}

} // namespace content
