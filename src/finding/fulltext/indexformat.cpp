#include "indexformat.h"

#include <zlib.h>

#include <utility>

namespace fulltext::format {

namespace {

// A text is stored a byte a character where it can be: ASCII as it is, the Greek letters
// (U+0370 to U+03EF) as 0x80 to 0xFF, and any other UTF-16 unit, 0x01 included, as 0x01
// and its two bytes. Greek words take half their UTF-8 size, and deflate finds twice as
// much text in its window.
constexpr unsigned char Escape = 0x01;
constexpr char16_t GreekFirst = 0x0370;

void encodeText(QByteArray &out, QStringView text)
{
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u < 0x80 && u != Escape) {
            out.append(char(u));
        } else if (u >= GreekFirst && u < GreekFirst + 0x80) {
            out.append(char(0x80 + (u - GreekFirst)));
        } else {
            out.append(char(Escape));
            out.append(char(u >> 8));
            out.append(char(u & 0xFF));
        }
    }
}

std::optional<QString> decodeText(const char *p, const char *end)
{
    QString text;
    text.reserve(end - p);
    while (p < end) {
        const auto byte = static_cast<unsigned char>(*p++);
        if (byte == Escape) {
            if (end - p < 2)
                return std::nullopt;
            const auto high = static_cast<unsigned char>(p[0]);
            const auto low = static_cast<unsigned char>(p[1]);
            p += 2;
            text.append(QChar(char16_t((high << 8) | low)));
        } else if (byte >= 0x80) {
            text.append(QChar(char16_t(GreekFirst + (byte - 0x80))));
        } else {
            text.append(QChar(char16_t(byte)));
        }
    }
    return text;
}

// Deflate never makes data smaller than about a thousandth: a stated size beyond that is
// damage, and must not be allocated.
constexpr qsizetype DeflateMaxRatio = 1032;

} // namespace

PostingsCheck::PostingsCheck(std::vector<int> words)
    : m_words(std::move(words))
    , m_used(m_words.size(), 0)
{
}

bool PostingsCheck::term(QByteArrayView docs, QByteArrayView positions)
{
    const char *c = docs.data();
    const char *const end = c + docs.size();
    const char *pos = positions.data();
    const char *const posEnd = pos + positions.size();
    std::int64_t doc = 0;
    bool first = true;
    while (c < end) {
        std::uint32_t delta = 0;
        std::uint32_t v = 0;
        if (!readVarint(c, end, delta) || !readVarint(c, end, v))
            return false;
        if (!first && delta == 0)
            return false;
        first = false;
        doc += delta;
        if (doc >= std::int64_t(m_words.size()))
            return false;
        const std::uint32_t count = v >> 1;
        const std::int64_t places = m_words[size_t(doc)];
        std::int64_t &used = m_used[size_t(doc)];
        used += count;
        if (count == 0 || used > places)
            return false;
        std::int64_t place = -1;
        for (std::uint32_t k = 0; k < count; ++k) {
            std::uint32_t step = 0;
            if (!readVarint(pos, posEnd, step))
                return false;
            if (k > 0 && step == 0)
                return false;
            place = (k == 0 ? 0 : place) + step;
            if (place >= places)
                return false;
        }
    }
    return pos == posEnd;
}

QByteArray packTexts(const QList<QString> &texts)
{
    QByteArray plain;
    QByteArray encoded;
    for (const QString &text : texts) {
        encoded.clear();
        encodeText(encoded, text);
        putVarint(plain, std::uint32_t(encoded.size()));
        plain += encoded;
    }
    uLongf size = compressBound(uLong(plain.size()));
    QByteArray packed;
    putVarint(packed, std::uint32_t(plain.size()));
    const qsizetype header = packed.size();
    packed.resize(header + qsizetype(size));
    // Level 4 packs a tenth smaller than the fastest level for about as much time; the
    // levels above it take twice as long again for a few hundredths.
    compress2(reinterpret_cast<Bytef *>(packed.data() + header), &size,
        reinterpret_cast<const Bytef *>(plain.constData()), uLong(plain.size()), 4);
    packed.resize(header + qsizetype(size));
    return packed;
}

std::optional<QString> unpackText(QByteArrayView block, qsizetype i)
{
    const char *p = block.data();
    const char *const end = p + block.size();
    std::uint32_t size = 0;
    if (!readVarint(p, end, size) || qsizetype(size) > (end - p) * DeflateMaxRatio)
        return std::nullopt;
    QByteArray plain(qsizetype(size), Qt::Uninitialized);
    uLongf length = size;
    if (uncompress(reinterpret_cast<Bytef *>(plain.data()), &length, reinterpret_cast<const Bytef *>(p),
            uLong(end - p))
            != Z_OK
        || length != size)
        return std::nullopt;
    const char *t = plain.constData();
    const char *const plainEnd = t + plain.size();
    for (qsizetype k = 0;; ++k) {
        std::uint32_t bytes = 0;
        if (!readVarint(t, plainEnd, bytes) || bytes > std::uint32_t(plainEnd - t))
            return std::nullopt;
        if (k == i)
            return decodeText(t, t + bytes);
        t += bytes;
    }
}

Checksum::Checksum()
    : m_crc(std::uint32_t(crc32(0, nullptr, 0)))
{
}

void Checksum::addRaw(const void *data, std::size_t size)
{
    // zlib takes no data for a request of its starting value, which would undo the sum.
    if (size == 0)
        return;
    m_crc = std::uint32_t(crc32_z(m_crc, static_cast<const Bytef *>(data), size));
}

void Checksum::add(std::int64_t value)
{
    unsigned char bytes[8];
    for (int k = 0; k < 8; ++k)
        bytes[k] = static_cast<unsigned char>(std::uint64_t(value) >> (8 * k));
    addRaw(bytes, sizeof bytes);
}

void Checksum::add(QByteArrayView bytes)
{
    add(std::int64_t(bytes.size()));
    addRaw(bytes.data(), std::size_t(bytes.size()));
}

void addDoc(Checksum &sum, const std::int64_t (&numbers)[5], QByteArrayView title, QByteArrayView book)
{
    for (const std::int64_t v : numbers)
        sum.add(v);
    sum.add(title);
    sum.add(book);
}

void addTerm(
    Checksum &sum, QByteArrayView term, QByteArrayView stem, QByteArrayView docs, QByteArrayView positions)
{
    for (const QByteArrayView bytes : {term, stem, docs, positions})
        sum.add(bytes);
}

QString checksumText(const Checksum &docs, const Checksum &terms, const Checksum &texts)
{
    return QStringLiteral("%1 %2 %3")
        .arg(docs.value(), 8, 16, QLatin1Char('0'))
        .arg(terms.value(), 8, 16, QLatin1Char('0'))
        .arg(texts.value(), 8, 16, QLatin1Char('0'));
}

} // namespace fulltext::format
