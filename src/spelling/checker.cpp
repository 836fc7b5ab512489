#include "checker.h"

#include "dictionary.h"

namespace spelling {

namespace {

// The answers kept between changes of the known words; a note of a hundred pages has a
// few thousand different words.
constexpr qsizetype MostKept = 200000;

const QString LowerLetters = QStringLiteral("αβγδεζηθικλμνξοπρστυφχψω");

QString normalised(const QString &word)
{
    for (const QChar c : word)
        if (c.category() == QChar::Mark_NonSpacing)
            return word.normalized(QString::NormalizationForm_C);
    return word;
}

// Letters that sound alike and are confused most: tried before any other change.
QStringList soundAlikes(QChar c)
{
    switch (c.unicode()) {
    case u'ο':
        return {QStringLiteral("ω")};
    case u'ω':
        return {QStringLiteral("ο")};
    case u'ι':
        return {QStringLiteral("η"), QStringLiteral("υ"), QStringLiteral("ει"), QStringLiteral("οι")};
    case u'η':
        return {QStringLiteral("ι"), QStringLiteral("υ"), QStringLiteral("ει"), QStringLiteral("οι")};
    case u'υ':
        return {QStringLiteral("ι"), QStringLiteral("η"), QStringLiteral("οι"), QStringLiteral("ει")};
    case u'ε':
        return {QStringLiteral("αι")};
    default:
        return {};
    }
}

// The word's neighbours by one change, the likeliest kinds first.
QStringList edits(const QString &w)
{
    QStringList out;
    const qsizetype n = w.size();
    for (qsizetype i = 0; i < n; ++i)
        for (const QString &alike : soundAlikes(w[i]))
            out.append(w.left(i) + alike + w.mid(i + 1));
    // ει, οι and αι read as one sound.
    for (qsizetype i = 0; i + 1 < n; ++i) {
        const QStringView pair = QStringView(w).mid(i, 2);
        if (pair == u"ει" || pair == u"οι")
            for (const char16_t *alike : {u"ι", u"η", u"υ"})
                out.append(w.left(i) + QString::fromUtf16(alike) + w.mid(i + 2));
        if (pair == u"αι")
            out.append(w.left(i) + QStringLiteral("ε") + w.mid(i + 2));
    }
    for (qsizetype i = 0; i + 1 < n; ++i) {
        QString swapped = w;
        std::swap(swapped[i], swapped[i + 1]);
        out.append(swapped);
    }
    for (qsizetype i = 0; i < n; ++i)
        out.append(w.left(i) + w.mid(i + 1));
    for (qsizetype i = 0; i < n; ++i)
        for (const QChar c : LowerLetters)
            if (c != w[i])
                out.append(w.left(i) + c + w.mid(i + 1));
    for (qsizetype i = 0; i <= n; ++i)
        for (const QChar c : LowerLetters)
            out.append(w.left(i) + c + w.mid(i));
    return out;
}

} // namespace

void WordSet::add(const QString &phrase)
{
    const QString text = normalised(phrase);
    for (const WordSpan &span : checkableWords(text)) {
        const QString lower = lowerGreek(QStringView(text).mid(span.start, span.length));
        m_lower.insert(lower);
        m_plain.insert(withoutTonos(lower));
    }
}

bool WordSet::contains(const QString &word) const
{
    const QString lower = lowerGreek(word);
    if (m_lower.contains(lower))
        return true;
    return caseOf(word) == Case::Capitals && m_plain.contains(withoutTonos(lower));
}

void WordSet::clear()
{
    m_lower.clear();
    m_plain.clear();
}

Checker::Checker(std::shared_ptr<Dictionary> dictionary)
    : m_dictionary(std::move(dictionary))
{
}

Checker::~Checker() = default;

bool Checker::isMisspelt(const QString &word)
{
    const auto kept = m_misspelt.constFind(word);
    if (kept != m_misspelt.constEnd())
        return *kept;
    if (m_misspelt.size() > MostKept)
        m_misspelt.clear();
    const bool wrong = !isKnown(normalised(word));
    m_misspelt.insert(word, wrong);
    return wrong;
}

bool Checker::isKnown(const QString &word) const
{
    const Case letterCase = caseOf(word);
    const QString lower = lowerGreek(word);
    if (letterCase != Case::Capitals && hasSigmaMistake(lower))
        return false;
    if (m_course.contains(word) || m_own.contains(word))
        return true;
    const Dictionary &dictionary = *m_dictionary;
    switch (letterCase) {
    case Case::Lower:
        return dictionary.spell(word);
    case Case::Capitalised:
        return dictionary.spell(word) || dictionary.spell(lower);
    case Case::Mixed:
        return dictionary.spell(word) || !dictionaryForm(lower).isEmpty();
    case Case::Capitals:
        if (dictionary.spell(word))
            return true;
        // Greek capitals carry no accents: the word is right when some accenting of it is.
        for (const QString &form : accentings(withoutTonos(lower)))
            if (!dictionaryForm(form).isEmpty())
                return true;
        return false;
    }
    return false;
}

QString Checker::dictionaryForm(const QString &lower) const
{
    if (m_dictionary->spell(lower))
        return lower;
    const QString proper = capitalised(lower);
    if (m_dictionary->spell(proper))
        return proper;
    return QString();
}

void Checker::collectCandidates(const QString &plain, QStringList &out, int most) const
{
    auto tryWord = [&](const QString &candidate) {
        for (const QString &form : accentings(sigmaFixed(candidate))) {
            const QString found = dictionaryForm(form);
            if (!found.isEmpty() && !out.contains(found)) {
                out.append(found);
                if (out.size() >= most)
                    return true;
            }
        }
        return false;
    };
    if (tryWord(plain))
        return;
    for (const QString &candidate : edits(plain))
        if (tryWord(withoutTonos(candidate)))
            return;
}

QStringList Checker::suggestions(const QString &written, int most)
{
    const QString word = normalised(written);
    const Case letterCase = caseOf(word);
    const QString lower = lowerGreek(word);
    QStringList found;
    if (letterCase != Case::Capitals && hasSigmaMistake(lower)) {
        // The sigma first, whatever else the word lacks.
        const QString fixed = sigmaFixed(lower);
        QString best = fixed;
        if (dictionaryForm(fixed).isEmpty()) {
            for (const QString &form : accentings(withoutTonos(fixed)))
                if (const QString known = dictionaryForm(form); !known.isEmpty()) {
                    best = known;
                    break;
                }
        }
        found.append(best);
    }
    collectCandidates(sigmaFixed(withoutTonos(lower)), found, most + 1);
    if (found.isEmpty() && letterCase != Case::Capitals)
        found = m_dictionary->suggest(word);
    QStringList out;
    for (const QString &s : std::as_const(found)) {
        QString shaped;
        switch (letterCase) {
        case Case::Capitals:
            shaped = capitalsWithoutAccents(s);
            break;
        case Case::Capitalised:
            shaped = capitalised(s);
            break;
        default:
            shaped = s;
            break;
        }
        if (shaped != word && !out.contains(shaped))
            out.append(shaped);
        if (out.size() >= most)
            break;
    }
    return out;
}

QList<Checker::Misspelling> Checker::misspellings(QStringView text)
{
    QList<Misspelling> found;
    for (const WordSpan &span : checkableWords(text)) {
        const QString word = text.mid(span.start, span.length).toString();
        if (isMisspelt(word))
            found.append({span.start, span.length, word});
    }
    return found;
}

void Checker::setCourseWords(const QStringList &phrases)
{
    m_course.clear();
    for (const QString &phrase : phrases)
        m_course.add(phrase);
    m_misspelt.clear();
}

void Checker::addOwnWord(const QString &word)
{
    m_own.add(word);
    m_misspelt.clear();
}

void Checker::addOwnWords(const QStringList &words)
{
    for (const QString &word : words)
        m_own.add(word);
    m_misspelt.clear();
}

} // namespace spelling
