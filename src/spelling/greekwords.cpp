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
        int letters = 0;
        for (; i < n && isWordChar(text[i]); ++i) {
            const QChar c = text[i];
            if (c.category() == QChar::Mark_NonSpacing)
                continue;
            if (!isGreekLetter(c))
                greek = false;
            else
                ++letters;
        }
        const bool elided = i < n && isApostrophe(text[i]);
        if (greek && letters >= 2 && !elided)
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

QChar withTonos(QChar lower)
{
    switch (lower.unicode()) {
    case u'α': return u'ά';
    case u'ε': return u'έ';
    case u'η': return u'ή';
    case u'ι': return u'ί';
    case u'ο': return u'ό';
    case u'υ': return u'ύ';
    case u'ω': return u'ώ';
    case u'ϊ': return u'ΐ';
    case u'ϋ': return u'ΰ';
    default: return QChar();
    }
}

QString withoutTonos(QStringView word)
{
    QString plain = word.toString();
    for (QChar &c : plain) {
        switch (c.unicode()) {
        case u'ά': c = u'α'; break;
        case u'έ': c = u'ε'; break;
        case u'ή': c = u'η'; break;
        case u'ί': c = u'ι'; break;
        case u'ό': c = u'ο'; break;
        case u'ύ': c = u'υ'; break;
        case u'ώ': c = u'ω'; break;
        case u'ΐ': c = u'ϊ'; break;
        case u'ΰ': c = u'ϋ'; break;
        case u'Ά': c = u'Α'; break;
        case u'Έ': c = u'Ε'; break;
        case u'Ή': c = u'Η'; break;
        case u'Ί': c = u'Ι'; break;
        case u'Ό': c = u'Ο'; break;
        case u'Ύ': c = u'Υ'; break;
        case u'Ώ': c = u'Ω'; break;
        default: break;
        }
    }
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
    QStringList forms{base};
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
