#pragma once

#include <QByteArray>

#include <cstdint>

// The index file's layout, shared by the builder and the reader.
//
//   meta(key, value)       format, and the content file's path, size and mtime
//   docs(doc, ResourceID, ResTypeID, title, book, titleWords, words, text)
//                          one row per source, doc being its place in the list's order
//   terms(id, term, stem, docs, positions)
//                          one row per folded word, ids in the order of the words
//
// A term's `docs` holds, for each source it stands in, the source's doc less the one
// before (varint) and its count of places times two, plus one when one of them is in the
// title (varint); `positions` holds, source after source, the word places (varint, each
// less the one before, the first as it is).
namespace fulltext::format {

inline constexpr int Version = 1;

inline void putVarint(QByteArray &out, std::uint32_t value)
{
    while (value >= 0x80) {
        out.append(char((value & 0x7F) | 0x80));
        value >>= 7;
    }
    out.append(char(value));
}

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

} // namespace fulltext::format
