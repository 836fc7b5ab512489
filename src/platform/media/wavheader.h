#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

// What the header of a RIFF WAVE file says about its sound, read by us rather than by
// GStreamer's parser: that parser loses the length of some files of the era (an 8-bit
// sound of an odd number of samples, whose padding byte ends the file; Microsoft ADPCM,
// whose blocks it counts at half their samples).
namespace media::wav {

inline constexpr quint16 FormatPcm = 0x0001;
inline constexpr quint16 FormatMsAdpcm = 0x0002;
inline constexpr quint16 FormatImaAdpcm = 0x0011;

struct Layout
{
    quint16 format = 0; // the format tag; an extensible header's sub-format
    quint16 channels = 0;
    quint32 rate = 0;
    quint32 bytesPerSecond = 0;
    quint16 blockAlign = 0;
    quint16 bitsPerSample = 0;
    quint32 samplesPerBlock = 0; // the ADPCM formats; 0 for the others
    std::optional<quint32> factSamples; // the 'fact' chunk's count of samples
    qint64 dataStart = 0;
    qint64 dataSize = 0; // cut to what the file holds
    // The sound data is the last chunk, of an odd size, and the file ends with the byte
    // that pads it to an even size.
    bool paddedToEnd = false;
};

// Reads the chunks' headers of a regular file (never a pipe or a device, which could keep
// the reader waiting); nothing when it is not a WAVE file with a format and a data chunk.
std::optional<Layout> readFile(const QString &file);
std::optional<Layout> read(const QByteArray &head, qint64 fileSize);

// The length of the sound in milliseconds, as its header tells it; 0 when it does not.
qint64 lengthMs(const Layout &layout);

} // namespace media::wav
