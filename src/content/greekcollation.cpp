#include "greekcollation.h"

#include <sqlite3.h>
#include <unicode/ucol.h>

#include <algorithm>
#include <cstring>
#include <memory>

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

int collateUtf8(void *arg, int lengthA, const void *a, int lengthB, const void *b)
{
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
