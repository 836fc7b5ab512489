#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringView>

#include <cstdint>
#include <optional>
#include <vector>

// The index file's layout, shared by the builder and the reader.
//
//   meta(key, value)       format, checksum, and the content file's path, size and mtime
//   docs(doc, ResourceID, ResTypeID, title, book, titleWords, words)
//                          one row per source, doc being its place in the list's order
//   texts(first, data)     the sources' words (title, catalogue fields and text, one per
//                          line), a block of neighbouring sources a row from source `first`
//                          on, packed (packTexts)
//   terms(id, term, stem, docs, positions)
//                          one row per folded word, ids in the order of the words
//   stamps(path, kind, size, mtime)
//                          every text file the build looked for (textstamps.h)
//
// A term's `docs` holds, for each source it stands in, the source's doc less the one
// before (varint) and its count of places times two, plus one when one of them is in the
// title (varint); `positions` holds, source after source, the word places (varint, each
// less the one before, the first as it is).
//
// The file is read whole on opening and checked: everything that points somewhere is
// bounded, and the `checksum` of meta covers the rows of the other tables, so that damage
// which still points inside is found too. A file that fails either is damaged, never used.
namespace fulltext::format {

inline constexpr int Version = 2;

// Limits no source comes near: a word place outside them is damage. They bound what a
// query may allocate for a source's places.
inline constexpr std::int64_t MaxWordsOfSource = std::int64_t(1) << 22;
inline constexpr std::int64_t MaxWordsInAll = std::int64_t(1) << 28;

// The sources' words are packed into blocks of about this many bytes before compression:
// a block compresses far better than a source alone and unpacks in a fraction of a
// millisecond.
inline constexpr qsizetype TextBlockBytes = 64 * 1024;

inline void putVarint(QByteArray &out, std::uint32_t value)
{
    while (value >= 0x80) {
        out.append(char((value & 0x7F) | 0x80));
        value >>= 7;
    }
    out.append(char(value));
}

// Reads one varint that must end before `end`; false, with `p` left anywhere up to `end`,
// when it runs past it or is longer than 32 bits.
inline bool readVarint(const char *&p, const char *end, std::uint32_t &value)
{
    value = 0;
    for (int shift = 0; shift < 35 && p < end; shift += 7) {
        const auto byte = static_cast<unsigned char>(*p++);
        if (shift == 28 && byte > 0x0F)
            return false;
        value |= std::uint32_t(byte & 0x7F) << shift;
        if (!(byte & 0x80))
            return true;
    }
    return false;
}

// The same without bounds, for a term's postings once checkPostings passed them: the
// query's inner loops read millions.
inline std::uint32_t getVarint(const char *&p)
{
    std::uint32_t value = 0;
    int shift = 0;
    for (;;) {
        const auto byte = static_cast<unsigned char>(*p++);
        value |= std::uint32_t(byte & 0x7F) << shift;
        if (!(byte & 0x80))
            return value;
        shift += 7;
    }
}

// Checks the terms' postings one after the other against the sources' counts of word
// places.
class PostingsCheck
{
public:
    explicit PostingsCheck(std::vector<int> words);
    // True when a term's postings read to their ends and point only at places that exist:
    // sources in increasing order, counts from 1, places in increasing order below their
    // source's words, and no source given more places by all terms than it has.
    bool term(QByteArrayView docs, QByteArrayView positions);

private:
    std::vector<int> m_words;
    std::vector<std::int64_t> m_used;
};

// A block of texts as stored; texts[i] is the words of source first + i.
QByteArray packTexts(const QList<QString> &texts);
// The i-th text of a block, or nothing when the block is damaged or holds fewer.
std::optional<QString> unpackText(QByteArrayView block, qsizetype i);

// CRC-32 over what is added, each piece with its length, so that pieces cannot trade bytes.
class Checksum
{
public:
    Checksum();
    void add(std::int64_t value);
    void add(QByteArrayView bytes);
    std::uint32_t value() const { return m_crc; }

private:
    void addRaw(const void *data, std::size_t size);
    std::uint32_t m_crc;
};

// A row of docs and of terms as the checksum takes them; texts as UTF-8.
void addDoc(Checksum &sum, const std::int64_t (&numbers)[5], QByteArrayView title, QByteArrayView book);
void addTerm(
    Checksum &sum, QByteArrayView term, QByteArrayView stem, QByteArrayView docs, QByteArrayView positions);

// meta's checksum: the three tables' checksums in a line.
QString checksumText(const Checksum &docs, const Checksum &terms, const Checksum &texts);

} // namespace fulltext::format
