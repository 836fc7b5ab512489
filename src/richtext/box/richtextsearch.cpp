#include "richtextsearch.h"

#include <algorithm>

namespace richtextbox {

QString foldCase(const QString &text)
{
    QString folded = text;
    QChar *c = folded.data();
    const QChar *const end = c + folded.size();
    for (; c != end; ++c) {
        const char16_t u = c->unicode();
        if (u < 0x80) {
            if (u >= u'A' && u <= u'Z')
                *c = QChar(char16_t(u + 32));
            continue;
        }
        if (c->isSurrogate())
            continue;
        // Simple folding keeps the length; it also takes final sigma to sigma and the
        // tonos and dialytika capitals to their small letters.
        const QChar f = QChar(c->toCaseFolded());
        *c = f;
        if (f.unicode() == 0x03C2) // final sigma, in case the tables leave it
            *c = QChar(char16_t(0x03C3));
    }
    return folded;
}

bool isWordCharacter(QChar c)
{
    if (c.isLetterOrNumber() || c.isMark())
        return true;
    return c == u'_';
}

namespace {

bool standsAlone(const QString &text, int from, int length)
{
    if (from > 0 && isWordCharacter(text.at(from - 1)) && isWordCharacter(text.at(from)))
        return false;
    const int after = from + length;
    if (after < text.size() && isWordCharacter(text.at(after)) && isWordCharacter(text.at(after - 1)))
        return false;
    return true;
}

} // namespace

int findText(const QString &haystack, const QString &foldedHaystack, const QString &needle, int start,
    int end, int options)
{
    const int size = int(haystack.size());
    if (needle.isEmpty())
        return -1;
    start = std::max(start, 0);
    if (end < 0 || end > size)
        end = size;
    if (start >= end)
        return -1;

    const bool matchCase = options & FindMatchCase;
    const bool wholeWord = options & FindWholeWord;
    const QString &text = matchCase ? haystack : foldedHaystack;
    const QString pattern = matchCase ? needle : foldCase(needle);
    const int length = int(pattern.size());

    int from = start;
    while (from + length <= end) {
        const int hit = int(text.indexOf(pattern, from, Qt::CaseSensitive));
        if (hit < 0 || hit + length > end)
            return -1;
        if (!wholeWord || standsAlone(haystack, hit, length))
            return hit;
        from = hit + 1;
    }
    return -1;
}

} // namespace richtextbox
