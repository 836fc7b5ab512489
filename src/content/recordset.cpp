#include "contenterrors.h"
#include "greekcollation.h"
#include "jetsql.h"
#include "recordsetdata.h"
#include "sqliteconnection.h"

#include <logging.h>

#include <sqlite3.h>

#include <QRegularExpression>

#include <algorithm>
#include <limits>
#include <numeric>

namespace content {

namespace {

QString quoteName(const QString &name)
{
    QString out = name;
    out.replace(u'"', QStringLiteral("\"\""));
    return u'"' + out + u'"';
}

bool isNumber(const QVariant &v)
{
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Bool:
        return true;
    default:
        return false;
    }
}

int rank(const QVariant &v)
{
    if (v.isNull())
        return 0;
    if (isNumber(v))
        return 1;
    if (v.typeId() == QMetaType::QByteArray)
        return 3;
    return 2;
}

// SQLite's messages name what is missing after a colon.
QString afterColon(const QString &message)
{
    const qsizetype colon = message.indexOf(u':');
    return colon < 0 ? QString() : message.mid(colon + 1).trimmed();
}

[[noreturn]] void throwFor(const sqlite::Error &e, const QString &text, const QString &path)
{
    const QString &m = e.message();
    if (m.startsWith(u"no such table"))
        throw errors::noSuchTable(afterColon(m));
    if (m.startsWith(u"no such column")) {
        // The engine the content was made for takes a name it does not know for a
        // parameter the query expects.
        throw errors::tooFewParameters(1);
    }
    if (e.code() == SQLITE_CORRUPT || e.code() == SQLITE_NOTADB)
        throw errors::unrecognizedFormat(path);
    if (m.contains(u"syntax error") || m.startsWith(u"incomplete input")
        || m.startsWith(u"unrecognized token"))
        throw errors::syntaxError(text);
    throw errors::invalidArgument();
}

} // namespace

int compareValues(const QVariant &a, const QVariant &b)
{
    int ra = rank(a);
    int rb = rank(b);
    if (ra == 1 && rb == 2) {
        bool ok = false;
        const double v = b.toString().trimmed().toDouble(&ok);
        if (ok)
            return a.toDouble() < v ? -1 : (a.toDouble() > v ? 1 : 0);
    } else if (ra == 2 && rb == 1) {
        return -compareValues(b, a);
    }
    if (ra != rb)
        return ra < rb ? -1 : 1;
    switch (ra) {
    case 0:
        return 0;
    case 1: {
        if (a.typeId() != QMetaType::Double && b.typeId() != QMetaType::Double
            && a.typeId() != QMetaType::Float && b.typeId() != QMetaType::Float) {
            const qlonglong x = a.toLongLong(), y = b.toLongLong();
            return x < y ? -1 : (x > y ? 1 : 0);
        }
        const double x = a.toDouble(), y = b.toDouble();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    case 2:
        return compareText(a.toString(), b.toString());
    default: {
        const QByteArray x = a.toByteArray(), y = b.toByteArray();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    }
}

RecordsetSource resolveRecordsetSource(sqlite::Connection &, const QStringList &tables, const QString &source)
{
    RecordsetSource out;
    out.text = source;
    QString name = source.trimmed();
    if (name.startsWith(u'[') && name.endsWith(u']'))
        name = name.mid(1, name.size() - 2);
    for (const QString &table : tables) {
        if (table.compare(name, Qt::CaseInsensitive) == 0) {
            out.isTable = true;
            out.table = table;
            // rowid order is the order the rows were stored in.
            out.sql = QStringLiteral("SELECT * FROM ") + quoteName(table);
            return out;
        }
    }
    static const QRegularExpression bareName(
        QStringLiteral(R"(^[\w ]+$)"), QRegularExpression::UseUnicodePropertiesOption);
    static const QRegularExpression statement(
        QStringLiteral(
            "^\\s*(\\(|(SELECT|TRANSFORM|PARAMETERS|WITH|VALUES|INSERT|UPDATE|DELETE|REPLACE|CREATE|DROP|"
            "ALTER|PRAGMA|VACUUM|ATTACH|DETACH|REINDEX|ANALYZE|BEGIN|COMMIT|ROLLBACK|SAVEPOINT|RELEASE|"
            "EXPLAIN)\\b)"),
        QRegularExpression::CaseInsensitiveOption);
    if (name.isEmpty() || (bareName.match(name).hasMatch() && !statement.match(name).hasMatch()))
        throw errors::noSuchTable(name);
    out.sql = jetToSqlite(source);
    return out;
}

void readSnapshot(
    sqlite::Connection &db, const RecordsetSource &source, const QString &path, Recordset::Private *d)
{
    try {
        auto stmt = db.prepare(source.sql);
        // Recordsets read; the content is never written through them.
        if (!sqlite3_stmt_readonly(stmt->handle()))
            throw errors::invalidOperation();
        d->columns = stmt->columnCount();
        QStringList bare;
        for (int c = 0; c < d->columns; ++c) {
            bare << stmt->columnName(c);
            const QString table = stmt->columnTableName(c);
            const QString origin = stmt->columnOriginName(c);
            d->qualified << (table.isEmpty() || origin.isEmpty() ? QString() : table + u'.' + origin);
        }
        for (int c = 0; c < d->columns; ++c) {
            const bool ambiguous = std::count_if(bare.cbegin(), bare.cend(), [&](const QString &n) {
                return n.compare(bare.at(c), Qt::CaseInsensitive) == 0;
            }) > 1;
            d->names << (ambiguous && !d->qualified.at(c).isEmpty() ? d->qualified.at(c) : bare.at(c));
        }
        sqlite3_stmt *row = stmt->handle();
        while (stmt->step()) {
            for (int c = 0; c < d->columns; ++c) {
                RecordsetCell cell;
                switch (sqlite3_column_type(row, c)) {
                case SQLITE_INTEGER:
                    cell.kind = RecordsetCell::Integer;
                    cell.integer = sqlite3_column_int64(row, c);
                    break;
                case SQLITE_FLOAT:
                    cell.kind = RecordsetCell::Real;
                    cell.real = sqlite3_column_double(row, c);
                    break;
                case SQLITE_TEXT:
                case SQLITE_BLOB: {
                    const bool text = sqlite3_column_type(row, c) == SQLITE_TEXT;
                    // The pointer first, then its length, as SQLite asks.
                    const void *data = text ? static_cast<const void *>(sqlite3_column_text(row, c))
                                            : sqlite3_column_blob(row, c);
                    cell.kind = text ? RecordsetCell::Text : RecordsetCell::Blob;
                    cell.length = sqlite3_column_bytes(row, c);
                    cell.offset = d->bytes.size();
                    if (cell.length > 0)
                        d->bytes.append(static_cast<const char *>(data), size_t(cell.length));
                    break;
                }
                default:
                    break;
                }
                d->cells.push_back(cell);
            }
            ++d->count;
        }
    } catch (const sqlite::Error &e) {
        throwFor(e, source.text, path);
    }
    d->position = d->count > 0 ? 0 : -1;
}

QVariant Recordset::Private::at(long row, int column) const
{
    const RecordsetCell &cell = cells[size_t(row) * size_t(columns) + size_t(column)];
    switch (cell.kind) {
    case RecordsetCell::Integer:
        if (cell.integer >= std::numeric_limits<int>::min()
            && cell.integer <= std::numeric_limits<int>::max())
            return QVariant(int(cell.integer));
        return QVariant(qlonglong(cell.integer));
    case RecordsetCell::Real:
        return QVariant(cell.real);
    case RecordsetCell::Text:
        return QVariant(QString::fromUtf8(bytes.data() + cell.offset, cell.length));
    case RecordsetCell::Blob:
        return QVariant(QByteArray(bytes.data() + cell.offset, cell.length));
    default:
        return QVariant();
    }
}

void readTableIndexes(sqlite::Connection &db, const QString &table, Recordset::Private *d)
{
    auto columnOf = [d](const QString &name) {
        for (int c = 0; c < d->columns; ++c) {
            if (d->names.at(c).compare(name, Qt::CaseInsensitive) == 0)
                return c;
        }
        return -1;
    };
    try {
        std::vector<std::pair<int, int>> key; // position in the key, column
        auto info = db.prepare(QStringLiteral("SELECT name, pk FROM pragma_table_info(?) WHERE pk > 0"));
        info->bind(1, table);
        while (info->step()) {
            const int c = columnOf(info->value(0).toString());
            if (c >= 0)
                key.emplace_back(info->value(1).toInt(), c);
        }
        std::sort(key.begin(), key.end());
        std::vector<int> primary;
        for (const auto &k : key)
            primary.push_back(k.second);

        auto list = db.prepare(QStringLiteral("SELECT name FROM pragma_index_list(?)"));
        list->bind(1, table);
        QStringList indexNames;
        while (list->step())
            indexNames << list->value(0).toString();
        for (const QString &index : indexNames) {
            std::vector<int> columns;
            auto cols = db.prepare(QStringLiteral("SELECT name FROM pragma_index_info(?) ORDER BY seqno"));
            cols->bind(1, index);
            while (cols->step())
                columns.push_back(columnOf(cols->value(0).toString()));
            if (columns.empty() || std::find(columns.begin(), columns.end(), -1) != columns.end())
                continue;
            // An index kept under the name the content's engine gave it, prefixed with
            // its table because SQLite's index names are one namespace for the file.
            QString own = index;
            if (own.startsWith(table + u'_', Qt::CaseInsensitive))
                own = own.mid(table.size() + 1);
            d->indexes.insert(own.toLower(), columns);
            if (primary.empty() && own.compare(u"PrimaryKey", Qt::CaseInsensitive) == 0)
                primary = columns;
        }
        if (!primary.empty())
            d->indexes.insert(QStringLiteral("primarykey"), primary);
    } catch (const sqlite::Error &e) {
        // A table without readable index information simply has no index to seek.
        platform::logPassedOver(&e, std::source_location::current(), lcContent());
    }
}

Field::Field(QString name, QVariant value)
    : m_name(std::move(name))
    , m_value(std::move(value))
{
}

Recordset::Recordset()
    : d(std::make_unique<Private>())
{
}

Recordset::~Recordset() = default;

namespace {

// A closed recordset answers nothing, as the engine's did.
void checkOpen(const Recordset::Private *d)
{
    if (d->closed)
        throw errors::objectNoLongerSet();
}

} // namespace

long Recordset::RecordCount() const
{
    checkOpen(d.get());
    return d->count;
}

bool Recordset::BOF() const
{
    checkOpen(d.get());
    return d->count == 0 || d->position < 0;
}

bool Recordset::Eof() const
{
    checkOpen(d.get());
    return d->count == 0 || d->position >= d->count;
}

void Recordset::MoveFirst()
{
    checkOpen(d.get());
    if (d->forwardOnly)
        throw errors::notSupported();
    if (d->count == 0)
        throw errors::noCurrentRecord();
    d->position = 0;
}

void Recordset::MoveLast()
{
    checkOpen(d.get());
    if (d->count == 0)
        throw errors::noCurrentRecord();
    d->position = d->count - 1;
}

void Recordset::MoveNext()
{
    checkOpen(d.get());
    if (d->count == 0 || d->position >= d->count)
        throw errors::noCurrentRecord();
    ++d->position;
}

void Recordset::MovePrevious()
{
    checkOpen(d.get());
    if (d->forwardOnly)
        throw errors::notSupported();
    if (d->count == 0 || d->position < 0)
        throw errors::noCurrentRecord();
    --d->position;
}

long Recordset::AbsolutePosition() const
{
    checkOpen(d.get());
    if (d->forwardOnly)
        throw errors::notSupported();
    return d->position >= 0 && d->position < d->count ? d->position : -1;
}

Field Recordset::Fields(const QString &name) const
{
    checkOpen(d.get());
    int column = -1;
    for (int c = 0; c < d->columns && column < 0; ++c) {
        if (d->names.at(c).compare(name, Qt::CaseInsensitive) == 0)
            column = c;
    }
    for (int c = 0; c < d->columns && column < 0; ++c) {
        if (!d->qualified.at(c).isEmpty() && d->qualified.at(c).compare(name, Qt::CaseInsensitive) == 0)
            column = c;
    }
    if (column < 0)
        throw errors::itemNotFound();
    if (d->position < 0 || d->position >= d->count)
        throw errors::noCurrentRecord();
    return Field(d->names.at(column), d->at(d->position, column));
}

int Recordset::fieldCount() const
{
    checkOpen(d.get());
    return d->columns;
}

QString Recordset::fieldName(int index) const
{
    checkOpen(d.get());
    if (index < 0 || index >= d->columns)
        throw errors::itemNotFound();
    return d->names.at(index);
}

QVariant Recordset::value(int index) const
{
    checkOpen(d.get());
    if (index < 0 || index >= d->columns)
        throw errors::itemNotFound();
    if (d->position < 0 || d->position >= d->count)
        throw errors::noCurrentRecord();
    return d->at(d->position, index);
}

void Recordset::setIndex(const QString &indexName)
{
    checkOpen(d.get());
    if (!d->tableType)
        throw errors::notSupported();
    const auto it = d->indexes.constFind(indexName.toLower());
    if (it == d->indexes.constEnd())
        throw errors::notAnIndex(indexName);
    d->indexName = indexName;
    d->indexColumns = *it;
    // Setting an index puts the table in that index's order, and makes the first
    // record in it the current one.
    std::vector<long> order(size_t(d->count));
    std::iota(order.begin(), order.end(), 0L);
    const auto &cols = d->indexColumns;
    // The keys read once, not at every comparison.
    std::vector<QVariant> keys;
    keys.reserve(order.size() * cols.size());
    for (long row = 0; row < d->count; ++row) {
        for (int c : cols)
            keys.push_back(d->at(row, c));
    }
    std::stable_sort(order.begin(), order.end(), [&](long x, long y) {
        for (size_t k = 0; k < cols.size(); ++k) {
            const int r = compareValues(keys[size_t(x) * cols.size() + k], keys[size_t(y) * cols.size() + k]);
            if (r != 0)
                return r < 0;
        }
        return false;
    });
    std::vector<RecordsetCell> sorted;
    sorted.reserve(d->cells.size());
    for (long row : order) {
        const auto first = d->cells.begin() + std::ptrdiff_t(size_t(row) * size_t(d->columns));
        sorted.insert(sorted.end(), first, first + d->columns);
    }
    d->cells.swap(sorted);
    d->position = d->count > 0 ? 0 : -1;
}

QString Recordset::Index() const
{
    checkOpen(d.get());
    return d->indexName;
}

void Recordset::Seek(const QString &comparison, const QVariant &key)
{
    checkOpen(d.get());
    if (!d->tableType)
        throw errors::notSupported();
    if (d->indexColumns.empty())
        throw errors::noIndex();
    const QString op = comparison.trimmed();
    if (op != u"=" && op != u">=" && op != u">" && op != u"<=" && op != u"<")
        throw errors::invalidArgument();
    const QVariantList keys = key.typeId() == QMetaType::QVariantList ? key.toList() : QVariantList {key};
    if (keys.isEmpty() || keys.size() > qsizetype(d->indexColumns.size()))
        throw errors::invalidArgument();
    auto compareRow = [&](long row) {
        for (qsizetype k = 0; k < keys.size(); ++k) {
            const int r = compareValues(d->at(row, d->indexColumns[size_t(k)]), keys.at(k));
            if (r != 0)
                return r;
        }
        return 0;
    };
    long found = -1;
    if (op == u"=" || op == u">=" || op == u">") {
        for (long row = 0; row < d->count && found < 0; ++row) {
            const int r = compareRow(row);
            if ((op == u"=" && r == 0) || (op == u">=" && r >= 0) || (op == u">" && r > 0))
                found = row;
        }
    } else {
        for (long row = d->count - 1; row >= 0 && found < 0; --row) {
            const int r = compareRow(row);
            if ((op == u"<=" && r <= 0) || (op == u"<" && r < 0))
                found = row;
        }
    }
    d->noMatch = found < 0;
    // With no match there is no current record.
    d->position = found < 0 ? d->count : found;
}

bool Recordset::NoMatch() const
{
    checkOpen(d.get());
    return d->noMatch;
}

void Recordset::Close()
{
    checkOpen(d.get());
    d->closed = true;
    d->cells.clear();
    d->cells.shrink_to_fit();
    d->bytes.clear();
    d->bytes.shrink_to_fit();
}

} // namespace content
