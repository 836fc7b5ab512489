#include "greekwords.h"

namespace spelling {

namespace {

constexpr char16_t FinalSigma = u'ς';
constexpr char16_t Sigma = u'σ';
constexpr char16_t CapitalSigma = u'Σ';

bool isApostrophe(QChar c)
{
    return c == u'\'' || c == u'\u2019' || c == u'\u02BC';
}

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c.category() == QChar::Mark_NonSpacing;
}

} // namespace

bool isGreekLetter(QChar c)
{
    const char16_t u = c.unicode();
    return ((u >= 0x0370 && u <= 0x03FF) || (u >= 0x1F00 && u <= 0x1FFF)) && c.isLetter();
}

bool isMonotonicLetter(QChar c)
{
    const char16_t u = c.unicode();
    return u == 0x0386 || (u >= 0x0388 && u <= 0x038A) || u == 0x038C || (u >= 0x038E && u <= 0x03CE);
}

bool isGreekVowel(QChar lower)
{
    static constexpr QStringView vowels = u"αεηιουωάέήίόύώϊϋΐΰ";
    return vowels.contains(lower);
}

QList<WordSpan> checkableWords(QStringView text)
{
    QList<WordSpan> words;
    const qsizetype n = text.size();
    qsizetype i = 0;
    while (i < n) {
        if (!isWordChar(text[i])) {
            ++i;
            continue;
        }
        const qsizetype start = i;
        bool greek = true;
        bool monotonic = true;
        int letters = 0;
        for (; i < n && isWordChar(text[i]); ++i) {
            const QChar c = text[i];
            if (c.category() == QChar::Mark_NonSpacing)
                continue;
            if (!isGreekLetter(c))
                greek = false;
            else
                ++letters;
            if (!isMonotonicLetter(c))
                monotonic = false;
        }
        const bool elided = i < n && isApostrophe(text[i]);
        if (greek && monotonic && letters >= 2 && !elided)
            words.append({start, i - start});
    }
    return words;
}

Case caseOf(QStringView word)
{
    int upper = 0;
    int lower = 0;
    bool firstUpper = false;
    bool seenLetter = false;
    for (const QChar c : word) {
        if (!c.isLetter())
            continue;
        if (c.isUpper()) {
            ++upper;
            if (!seenLetter)
                firstUpper = true;
        } else {
            ++lower;
        }
        seenLetter = true;
    }
    if (upper == 0)
        return Case::Lower;
    if (lower == 0)
        return Case::Capitals;
    if (upper == 1 && firstUpper)
        return Case::Capitalised;
    return Case::Mixed;
}

QString lowerGreek(QStringView word)
{
    QString lower = word.toString().toLower();
    // Qt lowers Σ to σ wherever it stands; at a word's end Greek writes ς.
    if (!word.isEmpty() && word.back() == CapitalSigma)
        lower.back() = FinalSigma;
    return lower;
}

QString capitalised(QStringView word)
{
    if (word.isEmpty())
        return QString();
    const QString first = word.left(1).toString().toUpper();
    return first + word.mid(1).toString();
}

// Each letter with a tonos over the same letter without: the lower-case ones first, in
// the order withTonos places them.
constexpr QStringView WithTonos = u"άέήίόύώΐΰΆΈΉΊΌΎΏ";
constexpr QStringView WithoutTonos = u"αεηιουωϊϋΑΕΗΙΟΥΩ";
constexpr qsizetype LowerWithTonos = 9;

QChar withTonos(QChar lower)
{
    const qsizetype at = WithoutTonos.first(LowerWithTonos).indexOf(lower);
    return at < 0 ? QChar() : WithTonos[at];
}

QString withoutTonos(QStringView word)
{
    QString plain = word.toString();
    for (QChar &c : plain)
        if (const qsizetype at = WithTonos.indexOf(c); at >= 0)
            c = WithoutTonos[at];
    return plain;
}

QString capitalsWithoutAccents(QStringView word)
{
    // The tonos goes first: Qt would spell ΐ in capitals as three characters.
    QString upper = withoutTonos(word).toUpper();
    return upper;
}

QStringList accentings(const QString &lowerWithoutTonos)
{
    const QString &base = lowerWithoutTonos;
    QStringList forms {base};
    auto addTonosVariants = [&forms](const QString &word, qsizetype skip) {
        for (qsizetype i = 0; i < word.size(); ++i) {
            if (i == skip)
                continue;
            if (const QChar accented = withTonos(word[i]); !accented.isNull()) {
                QString form = word;
                form[i] = accented;
                forms.append(form);
            }
        }
    };
    addTonosVariants(base, -1);
    // A dialytika parts an ι or υ from the vowel before it (προϊόν, ευνοϊκός).
    for (qsizetype i = 1; i < base.size(); ++i) {
        const QChar c = base[i];
        if ((c != u'ι' && c != u'υ') || !isGreekVowel(base[i - 1]))
            continue;
        QString form = base;
        form[i] = c == u'ι' ? QChar(u'ϊ') : QChar(u'ϋ');
        forms.append(form);
        addTonosVariants(form, -1);
    }
    return forms;
}

bool hasSigmaMistake(QStringView lowerWord)
{
    if (lowerWord.isEmpty())
        return false;
    if (lowerWord.back() == Sigma)
        return true;
    return lowerWord.first(lowerWord.size() - 1).contains(FinalSigma);
}

QString sigmaFixed(QStringView lowerWord)
{
    QString fixed = lowerWord.toString();
    for (qsizetype i = 0; i + 1 < fixed.size(); ++i)
        if (fixed[i] == FinalSigma)
            fixed[i] = Sigma;
    if (!fixed.isEmpty() && fixed.back() == Sigma)
        fixed.back() = FinalSigma;
    return fixed;
}

} // namespace spelling
