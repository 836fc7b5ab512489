#pragma once

#include <QString>
#include <QVariant>

#include <functional>
#include <memory>

struct sqlite3;

namespace content::sqlite {
class Connection;
}

// The content database, standing in for the Jet engine the content was made for. Every
// query runs on SQLite: an SQLite content file is opened read-only as it is, a Jet file
// is imported into an in-memory SQLite database first (read by libmdb in a child process,
// so that a damaged file ends in an error, not a crash; a second open of the same file
// copies the last import). SQL in the engine's dialect is rewritten where SQLite reads it
// differently; text compares and sorts by the Greek rule of greekcollation.h. Failures
// are thrown as platform::RuntimeError with the engine's number and description.
namespace content {

class Recordset;

// Recordset types and options, by the values the content's queries pass.
enum RecordsetType : int {
    dbOpenDefault = 0,
    dbOpenTable = 1,
    dbOpenDynaset = 2,
    dbOpenSnapshot = 4,
    dbOpenForwardOnly = 8,
};
enum RecordsetOption : int {
    dbReadOnly = 4,
};

struct OpenOptions
{
    // Code page for the text of a Jet 3 file, overriding what the file declares
    // (e.g. "CP1253" or "1253"). Empty: use the file's own.
    QByteArray jet3CodePage;
    // Called during a Jet import with the rows read so far and the rows in all, from the
    // moment the whole is known and then at least every fifth of a second; returning
    // false cancels the import, which then fails with error 3059. May be empty.
    std::function<bool(qint64 done, qint64 total)> progress;
};

class Database
{
public:
    ~Database();
    Q_DISABLE_COPY_MOVE(Database)

    // Opens a content file of either kind, told apart by its first bytes, not its name.
    // Errors: 3055 empty path, 3024 no such file, 3051 not readable, 3343 neither kind or
    // damaged, 3059 cancelled through the progress callback, 3001 unknown code page.
    static std::unique_ptr<Database> OpenDatabase(const QString &path, const OpenOptions &options = {});

    // Wraps a connection made elsewhere (tests build content in memory this way). The
    // Greek text rule is installed on it.
    static std::unique_ptr<Database> fromConnection(
        std::unique_ptr<sqlite::Connection> connection, const QString &path = QString());

    // SQL text, or the name of a table (which opens the whole table, as a table-type
    // recordset that supports Index/Seek). The result is a snapshot: it is read whole
    // when opened and does not change. Errors: 3078 no such table or query, 3061 an
    // unknown column, 3075 a syntax error, 3219 a statement that would write.
    std::unique_ptr<Recordset> OpenRecordset(
        const QString &source, int type = dbOpenDefault, int options = 0);

    // Names of the user tables in the file's catalogue order.
    QStringList tableNames() const;

    sqlite3 *handle() const;
    QString path() const;

    // Writes the content to an SQLite file that also reads in the sqlite3 shell: the
    // file is written beside `destination` and renamed over it when whole. Throws
    // platform::RuntimeError.
    void saveCopy(const QString &destination) const;

private:
    Database();
    struct Private;
    std::unique_ptr<Private> d;
};

// A field of the current record. Value() is a null QVariant for a Null column.
class Field
{
public:
    Field(QString name, QVariant value);
    const QString &Name() const { return m_name; }
    const QVariant &Value() const { return m_value; }
    bool IsNull() const { return m_value.isNull(); }
    // Null joined to an empty string, as content text is read.
    QString text() const { return m_value.isNull() ? QString() : m_value.toString(); }

private:
    QString m_name;
    QVariant m_value;
};

class Recordset
{
public:
    ~Recordset();
    Q_DISABLE_COPY_MOVE(Recordset)

    // The number of records in the snapshot: exact from the start, so a count read before
    // MoveLast is already the whole.
    long RecordCount() const;
    bool BOF() const;
    // EOF is a macro of the C library, hence the spelling.
    bool Eof() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    long AbsolutePosition() const; // 0-based, -1 with no current record

    // A field of the current record by name (case-insensitive, as Jet's were). Reading
    // with no current record, or an unknown name, throws the engine's error.
    Field Fields(const QString &name) const;
    int fieldCount() const;
    QString fieldName(int index) const;
    QVariant value(int index) const;

    // Table-type recordsets only: the index by name ("PrimaryKey"), then Seek "=".
    void setIndex(const QString &indexName);
    QString Index() const;
    void Seek(const QString &comparison, const QVariant &key);
    bool NoMatch() const;

    void Close();

    // The snapshot behind the recordset; opaque outside the content engine.
    struct Private;

private:
    friend class Database;
    Recordset();
    std::unique_ptr<Private> d;
};

// Quotes a text value for joining into SQL: surrounds it with the given quote and
// doubles that quote inside, so an apostrophe in an author or a museum works.
QString sqlQuote(const QString &value, QChar quote = u'\'');

} // namespace content
