#include "greekcollation.h"

#include <sqlite3.h>
#include <unicode/ucol.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace content {

namespace {

struct CollatorDeleter
{
    void operator()(UCollator *c) const { ucol_close(c); }
};
using CollatorPtr = std::unique_ptr<UCollator, CollatorDeleter>;

// Secondary strength: base letters decide, accents break ties, case never counts. ICU
// treats final sigma as a case variant of sigma, so it falls away at this strength.
CollatorPtr openGreekCollator()
{
    UErrorCode status = U_ZERO_ERROR;
    CollatorPtr collator(ucol_open("el", &status));
    if (U_FAILURE(status) || !collator)
        return nullptr;
    ucol_setStrength(collator.get(), UCOL_SECONDARY);
    // The Greek tailoring puts Greek script before Latin; the engine the content was made
    // for kept the common order, Latin first, and tailored the Greek letters only.
    const int32_t noReordering = UCOL_REORDER_CODE_NONE;
    ucol_setReorderCodes(collator.get(), &noReordering, 1, &status);
    if (U_FAILURE(status))
        return nullptr;
    return collator;
}

// A collator serves one connection (or one thread), as ICU collators are not to be
// shared between threads while they compare.
UCollator *threadCollator()
{
    thread_local CollatorPtr collator = openGreekCollator();
    return collator.get();
}

// The letters' own order, for the comparisons the base letters decide. Every character
// of the table has one weight of its own at the first level of the rule (a letter, a digit,
// a space, a common mark of punctuation) or is such a character with accents; its rank is
// the place of that weight among the table's. Two texts whose first different ranks differ
// compare as those ranks do, whatever follows, since accents and case only break ties
// between texts with the same letters. Anything else, and ties, go to ICU.
class LetterRanks
{
public:
    LetterRanks()
    {
        CollatorPtr primary = openGreekCollator();
        if (!primary)
            return;
        ucol_setStrength(primary.get(), UCOL_PRIMARY);
        std::vector<char16_t> simple;
        for (char16_t c = 0x20; c < 0x7F; ++c)
            simple.push_back(c);
        for (char16_t c = 0x0391; c <= 0x03A9; ++c) {
            if (c != 0x03A2)
                simple.push_back(c);
        }
        for (char16_t c = 0x03B1; c <= 0x03C9; ++c)
            simple.push_back(c);
        std::map<std::string, std::vector<char16_t>> byKey;
        for (const char16_t c : simple) {
            uint8_t key[64];
            const int32_t length
                = ucol_getSortKey(primary.get(), reinterpret_cast<const UChar *>(&c), 1, key, 64);
            // A character the first level ignores has no weight of its own.
            if (length <= 1 || length > 64)
                continue;
            byKey[std::string(reinterpret_cast<const char *>(key), size_t(length))].push_back(c);
        }
        uint16_t rank = 0;
        for (const auto &[key, chars] : byKey) {
            ++rank;
            for (const char16_t c : chars)
                m_rank[c] = rank;
        }
        // Letters with accents (tonos, diaeresis, and the Latin ones of Latin-1) weigh as
        // their base letter at the first level.
        for (char16_t c = 0xC0; c < 0x400; ++c) {
            if (m_rank[c])
                continue;
            const QString decomposed = QString(QChar(c)).normalized(QString::NormalizationForm_D);
            if (decomposed.size() < 2 || decomposed.front().unicode() >= 0x400
                || !m_rank[decomposed.front().unicode()])
                continue;
            bool marksOnly = true;
            for (qsizetype i = 1; i < decomposed.size(); ++i)
                marksOnly = marksOnly && isWeightlessMark(decomposed.at(i).unicode());
            if (marksOnly)
                m_rank[c] = m_rank[decomposed.front().unicode()];
        }
    }

    // <0, 0 or >0 when the ranks decide; 2 when they cannot tell.
    int compare(const unsigned char *a, int lengthA, const unsigned char *b, int lengthB) const
    {
        int i = 0;
        int j = 0;
        for (;;) {
            if (i == lengthA || j == lengthB) {
                // One text ends where the other goes on with a letter of weight: the
                // shorter one comes first. Both at their end: a tie of the letters.
                if (i == lengthA && j == lengthB)
                    return Undecided;
                const bool aEnded = i == lengthA;
                const int rest = aEnded ? rankAt(b, lengthB, j) : rankAt(a, lengthA, i);
                if (rest <= 0)
                    return Undecided;
                return aEnded ? -1 : 1;
            }
            const int ra = rankAt(a, lengthA, i);
            const int rb = rankAt(b, lengthB, j);
            if (ra <= 0 || rb <= 0)
                return Undecided;
            if (ra != rb)
                return ra < rb ? -1 : 1;
        }
    }

    static constexpr int Undecided = 2;

private:
    // Combining marks that weigh nothing at the first level: the Greek and common Latin
    // accents.
    static bool isWeightlessMark(char16_t c)
    {
        return (c >= 0x0300 && c <= 0x0308) || c == 0x030A || c == 0x030B || c == 0x030C || c == 0x0327
            || c == 0x0328 || c == 0x0313 || c == 0x0314 || c == 0x0342 || c == 0x0345;
    }

    // The rank of the UTF-8 character at `at`, which it passes; 0 for one outside the
    // table or a byte sequence that is not UTF-8 of two bytes at most.
    int rankAt(const unsigned char *s, int length, int &at) const
    {
        const unsigned char c = s[at];
        if (c < 0x80) {
            ++at;
            return m_rank[c];
        }
        if ((c & 0xE0) == 0xC0 && at + 1 < length && (s[at + 1] & 0xC0) == 0x80) {
            const char16_t u = char16_t(((c & 0x1F) << 6) | (s[at + 1] & 0x3F));
            at += 2;
            return u < 0x80 || u >= m_rank.size() ? 0 : m_rank[u];
        }
        return 0;
    }

    std::array<uint16_t, 0x400> m_rank {};
};

const LetterRanks &letterRanks()
{
    static const LetterRanks ranks;
    return ranks;
}

int collateUtf8(void *arg, int lengthA, const void *a, int lengthB, const void *b)
{
    // Most comparisons of a sort are decided by the first letters that differ; ICU is
    // asked only for the rest, which keeps the order exactly ICU's.
    const int byLetters = letterRanks().compare(
        static_cast<const unsigned char *>(a), lengthA, static_cast<const unsigned char *>(b), lengthB);
    if (byLetters != LetterRanks::Undecided)
        return byLetters;
    auto *collator = static_cast<UCollator *>(arg);
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult r = ucol_strcollUTF8(
        collator, static_cast<const char *>(a), lengthA, static_cast<const char *>(b), lengthB, &status);
    if (U_FAILURE(status)) {
        // Malformed UTF-8 cannot be ordered by letters; fall back to bytes so that the
        // order stays total.
        const int n = std::min(lengthA, lengthB);
        const int c = std::memcmp(a, b, size_t(n));
        return c != 0 ? c : lengthA - lengthB;
    }
    return r == UCOL_LESS ? -1 : (r == UCOL_GREATER ? 1 : 0);
}

void closeCollator(void *arg)
{
    ucol_close(static_cast<UCollator *>(arg));
}

} // namespace

int compareText(QStringView a, QStringView b)
{
    UCollator *collator = threadCollator();
    if (!collator)
        return a.compare(b, Qt::CaseInsensitive);
    const UCollationResult r = ucol_strcoll(collator, reinterpret_cast<const UChar *>(a.utf16()),
        int32_t(a.size()), reinterpret_cast<const UChar *>(b.utf16()), int32_t(b.size()));
    return r == UCOL_LESS ? -1 : (r == UCOL_GREATER ? 1 : 0);
}

int compareUtf8(std::string_view a, std::string_view b)
{
    UCollator *collator = threadCollator();
    if (!collator)
        return a.compare(b);
    const int r = collateUtf8(collator, int(a.size()), a.data(), int(b.size()), b.data());
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

bool lettersDecide(std::string_view a, std::string_view b)
{
    return letterRanks().compare(reinterpret_cast<const unsigned char *>(a.data()), int(a.size()),
               reinterpret_cast<const unsigned char *>(b.data()), int(b.size()))
        != LetterRanks::Undecided;
}

bool installGreekNocase(sqlite3 *db)
{
    CollatorPtr collator = openGreekCollator();
    if (!collator)
        return false;
    UCollator *raw = collator.release();
    const int rc = sqlite3_create_collation_v2(db, "NOCASE", SQLITE_UTF8, raw, collateUtf8, closeCollator);
    if (rc != SQLITE_OK) {
        // SQLite leaves the argument to the caller when it refuses.
        ucol_close(raw);
        return false;
    }
    return true;
}

namespace {

QString fold(QStringView text)
{
    return text.toString().toCaseFolded();
}

bool matchFrom(QStringView p, QStringView t, QChar escape)
{
    while (!p.isEmpty()) {
        const QChar c = p.front();
        if (c == u'%' && c != escape) {
            while (!p.isEmpty() && p.front() == u'%')
                p = p.mid(1);
            if (p.isEmpty())
                return true;
            for (qsizetype i = 0; i <= t.size(); ++i) {
                if (matchFrom(p, t.mid(i), escape))
                    return true;
            }
            return false;
        }
        if (t.isEmpty())
            return false;
        if (c == u'_' && c != escape) {
            p = p.mid(1);
            t = t.mid(1);
            continue;
        }
        QChar literal = c;
        if (!escape.isNull() && c == escape) {
            if (p.size() < 2)
                return false;
            literal = p.at(1);
            p = p.mid(1);
        }
        if (literal != t.front())
            return false;
        p = p.mid(1);
        t = t.mid(1);
    }
    return t.isEmpty();
}

void likeFunction(sqlite3_context *context, int argc, sqlite3_value **argv)
{
    const auto *pattern = reinterpret_cast<const char *>(sqlite3_value_text(argv[0]));
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(argv[1]));
    if (!pattern || !text)
        return; // NULL
    QChar escape;
    if (argc == 3) {
        const auto *e = reinterpret_cast<const char *>(sqlite3_value_text(argv[2]));
        const QString escapeText = QString::fromUtf8(e ? e : "");
        if (escapeText.size() != 1) {
            sqlite3_result_error(context, "ESCAPE expression must be a single character", -1);
            return;
        }
        escape = escapeText.front();
    }
    const QString p = QString::fromUtf8(pattern, sqlite3_value_bytes(argv[0]));
    const QString t = QString::fromUtf8(text, sqlite3_value_bytes(argv[1]));
    sqlite3_result_int(context, likeMatches(p, t, escape) ? 1 : 0);
}

} // namespace

bool likeMatches(QStringView pattern, QStringView text, QChar escape)
{
    const QString p = fold(pattern);
    const QString t = fold(text);
    const QChar e = escape.isNull() ? QChar() : fold(QStringView(&escape, 1)).front();
    return matchFrom(p, t, e);
}

bool installGreekLike(sqlite3 *db)
{
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    return sqlite3_create_function_v2(db, "like", 2, flags, nullptr, likeFunction, nullptr, nullptr, nullptr)
        == SQLITE_OK
        && sqlite3_create_function_v2(db, "like", 3, flags, nullptr, likeFunction, nullptr, nullptr, nullptr)
        == SQLITE_OK;
}

bool installGreekTextRules(sqlite3 *db)
{
    const bool nocase = installGreekNocase(db);
    const bool like = installGreekLike(db);
    return nocase && like;
}

} // namespace content
