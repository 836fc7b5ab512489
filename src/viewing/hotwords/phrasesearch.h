#pragma once

#include <QString>
#include <QStringView>

#include <vector>

namespace hotwords {

// The text folded for a comparison that ignores case the Greek way, one character for
// one so that places stay the same: capitals to small letters, accented capitals to
// accented small letters, final sigma to sigma. Accents still count.
QString foldCase(QStringView text);

// InStr over one text that does not change, by text comparison. Locating the hot words
// of a text searches it from the start again for every phrase and every black
// occurrence, so the text is folded once and the places of every three neighbouring
// characters are indexed: a search then visits only the places where the phrase's first
// three characters stand, and costs no more for a phrase near the end than near the start.
class PhraseSearch final
{
public:
    explicit PhraseSearch(const QString &text);

    // The place, from 1, of the first occurrence of phrase at or after start (from 1), or
    // 0. As the platform's InStr: an empty phrase is found at the start itself while the
    // start lies within the text or just behind it, and nothing is found in an empty text.
    int InStr(int start, const QString &phrase) const;

    int length() const { return int(m_folded.size()); }
    const QString &folded() const { return m_folded; }

private:
    // Phrases are indexed by their first three characters, hashed.
    static constexpr int KeyLength = 3;
    static quint32 key(const QChar *s);

    QString m_folded;
    std::vector<int> m_bucketStart; // per key, into m_places; one extra at the end
    std::vector<int> m_places; // places of each key, grouped by key, ascending within
};

} // namespace hotwords
