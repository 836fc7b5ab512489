#include "rtfpicture.h"

#include <littleendian.h>
#include <metafile.h>
#include <twips.h>

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <cmath>

namespace richtext {

namespace {

using pictures::le16;
using pictures::le32;

void putLe32(QByteArray &d, quint32 v)
{
    for (int i = 0; i < 4; ++i)
        d.append(static_cast<char>((v >> (8 * i)) & 0xFF));
}

// Pictures larger than this are refused rather than allocated.
constexpr int MaxPictureSide = 16384;

QImage loadImage(const QByteArray &bytes, const char *format)
{
    if (bytes.isEmpty())
        return {};
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    reader.setAutoTransform(false);
    const QSize size = reader.size();
    if (size.isValid() && (size.width() > MaxPictureSide || size.height() > MaxPictureSide))
        return {};
    QImage image;
    if (!reader.read(&image))
        return {};
    return image;
}

double himetricToPixels(int himetric)
{
    // 2540 himetric to the inch, 1440 twips to the inch.
    return himetric * 1440.0 / 2540.0 / platform::TwipsPerPixelX;
}

// The pixels a metafile is drawn at: the author's goal size, else its own picture size.
QSize metafileGoalSize(const PictureInput &input)
{
    if (input.goalw > 0 && input.goalh > 0)
        return QSize(int(std::lround(double(input.goalw) / platform::TwipsPerPixelX)),
            int(std::lround(double(input.goalh) / platform::TwipsPerPixelY)));
    if (input.picw > 0 && input.pich > 0)
        return QSize(
            int(std::lround(himetricToPixels(input.picw))), int(std::lround(himetricToPixels(input.pich))));
    return {};
}

} // namespace

QByteArray bmpFromDib(const QByteArray &dib)
{
    const quint32 headerSize = le32(dib, 0);
    if (headerSize < 12 || headerSize > 1024 || headerSize >= static_cast<quint32>(dib.size()))
        return {};
    quint32 colours = 0;
    quint32 entrySize = 4;
    quint32 masks = 0;
    if (headerSize == 12) {
        const quint16 bits = le16(dib, 10);
        colours = bits <= 8 ? (1u << bits) : 0;
        entrySize = 3;
    } else {
        const quint16 bits = le16(dib, 14);
        const quint32 compression = le32(dib, 16);
        const quint32 used = le32(dib, 32);
        colours = used != 0 ? std::min<quint32>(used, 256) : (bits <= 8 ? (1u << bits) : 0);
        if (headerSize == 40 && (compression == 3 || compression == 6))
            masks = compression == 3 ? 12 : 16;
    }
    const quint32 offset = 14 + headerSize + masks + colours * entrySize;
    QByteArray bmp;
    bmp.reserve(dib.size() + 14);
    bmp.append("BM", 2);
    putLe32(bmp, static_cast<quint32>(dib.size() + 14));
    putLe32(bmp, 0);
    putLe32(bmp, offset);
    bmp.append(dib);
    return bmp;
}

QByteArray dibFromWmf(const QByteArray &wmf)
{
    qsizetype pos = 0;
    if (le32(wmf, 0) == 0x9AC6CDD7u)
        pos = 22; // the placeable header
    const quint16 headerWords = le16(wmf, pos + 2);
    if (headerWords < 9)
        return {};
    pos += headerWords * 2;
    while (pos + 6 <= wmf.size()) {
        const quint32 words = le32(wmf, pos);
        const quint16 function = le16(wmf, pos + 4);
        if (words < 3 || function == 0)
            break;
        const qsizetype length
            = static_cast<qsizetype>(std::min<quint64>(quint64(words) * 2, quint64(wmf.size())));
        qsizetype params = -1;
        switch (function) {
        case 0x0F43: // StretchDIBits
            params = 22;
            break;
        case 0x0B41: // DIBStretchBlt
            params = 20;
            break;
        case 0x0940: // DIBBitBlt
            params = 16;
            break;
        case 0x0D33: // SetDIBitsToDevice
            params = 18;
            break;
        default:
            break;
        }
        if (params >= 0 && length > 6 + params)
            return wmf.mid(pos + 6 + params, length - 6 - params);
        if (length > wmf.size() - pos)
            break;
        pos += length;
    }
    return {};
}

QByteArray dibFromEmf(const QByteArray &emf)
{
    qsizetype pos = 0;
    while (pos + 8 <= emf.size()) {
        const quint32 type = le32(emf, pos);
        const quint32 size = le32(emf, pos + 4);
        if (size < 8 || size > static_cast<quint32>(emf.size() - pos))
            break;
        if (type == 81 && size >= 80) { // StretchDIBits
            const quint32 offBmi = le32(emf, pos + 48);
            const quint32 cbBmi = le32(emf, pos + 52);
            const quint32 offBits = le32(emf, pos + 56);
            const quint32 cbBits = le32(emf, pos + 60);
            if (quint64(offBmi) + cbBmi <= size && quint64(offBits) + cbBits <= size && cbBmi > 0)
                return emf.mid(pos + offBmi, cbBmi) + emf.mid(pos + offBits, cbBits);
        }
        if (type == 14) // end of file
            break;
        pos += size;
    }
    return {};
}

RtfPicture decodePicture(const PictureInput &input)
{
    RtfPicture picture;
    bool metafile = false;
    switch (input.format) {
    case PictureInput::Png:
        picture.image = loadImage(input.data, "PNG");
        break;
    case PictureInput::Jpeg:
        picture.image = loadImage(input.data, "JPEG");
        break;
    case PictureInput::Dib:
        picture.image = loadImage(bmpFromDib(input.data), "BMP");
        break;
    case PictureInput::Wmf:
        metafile = true;
        // A bitmap wrapped in a metafile comes out as the bitmap itself; a drawing is drawn.
        picture.image = loadImage(bmpFromDib(dibFromWmf(input.data)), "BMP");
        if (picture.image.isNull())
            picture.image = pictures::drawWindowsMetafile(input.data, metafileGoalSize(input));
        break;
    case PictureInput::Emf:
        metafile = true;
        picture.image = loadImage(bmpFromDib(dibFromEmf(input.data)), "BMP");
        if (picture.image.isNull())
            picture.image = pictures::drawEnhancedMetafile(input.data, metafileGoalSize(input));
        break;
    case PictureInput::Unknown:
        break;
    }

    // The goal size is what the author saw; failing that the picture's own size, read as
    // pixels for bitmaps and as himetric for metafiles.
    double width = 0;
    double height = 0;
    if (input.goalw > 0 && input.goalh > 0) {
        width = double(input.goalw) / platform::TwipsPerPixelX;
        height = double(input.goalh) / platform::TwipsPerPixelY;
    } else if (metafile && input.picw > 0 && input.pich > 0) {
        width = himetricToPixels(input.picw);
        height = himetricToPixels(input.pich);
    } else if (!picture.image.isNull()) {
        width = picture.image.width();
        height = picture.image.height();
    } else if (input.picw > 0 && input.pich > 0) {
        width = input.picw;
        height = input.pich;
    }
    const double sx = input.scalex > 0 ? std::min(input.scalex, 10000) / 100.0 : 1.0;
    const double sy = input.scaley > 0 ? std::min(input.scaley, 10000) / 100.0 : 1.0;
    picture.width = std::min(width * sx, double(MaxPictureSide));
    picture.height = std::min(height * sy, double(MaxPictureSide));
    // A metafile that nothing here draws keeps its place in the text as an empty frame.
    if (metafile && picture.image.isNull() && picture.width >= 1 && picture.height >= 1)
        picture.image = pictures::emptyFrame(QSize(int(std::lround(std::min(picture.width, 2048.0))),
            int(std::lround(std::min(picture.height, 2048.0)))));
    return picture;
}

} // namespace richtext
