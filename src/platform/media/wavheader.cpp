#include "wavheader.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

namespace media::wav {

namespace {

// The format and fact chunks come before the data in every file of the era; a header
// longer than this is not one we can help.
constexpr qint64 HeadBytes = 64 * 1024;

constexpr quint16 FormatExtensible = 0xFFFE;

quint16 u16(const QByteArray &bytes, qint64 at)
{
    return qFromLittleEndian<quint16>(bytes.constData() + at);
}

quint32 u32(const QByteArray &bytes, qint64 at)
{
    return qFromLittleEndian<quint32>(bytes.constData() + at);
}

bool readFormat(const QByteArray &head, qint64 at, quint32 size, Layout &layout)
{
    if (size < 16 || at + 16 > head.size())
        return false;
    layout.format = u16(head, at);
    layout.channels = u16(head, at + 2);
    layout.rate = u32(head, at + 4);
    layout.bytesPerSecond = u32(head, at + 8);
    layout.blockAlign = u16(head, at + 12);
    layout.bitsPerSample = u16(head, at + 14);
    const quint16 extra = size >= 18 && at + 18 <= head.size() ? u16(head, at + 16) : 0;
    if (layout.format == FormatExtensible && extra >= 22 && size >= 40 && at + 40 <= head.size())
        layout.format = u16(head, at + 24); // the sub-format's GUID begins with the tag
    const bool adpcm = layout.format == FormatMsAdpcm || layout.format == FormatImaAdpcm;
    if (adpcm && extra >= 2 && size >= 20 && at + 20 <= head.size())
        layout.samplesPerBlock = u16(head, at + 18);
    if (adpcm && layout.samplesPerBlock == 0 && layout.channels > 0) {
        // A header without the count: each block starts with its first samples whole
        // (two for Microsoft's, one for IMA's) and packs the rest at four bits each.
        const int whole = layout.format == FormatMsAdpcm ? 7 : 4;
        const int packed = layout.blockAlign - whole * layout.channels;
        if (packed > 0)
            layout.samplesPerBlock = quint32(packed * 2 / layout.channels + (whole == 7 ? 2 : 1));
    }
    return true;
}

} // namespace

std::optional<Layout> read(const QByteArray &head, qint64 fileSize)
{
    if (head.size() < 12 || !head.startsWith("RIFF") || head.mid(8, 4) != "WAVE")
        return std::nullopt;
    Layout layout;
    bool format = false;
    qint64 at = 12;
    while (at + 8 <= head.size()) {
        const QByteArray tag = head.mid(at, 4);
        const quint32 size = u32(head, at + 4);
        const qint64 body = at + 8;
        if (tag == "fmt ") {
            format = readFormat(head, body, size, layout);
        } else if (tag == "fact" && size >= 4 && body + 4 <= head.size()) {
            layout.factSamples = u32(head, body);
        } else if (tag == "data") {
            if (!format)
                return std::nullopt;
            layout.dataStart = body;
            layout.dataSize = qMax<qint64>(0, qMin<qint64>(size, fileSize - body));
            layout.paddedToEnd = (size & 1) && body + qint64(size) + 1 == fileSize;
            return layout;
        }
        at = body + qint64(size) + (size & 1);
    }
    return std::nullopt;
}

std::optional<Layout> readFile(const QString &file)
{
    const QFileInfo info(file);
    if (!info.isFile())
        return std::nullopt;
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly))
        return std::nullopt;
    return read(in.read(HeadBytes), in.size());
}

qint64 lengthMs(const Layout &layout)
{
    if (layout.rate == 0)
        return 0;
    qint64 samples = -1;
    switch (layout.format) {
    case FormatMsAdpcm:
    case FormatImaAdpcm:
        if (layout.factSamples && *layout.factSamples > 0) {
            samples = *layout.factSamples;
        } else if (layout.blockAlign > 0 && layout.samplesPerBlock > 0) {
            // Every block holds its full count but perhaps the last, cut short.
            samples = layout.dataSize / layout.blockAlign * layout.samplesPerBlock;
            const qint64 rest = layout.dataSize % layout.blockAlign;
            const int whole = layout.format == FormatMsAdpcm ? 7 : 4;
            if (layout.channels > 0 && rest > whole * layout.channels)
                samples += (rest - whole * layout.channels) * 2 / layout.channels + (whole == 7 ? 2 : 1);
        }
        break;
    case FormatPcm:
        if (layout.blockAlign > 0)
            samples = layout.dataSize / layout.blockAlign;
        break;
    default:
        if (layout.factSamples && *layout.factSamples > 0)
            samples = *layout.factSamples;
        else if (layout.bytesPerSecond > 0)
            return layout.dataSize * 1000 / layout.bytesPerSecond;
        break;
    }
    return samples < 0 ? 0 : samples * 1000 / layout.rate;
}

} // namespace media::wav
