#include "fulltextindex.h"
#include "indexformat.h"
#include "wordfold.h"

#include <runtimeerror.h>
#include <sqliteconnection.h>

#include <QHash>

#include <sqlite3.h>

#include <algorithm>
#include <bit>
#include <cstdint>
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

} // namespace

struct Index::Private
{
    std::unique_ptr<content::sqlite::Connection> db;
    std::vector<Doc> docs;
    std::vector<Term> terms; // sorted by term
    QHash<QString, std::vector<int>> stems;

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

Index::Index()
    : d(std::make_unique<Private>())
{
}

Index::~Index() = default;

namespace {

[[noreturn]] void unreadable(const content::sqlite::Error &e)
{
    throw platform::RuntimeError(
        3343, QStringLiteral("Το ευρετήριο των κειμένων δεν διαβάζεται: %1").arg(e.message()));
}

} // namespace

std::unique_ptr<Index> Index::open(const QString &cacheFile)
{
    std::unique_ptr<content::sqlite::Connection> db;
    try {
        db = std::make_unique<content::sqlite::Connection>(cacheFile, SQLITE_OPEN_READONLY);
    } catch (const content::sqlite::Error &e) {
        unreadable(e);
    }
    return read(std::move(db));
}

std::unique_ptr<Index> Index::read(std::unique_ptr<content::sqlite::Connection> db)
{
    std::unique_ptr<Index> index(new Index);
    Private &p = *index->d;
    try {
        p.db = std::move(db);
        auto docs = p.db->prepare(QStringLiteral(
            "SELECT doc, ResourceID, ResTypeID, title, book, titleWords, words FROM docs ORDER BY doc"));
        while (docs->step()) {
            p.docs.push_back({docs->value(1).toInt(), docs->value(2).toInt(), docs->value(3).toString(),
                docs->value(4).toString(), docs->value(5).toInt(), docs->value(6).toInt()});
        }
        auto terms
            = p.db->prepare(QStringLiteral("SELECT term, stem, docs, positions FROM terms ORDER BY id"));
        while (terms->step()) {
            sqlite3_stmt *st = terms->handle();
            const auto blob = [st](int column) {
                return QByteArray(static_cast<const char *>(sqlite3_column_blob(st, column)),
                    sqlite3_column_bytes(st, column));
            };
            p.terms.push_back({terms->value(0).toString(), blob(2), blob(3)});
            const QString stem = terms->value(1).toString();
            if (!stem.isEmpty())
                p.stems[stem].push_back(int(p.terms.size() - 1));
        }
    } catch (const content::sqlite::Error &e) {
        unreadable(e);
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
    auto st = d->db->prepare(QStringLiteral("SELECT text FROM docs WHERE doc = ?"));
    st->bind(1, result.place);
    return st->step() ? st->value(0).toString() : QString();
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
