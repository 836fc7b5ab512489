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

constexpr int BucketBits = 8;
constexpr quint32 BucketCount = 1u << (2 * BucketBits);

quint32 bucketOf(QChar c)
{
    const char16_t u = c.unicode();
    return quint32(u ^ (u >> BucketBits)) & ((1u << BucketBits) - 1);
}

} // namespace

quint32 PhraseSearch::pairKey(QChar a, QChar b)
{
    return (bucketOf(a) << BucketBits) | bucketOf(b);
}

PhraseSearch::PhraseSearch(const QString &text)
    : m_folded(foldCase(text))
{
    const int n = int(m_folded.size());
    const QChar *s = m_folded.constData();
    m_bucketStart.assign(BucketCount + 1, 0);
    if (n < 2)
        return;
    // Counting sort by key keeps the places of each key in ascending order.
    for (int p = 0; p + 1 < n; ++p)
        ++m_bucketStart[pairKey(s[p], s[p + 1]) + 1];
    for (quint32 k = 1; k <= BucketCount; ++k)
        m_bucketStart[k] += m_bucketStart[k - 1];
    m_places.resize(std::size_t(n - 1));
    std::vector<int> fill(m_bucketStart.begin(), m_bucketStart.end() - 1);
    for (int p = 0; p + 1 < n; ++p)
        m_places[std::size_t(fill[pairKey(s[p], s[p + 1])]++)] = p;
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
    if (length == 1) {
        const qsizetype hit = QStringView(m_folded).indexOf(needle.at(0), from);
        return hit < 0 ? 0 : int(hit) + 1;
    }

    const quint32 key = pairKey(needle.at(0), needle.at(1));
    const auto first = m_places.begin() + m_bucketStart[key];
    const auto last = m_places.begin() + m_bucketStart[key + 1];
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
