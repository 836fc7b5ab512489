#include "phrasesearch.h"

#include <algorithm>

namespace hotwords {

QString foldCase(QStringView text)
{
    QString folded = text.toString();
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
        // Simple folding keeps one character for one, and takes the tonos and dialytika
        // capitals to their small letters.
        char16_t f = QChar::toCaseFolded(u);
        if (f == 0x03C2) // final sigma
            f = 0x03C3;
        *c = QChar(f);
    }
    return folded;
}

namespace {

constexpr int KeyBits = 17;
constexpr quint32 BucketCount = 1u << KeyBits;

} // namespace

quint32 PhraseSearch::key(const QChar *s)
{
    quint32 h = s[0].unicode();
    h = h * 0x9E3779B1u + s[1].unicode();
    h = h * 0x9E3779B1u + s[2].unicode();
    return (h * 0x85EBCA6Bu) >> (32 - KeyBits);
}

PhraseSearch::PhraseSearch(const QString &text)
    : m_folded(foldCase(text))
{
    const int n = int(m_folded.size());
    const QChar *s = m_folded.constData();
    m_bucketStart.assign(BucketCount + 1, 0);
    if (n < KeyLength)
        return;
    const int keyed = n - KeyLength + 1;
    // Counting sort by key keeps the places of each key in ascending order.
    std::vector<quint32> keyOf(std::size_t(keyed), 0u);
    for (int p = 0; p < keyed; ++p) {
        keyOf[std::size_t(p)] = key(s + p);
        ++m_bucketStart[keyOf[std::size_t(p)] + 1];
    }
    for (quint32 k = 1; k <= BucketCount; ++k)
        m_bucketStart[k] += m_bucketStart[k - 1];
    m_places.resize(std::size_t(keyed));
    std::vector<int> fill(m_bucketStart.begin(), m_bucketStart.end() - 1);
    for (int p = 0; p < keyed; ++p)
        m_places[std::size_t(fill[keyOf[std::size_t(p)]]++)] = p;
}

int PhraseSearch::InStr(int start, const QString &phrase) const
{
    const int n = int(m_folded.size());
    if (start < 1 || n == 0)
        return 0;
    if (phrase.isEmpty())
        return start <= n + 1 ? start : 0;
    const QString needle = foldCase(phrase);
    const int length = int(needle.size());
    const int from = start - 1;
    if (from + length > n)
        return 0;
    if (length < KeyLength) {
        const qsizetype hit = QStringView(m_folded).indexOf(needle, from);
        return hit < 0 ? 0 : int(hit) + 1;
    }

    const quint32 k = key(needle.constData());
    const auto first = m_places.begin() + m_bucketStart[k];
    const auto last = m_places.begin() + m_bucketStart[k + 1];
    const QStringView text(m_folded);
    for (auto it = std::lower_bound(first, last, from); it != last; ++it) {
        const int p = *it;
        if (p + length > n)
            return 0;
        if (text.mid(p, length) == needle)
            return p + 1;
    }
    return 0;
}

} // namespace hotwords
