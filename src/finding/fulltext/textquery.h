#pragma once

#include <QList>
#include <QString>
#include <QStringView>

// What a pupil types in the text search, read as plain words: no character or word is an
// operator. Words between a pair of double quotes form a phrase; a quote left open is a
// plain character, as are "*", "-", "OR", "NOT" and apostrophes.
namespace fulltext {

// A Greek query word matches other endings of its stem only when the stem has at least
// this many letters: shorter stems join unrelated words ("ναός", "ναι", "ναύς" and the
// particle "να" all stem to "να").
inline constexpr int MinStemLetters = 3;

struct QueryWord
{
    QString folded;
    QString stem; // empty when the word matches by its beginning only
    QString begins; // a text word that begins with this matches

    // The word as it matches: by its stem when that is long enough; a Greek word with a
    // shorter stem by the first letters of the word, as many as a stem needs ("ναός"
    // finds "ναού" and "ναοί", not "ναι"); any word by its beginning.
    static QueryWord of(const QString &folded);

    // A folded word of a text matches when it begins with `begins` or has the same stem.
    bool matches(const QString &foldedWord, const QString &wordStem) const;
};

// One or more words that must stand next to each other, in this order.
using Phrase = QList<QueryWord>;

struct TextQuery
{
    QList<Phrase> phrases;
    bool isEmpty() const { return phrases.isEmpty(); }
};

TextQuery parseQuery(QStringView text);

// A place in a text where a word of the query stands.
struct Hit
{
    qsizetype start = 0;
    qsizetype length = 0;
    bool operator==(const Hit &) const = default;
};

// The words of `text` that the query marks, in order: each word that matches a lone
// query word, and the words of each whole phrase found.
QList<Hit> findHits(QStringView text, const TextQuery &query);

// One line of text around the first hit, for a list of results: at most about
// `width` characters, cut at word boundaries, with "…" where it was cut, line breaks
// made spaces; `hits` are the marked words inside the line.
struct ContextLine
{
    QString text;
    QList<Hit> hits;
};
ContextLine contextLine(QStringView text, const TextQuery &query, int width = 90);

} // namespace fulltext
