#pragma once

#include "greekwords.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>

namespace spelling {

class Dictionary;

// Words known besides the dictionary's: as written, and without their tonos for a word
// in capitals (the course's «Μεσολόγγι» makes ΜΕΣΟΛΟΓΓΙ right too).
class WordSet
{
public:
    // Adds each checkable word of a word or phrase.
    void add(const QString &phrase);
    bool contains(const QString &word) const;
    bool isEmpty() const { return m_lower.isEmpty(); }
    void clear();

private:
    QSet<QString> m_lower;
    QSet<QString> m_plain;
};

// Greek spelling by the dictionary and our rules:
// - a word in capitals, accented or not, is right when a lower-case accenting of it is in
//   the dictionary (ΚΟΣΜΟΣ, ΚΌΣΜΟΣ, ΑΘΗΝΑ), and its suggestions come in capitals without
//   accents;
// - a capitalised word is right when it or its lower case is;
// - a word ending in σ, or with ς inside it, is wrong, and the first suggestion puts the
//   sigma right;
// - the course's words and the pupil's own are never wrong.
// Only the words checkableWords() gives are checked. Not thread-safe, as its dictionary.
class Checker final
{
public:
    explicit Checker(std::shared_ptr<Dictionary> dictionary);
    ~Checker();
    Q_DISABLE_COPY_MOVE(Checker)

    Dictionary &dictionary() { return *m_dictionary; }

    // Of a word as checkableWords() cuts it; answers are kept until the known words change.
    bool isMisspelt(const QString &word);
    // At most `most`, best first, in the word's case.
    QStringList suggestions(const QString &word, int most = 5);

    struct Misspelling
    {
        qsizetype start = 0; // in UTF-16 code units of the text
        qsizetype length = 0;
        QString word;
    };
    QList<Misspelling> misspellings(QStringView text);

    // The course's own words, replacing those given before.
    void setCourseWords(const QStringList &phrases);
    // A word the pupil added or told to pass over.
    void addOwnWord(const QString &word);
    void addOwnWords(const QStringList &words);

private:
    bool isKnown(const QString &word) const;
    // The form the dictionary takes of a lower-case word: itself or capitalised; empty
    // when neither.
    QString dictionaryForm(const QString &lower) const;
    void collectCandidates(const QString &plain, QStringList &out, int most) const;

    std::shared_ptr<Dictionary> m_dictionary;
    WordSet m_course;
    WordSet m_own;
    mutable QHash<QString, bool> m_misspelt;
};

} // namespace spelling
