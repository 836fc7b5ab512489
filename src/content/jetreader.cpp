#include "jetreader.h"

#include "contenterrors.h"

#include <sqlite3.h>

#include <mdbtools.h>

#include <iconv.h>

#include <QDateTime>
#include <QStringList>

#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

namespace content::jet {

namespace {

constexpr int RowOffsetMask = 0x1fff;
constexpr int LongValueHeader = 12; // length and flags, page and row, reserved

quint32 le32(const unsigned char *p)
{
    return quint32(p[0]) | quint32(p[1]) << 8 | quint32(p[2]) << 16 | quint32(p[3]) << 24;
}

ReadError corrupt()
{
    return ReadError {errors::UnrecognizedFormat, QString()};
}

QString quoteName(const QString &name)
{
    QString out = name;
    out.replace(u'"', QStringLiteral("\"\""));
    return u'"' + out + u'"';
}

struct HandleCloser
{
    void operator()(MdbHandle *mdb) const { mdb_close(mdb); }
};
struct TableFreer
{
    void operator()(MdbTableDef *t) const { mdb_free_tabledef(t); }
};
using TablePtr = std::unique_ptr<MdbTableDef, TableFreer>;

class Iconv
{
public:
    Iconv(const char *to, const char *from)
        : m_cd(iconv_open(to, from))
    {
    }
    ~Iconv()
    {
        if (valid())
            iconv_close(m_cd);
    }
    Q_DISABLE_COPY_MOVE(Iconv)
    bool valid() const { return m_cd != iconv_t(-1); }

    // Single-byte code page text to a QString; a byte the code page lacks becomes U+FFFD.
    QString decode(const unsigned char *data, size_t size) const
    {
        QByteArray out;
        out.resize(qsizetype(size * 4 + 4));
        char *in = reinterpret_cast<char *>(const_cast<unsigned char *>(data));
        size_t inLeft = size;
        char *outPtr = out.data();
        size_t outLeft = size_t(out.size());
        iconv(m_cd, nullptr, nullptr, nullptr, nullptr);
        while (inLeft > 0) {
            if (iconv(m_cd, &in, &inLeft, &outPtr, &outLeft) != size_t(-1))
                break;
            if (errno == E2BIG || outLeft < 4)
                break;
            static const char replacement[] = "\xEF\xBF\xBD";
            std::memcpy(outPtr, replacement, 3);
            outPtr += 3;
            outLeft -= 3;
            ++in;
            --inLeft;
        }
        return QString::fromUtf8(out.constData(), qsizetype(outPtr - out.constData()));
    }

private:
    iconv_t m_cd;
};

class Reader
{
public:
    Reader(MdbHandle *mdb, qint64 fileSize, const Iconv *codePage)
        : m_mdb(mdb)
        , m_fileSize(fileSize)
        , m_codePage(codePage)
    {
    }

    // Text as the file stores it: Jet 4 in UCS-2, Jet 3 in the file's code page.
    QString text(const unsigned char *data, size_t size) const
    {
        if (!IS_JET3(m_mdb))
            return jet4Text(data, size);
        return m_codePage->decode(data, size);
    }

    // Memo and OLE values: inline in the row, on one long-value page, or chained over
    // several. The chain is followed here rather than through libmdb's bound buffer,
    // which stops at its bind size; it is bounded by the declared length and by the
    // number of pages in the file, so a damaged chain cannot loop.
    QByteArray longValue(const unsigned char *field, int size)
    {
        if (size < LongValueHeader)
            return QByteArray();
        const quint32 head = le32(field);
        const quint32 declared = head & 0x3fffffff;
        if (head & 0x80000000u) {
            return QByteArray(
                reinterpret_cast<const char *>(field + LongValueHeader), size - LongValueHeader);
        }
        if (declared > quint64(m_fileSize) * 2)
            throw corrupt();
        quint32 pageRow = le32(field + 4);
        if (head & 0x40000000u) {
            void *buf = nullptr;
            int start = 0;
            size_t len = 0;
            if (mdb_find_pg_row(m_mdb, int(pageRow), &buf, &start, &len) != 0)
                throw corrupt();
            len = std::min<size_t>(len, declared);
            return QByteArray(static_cast<const char *>(buf) + start, qsizetype(len));
        }
        if ((head & 0xc0000000u) != 0)
            throw corrupt();
        QByteArray out;
        const qint64 maxPages = m_fileSize / m_mdb->fmt->pg_size + 1;
        qint64 pages = 0;
        while (pageRow != 0 && quint32(out.size()) < declared) {
            if (++pages > maxPages)
                throw corrupt();
            void *buf = nullptr;
            int start = 0;
            size_t len = 0;
            if (mdb_find_pg_row(m_mdb, int(pageRow), &buf, &start, &len) != 0 || len < 4)
                throw corrupt();
            const auto *row = static_cast<const unsigned char *>(buf) + start;
            const quint32 next = le32(row);
            const size_t take = std::min<size_t>(len - 4, declared - quint32(out.size()));
            out.append(reinterpret_cast<const char *>(row + 4), qsizetype(take));
            pageRow = next;
        }
        return out;
    }

private:
    MdbHandle *m_mdb;
    qint64 m_fileSize;
    const Iconv *m_codePage;
};

QString sqlType(int colType)
{
    switch (colType) {
    case MDB_BOOL:
        return QStringLiteral("BOOLEAN");
    case MDB_BYTE:
        return QStringLiteral("TINYINT");
    case MDB_INT:
        return QStringLiteral("SMALLINT");
    case MDB_LONGINT:
    case MDB_COMPLEX:
        // INT rather than INTEGER: a key declared INTEGER would become SQLite's rowid and
        // the table would read back in key order instead of the order it was stored.
        return QStringLiteral("INT");
    case MDB_MONEY:
        return QStringLiteral("CURRENCY");
    case MDB_FLOAT:
        return QStringLiteral("FLOAT");
    case MDB_DOUBLE:
        return QStringLiteral("DOUBLE");
    case MDB_DATETIME:
        return QStringLiteral("DATETIME");
    case MDB_BINARY:
    case MDB_OLE:
        return QStringLiteral("BLOB");
    case MDB_TEXT:
    case MDB_MEMO:
        return QStringLiteral("TEXT COLLATE NOCASE");
    case MDB_REPID:
        return QStringLiteral("GUID");
    case MDB_NUMERIC:
        return QStringLiteral("NUMERIC");
    default:
        return QStringLiteral("BLOB");
    }
}

QString guidText(const unsigned char *p)
{
    return QString::asprintf("{%02X%02X%02X%02X-%02X%02X-%02X%02X-%02X%02X-%02X%02X%02X%02X%02X%02X}", p[3],
        p[2], p[1], p[0], p[5], p[4], p[7], p[6], p[8], p[9], p[10], p[11], p[12], p[13], p[14], p[15]);
}

void exec(sqlite3 *db, const QString &sql)
{
    char *message = nullptr;
    if (sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, &message) != SQLITE_OK) {
        const QString text = QString::fromUtf8(message ? message : "");
        sqlite3_free(message);
        throw ReadError {errors::UnrecognizedFormat, text};
    }
}

struct TableRead
{
    MdbCatalogEntry *entry = nullptr;
    TablePtr table;
    QStringList columnNames;
    std::vector<int> keyColumns; // indexes into the column list
};

class Importer
{
public:
    Importer(MdbHandle *mdb, qint64 fileSize, const Iconv *codePage, sqlite3 *db,
        const std::function<void(qint64, qint64)> &report)
        : m_mdb(mdb)
        , m_fileSize(fileSize)
        , m_reader(mdb, fileSize, codePage)
        , m_db(db)
        , m_report(report)
    {
    }

    void run()
    {
        if (!mdb_read_catalog(m_mdb, MDB_TABLE))
            throw corrupt();
        std::vector<TableRead> tables;
        qint64 total = 0;
        for (unsigned i = 0; i < m_mdb->num_catalog; ++i) {
            auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(m_mdb->catalog, i));
            if (entry->object_type != MDB_TABLE || !mdb_is_user_table(entry))
                continue;
            TableRead t;
            t.entry = entry;
            t.table.reset(mdb_read_table(entry));
            if (!t.table || !mdb_read_columns(t.table.get()))
                throw corrupt();
            if (t.table->num_cols == 0 || t.table->num_cols > MDB_MAX_COLS)
                throw corrupt();
            mdb_read_indices(t.table.get());
            for (unsigned c = 0; c < t.table->num_cols; ++c) {
                auto *col = static_cast<MdbColumn *>(g_ptr_array_index(t.table->columns, c));
                t.columnNames << QString::fromUtf8(col->name);
            }
            t.keyColumns = primaryKey(t.table.get());
            total += t.table->num_rows;
            tables.push_back(std::move(t));
        }
        m_total = total;
        report();
        exec(m_db, QStringLiteral("BEGIN"));
        for (TableRead &t : tables) {
            // A key that the rows break (a damaged or odd file) is dropped rather than
            // losing the rows: the table is read again without it.
            if (!importTable(t, true)) {
                exec(
                    m_db, QStringLiteral("DROP TABLE ") + quoteName(QString::fromUtf8(t.entry->object_name)));
                importTable(t, false);
            }
        }
        exec(m_db, QStringLiteral("COMMIT"));
        m_done = m_total;
        report();
    }

private:
    static std::vector<int> primaryKey(MdbTableDef *table)
    {
        std::vector<int> key;
        if (!table->indices)
            return key;
        for (unsigned i = 0; i < table->num_idxs && i < table->indices->len; ++i) {
            auto *idx = static_cast<MdbIndex *>(g_ptr_array_index(table->indices, i));
            if (idx->index_type != 1)
                continue;
            for (unsigned k = 0; k < idx->num_keys && k < MDB_MAX_IDX_COLS; ++k) {
                const int col = idx->key_col_num[k] - 1;
                if (col < 0 || col >= int(table->num_cols))
                    return {};
                key.push_back(col);
            }
            break;
        }
        return key;
    }

    void report()
    {
        if (m_report)
            m_report(m_done, m_total);
    }

    bool importTable(TableRead &t, bool withKey)
    {
        MdbTableDef *table = t.table.get();
        const QString name = QString::fromUtf8(t.entry->object_name);
        QStringList defs;
        for (unsigned c = 0; c < table->num_cols; ++c) {
            auto *col = static_cast<MdbColumn *>(g_ptr_array_index(table->columns, c));
            defs << quoteName(t.columnNames.at(c)) + u' ' + sqlType(col->col_type);
        }
        if (withKey && !t.keyColumns.empty()) {
            QStringList keys;
            for (int k : t.keyColumns)
                keys << quoteName(t.columnNames.at(k));
            defs << QStringLiteral("PRIMARY KEY (") + keys.join(u", ") + u')';
        }
        exec(m_db,
            QStringLiteral("CREATE TABLE ") + quoteName(name) + QStringLiteral(" (") + defs.join(u", ")
                + u')');

        QStringList marks;
        for (unsigned c = 0; c < table->num_cols; ++c)
            marks << QStringLiteral("?");
        const QByteArray insert = (QStringLiteral("INSERT INTO ") + quoteName(name)
            + QStringLiteral(" VALUES (") + marks.join(u',') + u')')
                                      .toUtf8();
        sqlite3_stmt *stmt = nullptr;
        if (sqlite3_prepare_v2(m_db, insert.constData(), -1, &stmt, nullptr) != SQLITE_OK)
            throw corrupt();
        std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt *)> guard(stmt, sqlite3_finalize);

        std::vector<MdbField> fields(table->num_cols);
        mdb_rewind_table(table);
        const qint64 doneBefore = m_done;
        qint64 rows = 0;
        // Every row takes some bytes of the file; more rows than bytes is a loop.
        const qint64 maxRows = m_fileSize;
        while (mdb_fetch_row(table)) {
            if (++rows > maxRows)
                throw corrupt();
            bindRow(table, fields.data(), stmt);
            const int rc = sqlite3_step(stmt);
            sqlite3_reset(stmt);
            sqlite3_clear_bindings(stmt);
            if (rc == SQLITE_CONSTRAINT) {
                m_done = doneBefore;
                return false;
            }
            if (rc != SQLITE_DONE)
                throw corrupt();
            ++m_done;
            if ((m_done & 63) == 0)
                report();
        }
        report();
        return true;
    }

    void bindRow(MdbTableDef *table, MdbField *fields, sqlite3_stmt *stmt)
    {
        // The row that mdb_fetch_row just read is on the current page, one before the
        // table's row cursor; cracking it again gives each field's place and its null flag,
        // which libmdb's bound strings do not tell apart from an empty text.
        int start = 0;
        size_t size = 0;
        if (mdb_find_row(m_mdb, int(table->cur_row) - 1, &start, &size) != 0)
            throw corrupt();
        start &= RowOffsetMask;
        const int count = mdb_crack_row(table, start, size, fields);
        if (count < 0)
            throw corrupt();
        const int pageSize = int(m_mdb->fmt->pg_size);
        for (int i = 0; i < count && i < int(table->num_cols); ++i) {
            const MdbField &f = fields[i];
            if (f.colnum < 0 || f.colnum >= int(table->num_cols))
                throw corrupt();
            auto *col = static_cast<MdbColumn *>(g_ptr_array_index(table->columns, f.colnum));
            const int param = f.colnum + 1;
            if (col->col_type == MDB_BOOL) {
                // A Yes/No value lives in the null mask: a set bit is Yes.
                sqlite3_bind_int(stmt, param, f.is_null ? 0 : -1);
                continue;
            }
            if (f.is_null)
                continue; // unbound parameters are NULL
            if (f.start < 0 || f.siz < 0 || f.start + f.siz > pageSize)
                throw corrupt();
            const unsigned char *p = m_mdb->pg_buf + f.start;
            bindValue(stmt, param, col, p, f.siz);
        }
    }

    void bindValue(sqlite3_stmt *stmt, int param, MdbColumn *col, const unsigned char *p, int size)
    {
        auto needs = [&](int bytes) {
            if (size < bytes)
                throw corrupt();
        };
        switch (col->col_type) {
        case MDB_BYTE:
            needs(1);
            sqlite3_bind_int(stmt, param, p[0]);
            break;
        case MDB_INT:
            needs(2);
            sqlite3_bind_int(stmt, param, qint16(quint16(p[0] | p[1] << 8)));
            break;
        case MDB_LONGINT:
        case MDB_COMPLEX:
            needs(4);
            sqlite3_bind_int64(stmt, param, qint32(le32(p)));
            break;
        case MDB_MONEY: {
            needs(8);
            qint64 v = 0;
            std::memcpy(&v, p, 8);
            sqlite3_bind_double(stmt, param, double(v) / 10000.0);
            break;
        }
        case MDB_FLOAT: {
            needs(4);
            float v = 0;
            std::memcpy(&v, p, 4);
            sqlite3_bind_double(stmt, param, double(v));
            break;
        }
        case MDB_DOUBLE: {
            needs(8);
            double v = 0;
            std::memcpy(&v, p, 8);
            sqlite3_bind_double(stmt, param, v);
            break;
        }
        case MDB_DATETIME: {
            needs(8);
            double v = 0;
            std::memcpy(&v, p, 8);
            const QString iso = jetDateTime(v);
            if (!iso.isEmpty())
                bindText(stmt, param, iso);
            break;
        }
        case MDB_TEXT:
            bindText(stmt, param, m_reader.text(p, size_t(size)));
            break;
        case MDB_MEMO: {
            const QByteArray raw = m_reader.longValue(p, size);
            bindText(stmt, param,
                m_reader.text(reinterpret_cast<const unsigned char *>(raw.constData()), size_t(raw.size())));
            break;
        }
        case MDB_OLE: {
            const QByteArray raw = m_reader.longValue(p, size);
            sqlite3_bind_blob64(stmt, param, raw.constData(), sqlite3_uint64(raw.size()), SQLITE_TRANSIENT);
            break;
        }
        case MDB_REPID:
            needs(16);
            bindText(stmt, param, guidText(p));
            break;
        case MDB_NUMERIC: {
            char *s = mdb_numeric_to_string(m_mdb, int(p - m_mdb->pg_buf), col->col_scale, col->col_prec);
            const QByteArray text(s ? s : "");
            g_free(s);
            bool ok = false;
            const double v = text.toDouble(&ok);
            if (ok)
                sqlite3_bind_double(stmt, param, v);
            else
                sqlite3_bind_text64(stmt, param, text.constData(), sqlite3_uint64(text.size()),
                    SQLITE_TRANSIENT, SQLITE_UTF8);
            break;
        }
        default:
            sqlite3_bind_blob64(stmt, param, p, sqlite3_uint64(size), SQLITE_TRANSIENT);
            break;
        }
        m_bytes += size;
        if (m_bytes > m_fileSize * 8 + (1 << 20))
            throw corrupt();
    }

    void bindText(sqlite3_stmt *stmt, int param, const QString &text)
    {
        const QByteArray utf8 = text.toUtf8();
        sqlite3_bind_text64(
            stmt, param, utf8.constData(), sqlite3_uint64(utf8.size()), SQLITE_TRANSIENT, SQLITE_UTF8);
    }

    MdbHandle *m_mdb;
    qint64 m_fileSize;
    Reader m_reader;
    sqlite3 *m_db;
    const std::function<void(qint64, qint64)> &m_report;
    qint64 m_total = 0;
    qint64 m_done = 0;
    qint64 m_bytes = 0;
};

} // namespace

QString jet4Text(const unsigned char *data, size_t size)
{
    QString out;
    if (size >= 2 && data[0] == 0xff && data[1] == 0xfe) {
        out.reserve(qsizetype(size));
        bool compressed = true;
        size_t i = 2;
        while (i < size) {
            if (data[i] == 0) {
                compressed = !compressed;
                ++i;
            } else if (compressed) {
                out += QChar(char16_t(data[i]));
                ++i;
            } else if (i + 1 < size) {
                out += QChar(char16_t(data[i] | data[i + 1] << 8));
                i += 2;
            } else {
                break;
            }
        }
        return out;
    }
    out.resize(qsizetype(size / 2));
    for (size_t i = 0; i + 1 < size; i += 2)
        out[qsizetype(i / 2)] = QChar(char16_t(data[i] | data[i + 1] << 8));
    return out;
}

// Before 1899-12-30 the whole part counts back while the fraction still counts forward.
QString jetDateTime(double value)
{
    if (!std::isfinite(value) || value < -657434.0 || value > 2958465.999999)
        return QString();
    const double whole = std::trunc(value);
    const double fraction = std::fabs(value - whole);
    qint64 seconds = qint64(std::llround(fraction * 86400.0));
    qint64 days = qint64(whole);
    if (seconds >= 86400) {
        seconds -= 86400;
        days += 1;
    }
    const QDate date = QDate(1899, 12, 30).addDays(days);
    const QTime time = QTime(0, 0).addSecs(int(seconds));
    return date.toString(u"yyyy-MM-dd") + u'T' + time.toString(u"HH:mm:ss");
}

bool hasJetSignature(const QByteArray &head)
{
    return head.size() >= 20 && head.at(0) == 0 && head.at(1) == 1 && head.at(2) == 0 && head.at(3) == 0
        && (head.mid(4, 15) == "Standard Jet DB" || head.mid(4, 15) == "Standard ACE DB");
}

bool checkHeader(const QByteArray &bytes, Header *header, QString *reason)
{
    if (!hasJetSignature(bytes) || bytes.size() < 0x18) {
        *reason = QStringLiteral("no Jet signature");
        return false;
    }
    const auto *p = reinterpret_cast<const unsigned char *>(bytes.constData());
    const quint32 version = le32(p + 0x14);
    if (version > MDB_VER_ACCDB_2019) {
        *reason = QStringLiteral("unknown version %1").arg(version);
        return false;
    }
    const int pageSize = version == MDB_VER_JET3 ? 2048 : 4096;
    if (bytes.size() % pageSize != 0) {
        *reason = QStringLiteral("not whole pages");
        return false;
    }
    const qint64 pages = bytes.size() / pageSize;
    // The header page, the first page map and the system catalogue's definition.
    if (pages <= 2) {
        *reason = QStringLiteral("too short");
        return false;
    }
    // The catalogue's table definition must sit where libmdb looks for it.
    const unsigned char *catalogue = p + qint64(2) * pageSize;
    if (catalogue[0] != MDB_PAGE_TABLE) {
        *reason = QStringLiteral("no catalogue");
        return false;
    }
    header->version = int(version);
    header->pageSize = pageSize;
    header->pageCount = pages;
    return true;
}

void readJetInto(const QByteArray &bytes, const QByteArray &jet3CodePage, sqlite3 *db,
    const std::function<void(qint64, qint64)> &report)
{
    Header header;
    QString reason;
    if (!checkHeader(bytes, &header, &reason))
        throw corrupt();
    std::unique_ptr<MdbHandle, HandleCloser> mdb(
        mdb_open_buffer(const_cast<char *>(bytes.constData()), size_t(bytes.size()), MDB_NOFLAGS));
    if (!mdb)
        throw corrupt();
    if (int(mdb->f->jet_version) != header.version)
        throw corrupt();

    // Text conversion is set here rather than left to libmdb's environment variables:
    // names and values come out as UTF-8, and a Jet 3 file is read in the code page its
    // header declares unless the caller says otherwise.
    QByteArray codePage = jet3CodePage.trimmed();
    bool numeric = false;
    codePage.toInt(&numeric);
    if (numeric)
        codePage.prepend("CP");
    if (codePage.isEmpty())
        codePage = mdb->f->code_page ? "CP" + QByteArray::number(mdb->f->code_page) : QByteArray("CP1252");
    auto cp = std::make_unique<Iconv>("UTF-8", codePage.constData());
    if (!cp->valid()) {
        if (!jet3CodePage.isEmpty() && IS_JET3(mdb.get()))
            throw ReadError {errors::InvalidArgument, QString::fromLatin1(jet3CodePage)};
        codePage = "CP1252";
        cp = std::make_unique<Iconv>("UTF-8", "CP1252");
    }
    mdb_iconv_close(mdb.get());
    if (IS_JET3(mdb.get())) {
        mdb->iconv_in = iconv_open("UTF-8", codePage.constData());
        mdb->iconv_out = iconv_open(codePage.constData(), "UTF-8");
    } else {
        mdb->iconv_in = iconv_open("UTF-8", "UCS-2LE");
        mdb->iconv_out = iconv_open("UCS-2LE", "UTF-8");
    }

    Importer importer(mdb.get(), bytes.size(), cp.get(), db, report);
    importer.run();
}

} // namespace content::jet
