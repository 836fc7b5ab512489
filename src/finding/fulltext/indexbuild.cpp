#include "durablefile.h"
#include "fulltextindex.h"
#include "indexformat.h"
#include "textstamps.h"
#include "wordfold.h"

#include <database.h>
#include <logging.h>
#include <runtimeerror.h>
#include <sqliteconnection.h>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QRandomGenerator>
#include <QStandardPaths>

#include <sqlite3.h>

#include <algorithm>
#include <vector>

namespace fulltext {

namespace {

struct ContentKey
{
    QString path;
    qint64 size = -1;
    qint64 mtime = -1;
};

ContentKey keyOf(const QString &contentFile)
{
    const QFileInfo info(contentFile);
    return {info.absoluteFilePath(), info.size(), info.lastModified().toMSecsSinceEpoch()};
}

// The cache folder cannot be made or written: the index is then kept in memory.
constexpr int CacheNotWritable = 3051;

[[noreturn]] void cacheError(const QString &what)
{
    throw platform::RuntimeError(CacheNotWritable,
        QStringLiteral("Δεν είναι δυνατή η εγγραφή του ευρετηρίου των κειμένων (%1).").arg(what));
}

// The words of one term as the sources are read.
struct TermPostings
{
    QString term;
    QByteArray docs;
    QByteArray positions;
    int lastDoc = 0;
};

class Builder
{
public:
    // Adds the next source, its words at places from 0, field after field; `titleWords`
    // of them are its title, the first field. Returns the places taken.
    int add(int doc, const QStringList &fields, int titleWords)
    {
        m_places.clear();
        int place = 0;
        for (const QString &field : fields) {
            // One place left empty between fields, so that a phrase never runs from the
            // end of one (a title) into the next (its author).
            if (place > 0)
                ++place;
            placeWords(field, place);
        }
        // Sorted by term, each term's places in order.
        std::stable_sort(m_places.begin(), m_places.end(),
            [](const std::pair<int, int> &a, const std::pair<int, int> &b) { return a.first < b.first; });
        for (size_t i = 0; i < m_places.size();) {
            size_t j = i;
            while (j < m_places.size() && m_places[j].first == m_places[i].first)
                ++j;
            TermPostings &t = m_terms[size_t(m_places[i].first)];
            const auto count = std::uint32_t(j - i);
            const bool inTitle = m_places[i].second < titleWords;
            format::putVarint(t.docs, std::uint32_t(doc - t.lastDoc));
            format::putVarint(t.docs, count * 2 + (inTitle ? 1 : 0));
            t.lastDoc = doc;
            int previous = 0;
            for (size_t k = i; k < j; ++k) {
                format::putVarint(t.positions, std::uint32_t(m_places[k].second - previous));
                previous = m_places[k].second;
            }
            i = j;
        }
        return place;
    }

    std::vector<TermPostings> &terms() { return m_terms; }

private:
    void placeWords(const QString &text, int &place)
    {
        forEachWord(text, [&](qsizetype, qsizetype, const QString &folded) {
            auto it = m_ids.constFind(folded);
            int id;
            if (it == m_ids.cend()) {
                id = int(m_terms.size());
                m_ids.insert(folded, id);
                m_terms.push_back({folded, {}, {}, 0});
            } else {
                id = *it;
            }
            m_places.push_back({id, place++});
        });
    }

    QHash<QString, int> m_ids;
    std::vector<TermPostings> m_terms;
    std::vector<std::pair<int, int>> m_places;
};

int wordCount(const QString &text)
{
    int n = 0;
    forEachWord(text, [&](qsizetype, qsizetype, const QString &) { ++n; });
    return n;
}

// The text of a source's file, its stamp taken first.
QString readText(const QString &path, TextStamps &stamps)
{
    if (path.isEmpty())
        return QString();
    stamps.note(path);
    return readSourceText(path);
}

// A source's words, field by field: the title first, so that its words take the first
// places. The index keeps them one field a line.
QStringList indexedFields(const Source &s, const QString &body)
{
    QStringList lines {listTitle(s)};
    for (const QString &field :
        {s.resTypeID == 2 ? plainField(s.caption) : s.book, s.author, s.museum, s.lezanda}) {
        if (!field.isEmpty())
            lines << field;
    }
    if (!body.isEmpty())
        lines << body;
    return lines;
}

// The sources' words, packed a block of neighbours at a time into the texts table.
class TextBlocks
{
public:
    explicit TextBlocks(content::sqlite::Connection &db)
        : m_insert(db.prepare(QStringLiteral("INSERT INTO texts VALUES (?, ?)")))
    {
    }

    void add(int doc, const QString &text)
    {
        if (m_texts.isEmpty())
            m_first = doc;
        m_texts << text;
        m_size += text.size();
        if (m_size >= format::TextBlockBytes)
            finish();
    }

    // Writes the block begun, if any.
    void finish()
    {
        if (m_texts.isEmpty())
            return;
        const QByteArray data = format::packTexts(m_texts);
        m_insert->reset();
        m_insert->bind(1, m_first);
        m_insert->bind(2, data);
        m_insert->step();
        m_sum.add(std::int64_t(m_first));
        m_sum.add(data);
        m_texts.clear();
        m_size = 0;
    }

    const format::Checksum &checksum() const { return m_sum; }

private:
    std::unique_ptr<content::sqlite::Statement> m_insert;
    QList<QString> m_texts;
    qsizetype m_size = 0;
    int m_first = 0;
    format::Checksum m_sum;
};

// Writes the whole index of `sources` into an empty database: a file of the cache or,
// where the cache cannot be written, one in memory.
void writeIndex(content::sqlite::Connection &db, const ContentKey &key, const QList<Source> &sources,
    const QString &dataFolder, const Progress &progress)
{
    db.execute(QStringLiteral(
        "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;"
        "CREATE TABLE meta (key TEXT PRIMARY KEY, value TEXT);"
        "CREATE TABLE docs (doc INTEGER PRIMARY KEY, ResourceID INTEGER, ResTypeID INTEGER, title TEXT, "
        "book TEXT, titleWords INTEGER, words INTEGER);"
        "CREATE TABLE texts (first INTEGER PRIMARY KEY, data BLOB);"
        "CREATE TABLE terms (id INTEGER PRIMARY KEY, term TEXT, stem TEXT, docs BLOB, positions BLOB);"
        "BEGIN"));
    Builder builder;
    TextStamps stamps;
    format::Checksum docsSum, termsSum;
    TextBlocks texts(db);
    auto insertDoc = db.prepare(QStringLiteral("INSERT INTO docs VALUES (?, ?, ?, ?, ?, ?, ?)"));
    const qint64 total = sources.size();
    for (qsizetype doc = 0; doc < sources.size(); ++doc) {
        if (progress && !progress(doc, total))
            throw platform::RuntimeError(3059, QStringLiteral("Η λειτουργία ακυρώθηκε."));
        const Source &s = sources.at(doc);
        const QString title = listTitle(s);
        const QStringList fields = indexedFields(s, readText(s.textFile(dataFolder), stamps));
        const QString text = fields.join(u'\n');
        const int titleWords = wordCount(title);
        const int words = builder.add(int(doc), fields, titleWords);
        insertDoc->reset();
        insertDoc->bind(1, int(doc));
        insertDoc->bind(2, s.resourceID);
        insertDoc->bind(3, s.resTypeID);
        insertDoc->bind(4, title);
        insertDoc->bind(5, s.book);
        insertDoc->bind(6, titleWords);
        insertDoc->bind(7, words);
        insertDoc->step();
        format::addDoc(docsSum, {doc, s.resourceID, s.resTypeID, titleWords, words}, title.toUtf8(),
            s.book.toUtf8());
        texts.add(int(doc), text);
    }
    texts.finish();
    // Term ids follow the words' order, so that the words a prefix begins are
    // neighbours.
    std::vector<TermPostings> &terms = builder.terms();
    std::sort(terms.begin(), terms.end(),
        [](const TermPostings &a, const TermPostings &b) { return a.term < b.term; });
    auto insertTerm = db.prepare(QStringLiteral("INSERT INTO terms VALUES (?, ?, ?, ?, ?)"));
    for (size_t id = 0; id < terms.size(); ++id) {
        insertTerm->reset();
        insertTerm->bind(1, qint64(id));
        insertTerm->bind(2, terms[id].term);
        const QString stem = greekStem(terms[id].term);
        insertTerm->bind(3, stem.isEmpty() ? QVariant() : QVariant(stem));
        insertTerm->bind(4, terms[id].docs);
        insertTerm->bind(5, terms[id].positions);
        insertTerm->step();
        format::addTerm(termsSum, terms[id].term.toUtf8(), stem.toUtf8(), terms[id].docs, terms[id].positions);
    }
    auto insertMeta = db.prepare(QStringLiteral("INSERT INTO meta VALUES (?, ?)"));
    for (const auto &[name, value] : {std::pair {QStringLiteral("format"), QString::number(format::Version)},
             {QStringLiteral("checksum"), format::checksumText(docsSum, termsSum, texts.checksum())},
             {QStringLiteral("path"), key.path}, {QStringLiteral("size"), QString::number(key.size)},
             {QStringLiteral("mtime"), QString::number(key.mtime)}}) {
        insertMeta->reset();
        insertMeta->bind(1, name);
        insertMeta->bind(2, value);
        insertMeta->step();
    }
    stamps.write(db);
    db.execute(QStringLiteral("COMMIT"));
    if (progress)
        progress(total, total);
}

} // namespace

QString cacheFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
        + QStringLiteral("/tremidia");
}

QString cacheFileFor(const QString &contentFile)
{
    const QByteArray hash = QCryptographicHash::hash(
        QFileInfo(contentFile).absoluteFilePath().toUtf8(), QCryptographicHash::Sha1)
                                .toHex()
                                .left(20);
    return cacheFolder() + QStringLiteral("/fulltext-") + QString::fromLatin1(hash)
        + QStringLiteral(".sqlite");
}

bool isCurrent(const QString &contentFile)
{
    const QString cache = cacheFileFor(contentFile);
    if (!QFileInfo::exists(cache) || !QFileInfo::exists(contentFile))
        return false;
    try {
        content::sqlite::Connection db(cache, SQLITE_OPEN_READONLY);
        auto st = db.prepare(QStringLiteral("SELECT key, value FROM meta"));
        QHash<QString, QString> meta;
        while (st->step())
            meta.insert(st->value(0).toString(), st->value(1).toString());
        const ContentKey key = keyOf(contentFile);
        return meta.value(QStringLiteral("format")) == QString::number(format::Version)
            && meta.value(QStringLiteral("path")) == key.path
            && meta.value(QStringLiteral("size")) == QString::number(key.size)
            && meta.value(QStringLiteral("mtime")) == QString::number(key.mtime) && TextStamps::unchanged(db);
    } catch (const content::sqlite::Error &) {
        return false;
    }
}

QString buildIndex(const QString &contentFile, const QList<Source> &sources, const QString &dataFolder,
    const Progress &progress)
{
    // The key is taken before the sources were read by the caller's clock, as near as we
    // can: a content file changed during the build is then indexed again next time.
    const ContentKey key = keyOf(contentFile);
    const QString target = cacheFileFor(contentFile);
    if (!QDir().mkpath(cacheFolder()))
        cacheError(cacheFolder());
    removeLeftTemporaries(target);
    const QString temporary = target
        + QStringLiteral(".%1-%2.tmp")
              .arg(QCoreApplication::applicationPid())
              .arg(QRandomGenerator::global()->generate(), 0, 16);
    QFile::remove(temporary);
    try {
        // Nothing reads the temporary before it is whole and on the disk (replaceDurably),
        // so SQLite need not journal it nor wait for the disk on the way.
        content::sqlite::Connection db(temporary, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        writeIndex(db, key, sources, dataFolder, progress);
    } catch (const content::sqlite::Error &e) {
        QFile::remove(temporary);
        cacheError(e.message());
    } catch (...) {
        QFile::remove(temporary);
        throw;
    }
    if (!replaceDurably(temporary, target)) {
        QFile::remove(temporary);
        cacheError(target);
    }
    return target;
}

namespace {

QList<Source> sourcesOf(const QString &contentFile)
{
    const auto db = content::Database::OpenDatabase(contentFile);
    return readSources(*db);
}

} // namespace

QString ensureIndex(const QString &contentFile, const Progress &progress)
{
    if (isCurrent(contentFile) && openIntact(cacheFileFor(contentFile)))
        return cacheFileFor(contentFile);
    return buildIndex(contentFile, sourcesOf(contentFile), QFileInfo(contentFile).absolutePath(), progress);
}

std::unique_ptr<Index> buildIndexInMemory(const QString &contentFile, const QList<Source> &sources,
    const QString &dataFolder, const Progress &progress)
{
    const ContentKey key = keyOf(contentFile);
    try {
        std::unique_ptr<content::sqlite::Connection> db = content::sqlite::Connection::openMemory();
        writeIndex(*db, key, sources, dataFolder, progress);
        return Index::read(std::move(db));
    } catch (const content::sqlite::Error &e) {
        cacheError(e.message());
    }
}

std::unique_ptr<Index> buildAndOpen(const QString &contentFile, const QList<Source> &sources,
    const QString &dataFolder, const Progress &progress)
{
    try {
        return Index::open(buildIndex(contentFile, sources, dataFolder, progress));
    } catch (const platform::RuntimeError &e) {
        if (e.number() != CacheNotWritable)
            throw;
        qCWarning(lcContent)
            << "the text search's index is kept in memory, since the cache cannot be written:"
            << e.description();
    }
    return buildIndexInMemory(contentFile, sources, dataFolder, progress);
}

std::unique_ptr<Index> openIndex(const QString &contentFile, const Progress &progress)
{
    if (isCurrent(contentFile)) {
        if (auto index = openIntact(cacheFileFor(contentFile)))
            return index;
    }
    return buildAndOpen(contentFile, sourcesOf(contentFile), QFileInfo(contentFile).absolutePath(), progress);
}

std::unique_ptr<Index> openIntact(const QString &cacheFile)
{
    try {
        return Index::open(cacheFile);
    } catch (const platform::RuntimeError &e) {
        qCWarning(lcContent).noquote()
            << "the text search's index" << cacheFile << "is built again:" << e.description();
        return nullptr;
    }
}

} // namespace fulltext
