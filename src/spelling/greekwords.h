#pragma once

#include <QList>
#include <QString>
#include <QStringView>

// The letters of Greek words as the spell checker sees them: which words it checks, their
// cases, their accents and their final sigma.
namespace spelling {

// A word of a text: its place and length in UTF-16 code units.
struct WordSpan
{
    qsizetype start = 0;
    qsizetype length = 0;
};

// The words of a text worth checking: runs of letters written wholly in Greek, of two
// letters or more. A run with a digit or a letter of another script (an English name, a
// date, "3ος") is passed over, and so is a word cut short by an apostrophe (σ', απ') or
// one with a polytonic or archaic letter, which the monotonic dictionary cannot judge.
QList<WordSpan> checkableWords(QStringView text);

bool isGreekLetter(QChar c);
// A letter of monotonic Greek, the dictionary's alphabet.
bool isMonotonicLetter(QChar c);
bool isGreekVowel(QChar lower);

enum class Case { Lower, Capitalised, Capitals, Mixed };
Case caseOf(QStringView word);

// Lower case, a capital sigma at the end becoming the final ς.
QString lowerGreek(QStringView word);
// The first letter in capitals.
QString capitalised(QStringView word);
// Capitals as Greek writes them: no tonos, the dialytika kept (ΠΡΟΪΟΝ).
QString capitalsWithoutAccents(QStringView word);
// Without the tonos on any letter (ά → α, ΐ → ϊ), the dialytika kept.
QString withoutTonos(QStringView word);
// The lower-case letter with a tonos, or a null QChar for one that takes none.
QChar withTonos(QChar lower);

// A lower-case word's possible accentings: itself, then with a tonos on each vowel in
// turn, then with a dialytika on an ι or υ after a vowel, alone or with a tonos.
QStringList accentings(const QString &lowerWithoutTonos);

// The final-sigma mistakes: a word ending in σ, or with ς inside it.
bool hasSigmaMistake(QStringView lowerWord);
// The word with them put right: ς at the end, σ inside.
QString sigmaFixed(QStringView lowerWord);

} // namespace spelling
