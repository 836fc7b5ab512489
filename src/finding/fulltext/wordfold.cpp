#include "wordfold.h"

#include <libstemmer.h>

#include <QHash>

#include <array>
#include <memory>

namespace fulltext {

namespace {

// What each UTF-16 unit becomes inside a word, worked out once from Unicode's own
// decompositions and case folding: marks vanish, letters fold, a few letters become two
// ("ß" to "ss").
struct FoldTable
{
    static constexpr char16_t Separator = 0xFFFF;
    static constexpr char16_t Dropped = 0xFFFE;
    static constexpr char16_t Expanded = 0xFFFD;
    std::array<char16_t, 0x10000> single {};
    QHash<char16_t, QString> expanded;

    FoldTable()
    {
        for (char32_t c = 0; c < 0x10000; ++c) {
            const QChar ch {char16_t(c)};
            single[c] = Separator;
            if (ch.isSurrogate()) {
                // Letters beyond the first plane stand as they are.
                single[c] = char16_t(c);
                continue;
            }
            const bool mark = ch.isMark();
            // U+02BC, the modifier apostrophe, counts as a letter in Unicode but is the
            // elision mark in Greek texts.
            if (c == 0x02BC || (!ch.isLetterOrNumber() && !mark))
                continue;
            QString out;
            const QString decomposed = QString(ch).normalized(QString::NormalizationForm_KD);
            for (const QChar d : decomposed) {
                if (!d.isMark())
                    out += d;
            }
            out = out.toCaseFolded();
            if (out.isEmpty())
                single[c] = Dropped;
            else if (out.size() == 1)
                single[c] = out.front().unicode();
            else {
                single[c] = Expanded;
                expanded.insert(char16_t(c), out);
            }
        }
        // The final sigma folds to sigma by case folding already; kept here in plain
        // sight because the search depends on it.
        single[u'ς'] = u'σ';
        // Qt folds case one letter to one; the sharp s folds to two.
        for (const char16_t sharp : {u'ß', u'ẞ'}) {
            single[sharp] = Expanded;
            expanded.insert(sharp, QStringLiteral("ss"));
        }
    }
};

const FoldTable &table()
{
    static const FoldTable t;
    return t;
}

struct StemmerDeleter
{
    void operator()(sb_stemmer *s) const { sb_stemmer_delete(s); }
};

// A stemmer keeps state between calls, so each thread has its own.
sb_stemmer *threadStemmer()
{
    thread_local std::unique_ptr<sb_stemmer, StemmerDeleter> stemmer(sb_stemmer_new("greek", "UTF_8"));
    return stemmer.get();
}

} // namespace

namespace detail {

bool foldUnit(char16_t unit, QString &out)
{
    const FoldTable &t = table();
    const char16_t f = t.single[unit];
    switch (f) {
    case FoldTable::Separator:
        return false;
    case FoldTable::Dropped:
        return true;
    case FoldTable::Expanded:
        out += t.expanded.value(unit);
        return true;
    default:
        out += QChar(f);
        return true;
    }
}

} // namespace detail

QString foldWord(QStringView word)
{
    QString out;
    out.reserve(word.size());
    for (const QChar c : word) {
        if (!detail::foldUnit(c.unicode(), out))
            out += c;
    }
    return out;
}

QList<Word> words(QStringView text)
{
    QList<Word> out;
    forEachWord(text, [&](qsizetype start, qsizetype length, const QString &folded) {
        out.append({start, length, folded});
    });
    return out;
}

bool isGreek(QStringView folded)
{
    for (const QChar c : folded) {
        if ((c.unicode() >= 0x0370 && c.unicode() <= 0x03FF)
            || (c.unicode() >= 0x1F00 && c.unicode() <= 0x1FFF))
            return true;
    }
    return false;
}

QString greekStem(const QString &folded)
{
    if (!isGreek(folded))
        return QString();
    sb_stemmer *stemmer = threadStemmer();
    if (!stemmer)
        return QString();
    const QByteArray utf8 = folded.toUtf8();
    const sb_symbol *stem
        = sb_stemmer_stem(stemmer, reinterpret_cast<const sb_symbol *>(utf8.constData()), int(utf8.size()));
    if (!stem)
        return QString();
    const int length = sb_stemmer_length(stemmer);
    if (length >= utf8.size())
        return QString();
    return QString::fromUtf8(reinterpret_cast<const char *>(stem), length);
}

} // namespace fulltext
