#pragma once

#include <QList>
#include <QString>
#include <QStringView>

// The words of a text as the full-text search sees them. A word is a run of letters and
// digits; apostrophes, hyphens and every other mark between letters part words, as the
// elided "απ' τον" is two words. A word is folded so that the forms a pupil may type or
// a text may print meet: case, accents, breathings, iota subscripts, diaeresis and the
// final sigma fall away in Greek ("Δῆλος", "ΔΗΛΟΣ", "δηλοσ" are one word), case and
// accents in Latin.
namespace fulltext {

struct Word
{
    qsizetype start = 0; // in the text, in UTF-16 units
    qsizetype length = 0;
    QString folded;
};

// The folded form of one word (or of any text: marks inside it are kept as they fold).
QString foldWord(QStringView word);

// The words of a text, in order, with their places.
QList<Word> words(QStringView text);

// Calls `each(start, length, folded)` for each word, reusing one buffer: the index
// reads millions of words this way without a list.
template<typename Each> void forEachWord(QStringView text, Each &&each);

// True when a folded word holds a Greek letter.
bool isGreek(QStringView folded);

// The Snowball Greek stem of a folded Greek word, or an empty string when the stemmer
// takes no ending off it (a word that is its own stem, such as "να" or "το", stands for
// itself only: matching all words of its stem would tie the particle "να" to "ναός").
QString greekStem(const QString &folded);

namespace detail {
// One UTF-16 unit's part in a word: appends its folded form to `out` and returns true,
// or returns false for a unit that parts words.
bool foldUnit(char16_t unit, QString &out);
} // namespace detail

template<typename Each> void forEachWord(QStringView text, Each &&each)
{
    QString folded;
    qsizetype start = -1;
    const qsizetype n = text.size();
    for (qsizetype i = 0; i <= n; ++i) {
        const bool inWord = i < n && detail::foldUnit(text.at(i).unicode(), folded);
        if (inWord) {
            if (start < 0)
                start = i;
            continue;
        }
        if (start >= 0) {
            if (!folded.isEmpty())
                each(start, i - start, folded);
            folded.clear();
            start = -1;
        }
    }
}

} // namespace fulltext
