#include "fulltextindex.h"
#include "indexformat.h"
#include "wordfold.h"

#include <logging.h>
#include <runtimeerror.h>
#include <sqliteconnection.h>

#include <QHash>

#include <sqlite3.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>
#include <vector>

namespace fulltext {

namespace {

struct Doc
{
    qint32 resourceID = 0;
    qint32 resTypeID = 0;
    QString title;
    QString book;
    int titleWords = 0;
    int words = 0; // places of words in all
};

struct Term
{
    QString term;
    QByteArray docs;
    QByteArray positions;
};

// Where each source stands in the query, phrase by phrase.
struct Tally
{
    explicit Tally(size_t n)
        : matched(n, 0)
        , titleCounted(n, -1)
        , titleWords(n, 0)
        , hits(n, 0)
    {
    }
    std::vector<int> matched; // phrases matched so far, in order
    std::vector<int> titleCounted; // the last phrase counted in the title
    std::vector<int> titleWords;
    std::vector<int> hits;

    // The phrase `p` stands `count` times in `doc`, in its title when `inTitle`.
    void add(int p, int doc, int count, bool inTitle)
    {
        const auto d = size_t(doc);
        if (matched[d] < p)
            return; // an earlier phrase is missing: the source is out already
        matched[d] = p + 1;
        if (inTitle && titleCounted[d] != p) {
            titleCounted[d] = p;
            ++titleWords[d];
        }
        hits[d] += count;
    }
};

// What Index::open found wrong with a file whose SQLite was whole.
struct Damaged
{
    const char *what;
};

platform::RuntimeError unreadable(const QString &why)
{
    return platform::RuntimeError(
        3343, QStringLiteral("Το ευρετήριο των κειμένων δεν διαβάζεται: %1").arg(why));
}

// A text or blob column's bytes, valid until the statement steps again.
QByteArrayView columnBytes(sqlite3_stmt *st, int column)
{
    // For a text, sqlite3_column_blob gives its UTF-8 as stored.
    const auto *data = static_cast<const char *>(sqlite3_column_blob(st, column));
    return QByteArrayView(data, sqlite3_column_bytes(st, column));
}

} // namespace

struct Index::Private
{
    std::unique_ptr<content::sqlite::Connection> db;
    std::vector<Doc> docs;
    std::vector<Term> terms; // sorted by term
    QHash<QString, std::vector<int>> stems;
    std::vector<int> blocks; // the first source of each block of texts

    void load();

    // The terms a query word matches: those that begin as it asks, and those of its stem.
    std::vector<int> termsOf(const QueryWord &word) const
    {
        std::vector<int> ids;
        auto first = std::lower_bound(terms.begin(), terms.end(), word.begins,
            [](const Term &t, const QString &w) { return t.term < w; });
        for (auto it = first; it != terms.end() && it->term.startsWith(word.begins); ++it)
            ids.push_back(int(it - terms.begin()));
        if (!word.stem.isEmpty()) {
            const auto found = stems.constFind(word.stem);
            if (found != stems.cend()) {
                for (const int id : *found) {
                    if (!terms[size_t(id)].term.startsWith(word.begins))
                        ids.push_back(id);
                }
            }
        }
        return ids;
    }

    void addWord(Tally &tally, int p, const QueryWord &word) const
    {
        for (const int id : termsOf(word)) {
            const QByteArray &blob = terms[size_t(id)].docs;
            const char *c = blob.constData();
            const char *end = c + blob.size();
            int doc = 0;
            while (c < end) {
                doc += int(format::getVarint(c));
                const std::uint32_t v = format::getVarint(c);
                tally.add(p, doc, int(v >> 1), v & 1);
            }
        }
    }

    // Calls each(doc, count, inTitle, positions) for every source a term stands in;
    // `positions` points at its places (varints, each less the one before) and must be
    // read through before the next call.
    template<typename Each> static void forEachPosting(const Term &t, Each &&each)
    {
        const char *c = t.docs.constData();
        const char *end = c + t.docs.size();
        const char *pos = t.positions.constData();
        int doc = 0;
        while (c < end) {
            doc += int(format::getVarint(c));
            const std::uint32_t v = format::getVarint(c);
            each(doc, v >> 1, (v & 1) != 0, pos);
        }
    }

    // A phrase's words must stand one after the other. The sources that hold every word
    // are found first; in those, each word's places are bits, and the bits of the j-th
    // word, moved back j places, keep the starts where it follows.
    void addPhrase(Tally &tally, int p, const Phrase &phrase) const
    {
        const size_t n = docs.size();
        std::vector<std::vector<int>> termLists;
        for (const QueryWord &word : phrase)
            termLists.push_back(termsOf(word));
        std::vector<int> reached(n, 0);
        for (size_t j = 0; j < termLists.size(); ++j) {
            for (const int id : termLists[j]) {
                forEachPosting(terms[size_t(id)], [&](int doc, std::uint32_t count, bool, const char *&pos) {
                    for (std::uint32_t k = 0; k < count; ++k)
                        format::getVarint(pos);
                    const auto d = size_t(doc);
                    if (reached[d] == int(j) && tally.matched[d] >= p)
                        reached[d] = int(j) + 1;
                });
            }
        }
        std::vector<std::int64_t> offset(n, -1);
        std::vector<int> candidates;
        size_t total = 0;
        for (size_t d = 0; d < n; ++d) {
            if (reached[d] != int(phrase.size()))
                continue;
            offset[d] = std::int64_t(total);
            candidates.push_back(int(d));
            total += size_t(docs[d].words) / 64 + 1;
        }
        if (candidates.empty())
            return;
        std::vector<std::uint64_t> starts(total, 0);
        std::vector<std::uint64_t> bits(total, 0);
        for (size_t j = 0; j < termLists.size(); ++j) {
            std::vector<std::uint64_t> &target = j == 0 ? starts : bits;
            if (j > 0)
                std::fill(bits.begin(), bits.end(), 0);
            for (const int id : termLists[j]) {
                forEachPosting(terms[size_t(id)], [&](int doc, std::uint32_t count, bool, const char *&pos) {
                    const std::int64_t at = offset[size_t(doc)];
                    std::uint32_t place = 0;
                    for (std::uint32_t k = 0; k < count; ++k) {
                        place += format::getVarint(pos);
                        if (at >= 0)
                            target[size_t(at) + place / 64] |= std::uint64_t(1) << (place % 64);
                    }
                });
            }
            if (j == 0)
                continue;
            const size_t wordShift = j / 64;
            const unsigned bitShift = unsigned(j % 64);
            for (const int doc : candidates) {
                const size_t at = size_t(offset[size_t(doc)]);
                const size_t length = size_t(docs[size_t(doc)].words) / 64 + 1;
                for (size_t k = 0; k < length; ++k) {
                    const size_t from = k + wordShift;
                    std::uint64_t moved = 0;
                    if (from < length) {
                        moved = bits[at + from] >> bitShift;
                        if (bitShift && from + 1 < length)
                            moved |= bits[at + from + 1] << (64 - bitShift);
                    }
                    starts[at + k] &= moved;
                }
            }
        }
        for (const int doc : candidates) {
            const size_t at = size_t(offset[size_t(doc)]);
            const size_t length = size_t(docs[size_t(doc)].words) / 64 + 1;
            int count = 0;
            bool inTitle = false;
            for (size_t k = 0; k < length; ++k) {
                const std::uint64_t w = starts[at + k];
                count += std::popcount(w);
                if (w && !inTitle) {
                    const int first = int(k * 64) + std::countr_zero(w);
                    inTitle = first < docs[size_t(doc)].titleWords;
                }
            }
            if (count > 0)
                tally.add(p, doc, count * int(phrase.size()), inTitle);
        }
    }
};

// Reads the file into memory and checks it on the way; throws Damaged or
// content::sqlite::Error.
void Index::Private::load()
{
    // A damaged schema must not run anything of its own: the names read are tables.
    db->execute(QStringLiteral("PRAGMA cell_size_check = ON"));
    sqlite3_db_config(db->handle(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    {
        auto tables = db->prepare(QStringLiteral("SELECT count(*) FROM sqlite_schema WHERE type = 'table' "
                                                 "AND name IN ('meta', 'docs', 'texts', 'terms')"));
        if (!tables->step() || sqlite3_column_int(tables->handle(), 0) != 4)
            throw Damaged {"its tables are missing"};
    }
    QHash<QString, QString> meta;
    auto metaRows = db->prepare(QStringLiteral("SELECT key, value FROM meta"));
    while (metaRows->step())
        meta.insert(metaRows->value(0).toString(), metaRows->value(1).toString());
    if (meta.value(QStringLiteral("format")) != QString::number(format::Version))
        throw Damaged {"of another format"};

    format::Checksum docsSum, termsSum, textsSum;
    auto docRows = db->prepare(QStringLiteral(
        "SELECT doc, ResourceID, ResTypeID, title, book, titleWords, words FROM docs ORDER BY doc"));
    std::vector<int> words;
    std::int64_t allWords = 0;
    while (docRows->step()) {
        sqlite3_stmt *st = docRows->handle();
        const std::int64_t row[] = {sqlite3_column_int64(st, 0), sqlite3_column_int64(st, 1),
            sqlite3_column_int64(st, 2), sqlite3_column_int64(st, 5), sqlite3_column_int64(st, 6)};
        const QByteArrayView title = columnBytes(st, 3);
        const QByteArrayView book = columnBytes(st, 4);
        format::addDoc(docsSum, row, title, book);
        const auto [doc, resourceID, resTypeID, titleWords, count] = row;
        allWords += count;
        if (doc != std::int64_t(docs.size()) || count < 0 || count > format::MaxWordsOfSource
            || titleWords < 0 || titleWords > count || allWords > format::MaxWordsInAll
            || resourceID != qint32(resourceID) || resTypeID != qint32(resTypeID))
            throw Damaged {"a source is out of its bounds"};
        docs.push_back({qint32(resourceID), qint32(resTypeID), QString::fromUtf8(title),
            QString::fromUtf8(book), int(titleWords), int(count)});
        words.push_back(int(count));
    }

    format::PostingsCheck postings(std::move(words));
    auto termRows = db->prepare(QStringLiteral("SELECT term, stem, docs, positions FROM terms ORDER BY id"));
    while (termRows->step()) {
        sqlite3_stmt *st = termRows->handle();
        const QByteArrayView term = columnBytes(st, 0);
        const QByteArrayView stem = columnBytes(st, 1);
        const QByteArrayView places = columnBytes(st, 2);
        const QByteArrayView positions = columnBytes(st, 3);
        format::addTerm(termsSum, term, stem, places, positions);
        if (!postings.term(places, positions))
            throw Damaged {"a term's postings point outside the index"};
        Term t {QString::fromUtf8(term), places.toByteArray(), positions.toByteArray()};
        // The prefix search runs through the terms in their order.
        if (!terms.empty() && !(terms.back().term < t.term))
            throw Damaged {"its terms are out of order"};
        terms.push_back(std::move(t));
        if (!stem.isEmpty())
            stems[QString::fromUtf8(stem)].push_back(int(terms.size() - 1));
    }

    auto textRows = db->prepare(QStringLiteral("SELECT first, data FROM texts ORDER BY first"));
    while (textRows->step()) {
        sqlite3_stmt *st = textRows->handle();
        const std::int64_t first = sqlite3_column_int64(st, 0);
        textsSum.add(first);
        textsSum.add(columnBytes(st, 1));
        if ((blocks.empty() ? first != 0 : first <= blocks.back()) || first >= std::int64_t(docs.size()))
            throw Damaged {"its texts are out of order"};
        blocks.push_back(int(first));
    }
    if (blocks.empty() != docs.empty())
        throw Damaged {"its texts are missing"};
#ifndef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
    // A fuzzing build goes on, so that the checks above meet the damage.
    if (meta.value(QStringLiteral("checksum")) != format::checksumText(docsSum, termsSum, textsSum))
        throw Damaged {"its checksum differs"};
#endif
}

Index::Index()
    : d(std::make_unique<Private>())
{
}

Index::~Index() = default;

std::unique_ptr<Index> Index::open(const QString &cacheFile)
{
    std::unique_ptr<content::sqlite::Connection> db;
    try {
        db = std::make_unique<content::sqlite::Connection>(cacheFile, SQLITE_OPEN_READONLY);
    } catch (const content::sqlite::Error &e) {
        throw unreadable(e.message());
    }
    return read(std::move(db));
}

std::unique_ptr<Index> Index::read(std::unique_ptr<content::sqlite::Connection> db)
{
    std::unique_ptr<Index> index(new Index);
    try {
        index->d->db = std::move(db);
        index->d->load();
    } catch (const content::sqlite::Error &e) {
        throw unreadable(e.message());
    } catch (const Damaged &e) {
        throw unreadable(QStringLiteral("damaged, %1").arg(QLatin1StringView(e.what)));
    }
    return index;
}

int Index::sourceCount() const
{
    return int(d->docs.size());
}

QList<Result> Index::search(const TextQuery &query) const
{
    QList<Result> results;
    if (query.isEmpty() || d->docs.empty())
        return results;
    Tally tally(d->docs.size());
    for (qsizetype p = 0; p < query.phrases.size(); ++p) {
        const Phrase &phrase = query.phrases.at(p);
        if (phrase.size() == 1)
            d->addWord(tally, int(p), phrase.front());
        else
            d->addPhrase(tally, int(p), phrase);
    }
    const int all = int(query.phrases.size());
    std::vector<int> found;
    for (size_t doc = 0; doc < d->docs.size(); ++doc) {
        if (tally.matched[doc] == all)
            found.push_back(int(doc));
    }
    std::sort(found.begin(), found.end(), [&](int a, int b) {
        const auto ua = size_t(a), ub = size_t(b);
        if (tally.titleWords[ua] != tally.titleWords[ub])
            return tally.titleWords[ua] > tally.titleWords[ub];
        if (tally.hits[ua] != tally.hits[ub])
            return tally.hits[ua] > tally.hits[ub];
        return a < b;
    });
    results.reserve(qsizetype(found.size()));
    for (const int doc : found) {
        const Doc &s = d->docs[size_t(doc)];
        results.append({s.resourceID, s.resTypeID, s.title, s.book, doc, tally.titleWords[size_t(doc)],
            tally.hits[size_t(doc)]});
    }
    return results;
}

QString Index::sourceText(const Result &result) const
{
    const int doc = result.place;
    if (doc < 0 || size_t(doc) >= d->docs.size())
        return QString();
    const int first = *(std::upper_bound(d->blocks.begin(), d->blocks.end(), doc) - 1);
    std::optional<QString> text;
    try {
        auto st = d->db->prepare(QStringLiteral("SELECT data FROM texts WHERE first = ?"));
        st->bind(1, first);
        if (st->step())
            text = format::unpackText(columnBytes(st->handle(), 0), doc - first);
    } catch (const content::sqlite::Error &e) {
        qCWarning(lcContent) << "the text search's index cannot read a text:" << e.message();
        return QString();
    }
    // The file was checked whole on opening; only a change on disk since comes here.
    if (!text)
        qCWarning(lcContent) << "the text search's index holds a damaged text, of source" << doc;
    return text.value_or(QString());
}

ContextLine Index::context(const Result &result, const TextQuery &query) const
{
    const QString text = sourceText(result);
    const qsizetype titleEnd = text.indexOf(u'\n');
    if (titleEnd >= 0) {
        const QStringView rest = QStringView(text).mid(titleEnd + 1);
        if (!findHits(rest, query).isEmpty())
            return contextLine(rest, query);
    }
    return contextLine(text, query);
}

} // namespace fulltext
