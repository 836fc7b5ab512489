#include "metafile.h"

#include "littleendian.h"

#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cstdlib>

extern "C" {
#include <emf2svg.h>
}

namespace pictures {

namespace {

constexpr quint32 EmrHeader = 1;
constexpr quint32 EmrEof = 14;

// The converter trusts the records it is given; a file whose records do not chain to
// the end-of-file record within its bytes is refused before it gets there.
bool recordsHold(const QByteArray &emf)
{
    qsizetype pos = 0;
    bool first = true;
    while (pos + 8 <= emf.size()) {
        const quint32 type = le32(emf, pos);
        const quint32 size = le32(emf, pos + 4);
        if (size < 8 || size % 4 != 0 || size > quint64(emf.size() - pos))
            return false;
        if (first && type != EmrHeader)
            return false;
        first = false;
        if (type == EmrEof)
            return true;
        pos += size;
    }
    return false;
}

// A text or a block that the header points to, when it lies within the header record.
bool holds(const QByteArray &emf, qsizetype offsetAt, qsizetype lengthAt, int unit)
{
    constexpr quint32 HeaderBase = 88;
    const quint64 offset = le32(emf, offsetAt);
    const quint64 length = quint64(le32(emf, lengthAt)) * quint64(unit);
    return offset >= HeaderBase && length > 0 && offset + length <= le32(emf, 4);
}

void clear(QByteArray &emf, qsizetype at)
{
    emf.replace(at, 4, QByteArray(4, '\0'));
}

// The converter reads the header's description to its end, as far as a terminating
// zero when its length is nought, and the pixel format, wherever the header points. What
// does not lie within the header record is dropped from the copy it gets: neither is
// drawn.
QByteArray headerForConverter(QByteArray emf)
{
    constexpr qsizetype DescriptionLengthAt = 60;
    constexpr qsizetype DescriptionAt = 64;
    constexpr qsizetype PixelFormatSizeAt = 88;
    constexpr qsizetype PixelFormatAt = 92;
    if (!holds(emf, DescriptionAt, DescriptionLengthAt, 2)) {
        clear(emf, DescriptionLengthAt);
        clear(emf, DescriptionAt);
    }
    if (le32(emf, 4) >= PixelFormatAt + 4 && !holds(emf, PixelFormatAt, PixelFormatSizeAt, 1)) {
        clear(emf, PixelFormatSizeAt);
        clear(emf, PixelFormatAt);
    }
    return emf;
}

} // namespace

QImage drawEnhancedMetafile(const QByteArray &emf, QSize size)
{
    if (!isEnhancedMetafile(emf) || !recordsHold(emf))
        return {};

    generatorOptions options {};
    char noPrefix[] = "";
    options.nameSpace = noPrefix; // plain element names, which Qt's SVG reader expects
    options.svgDelimiter = true;
    options.emfplus = true;
    // The converter reads from a buffer it may write to; it gets a copy.
    QByteArray data = headerForConverter(emf);
    char *svg = nullptr;
    size_t svgLength = 0;
    const int converted = emf2svg(data.data(), size_t(data.size()), &svg, &svgLength, &options);
    const QByteArray document(svg ? svg : "", svg ? qsizetype(svgLength) : 0);
    std::free(svg);
    if (converted != 1 || document.isEmpty())
        return {};

    QSvgRenderer renderer(document);
    if (!renderer.isValid())
        return {};
    if (!size.isValid() || size.isEmpty())
        size = enhancedMetafileSize(emf);
    if (!size.isValid() || size.isEmpty())
        size = renderer.defaultSize();
    if (!size.isValid() || size.isEmpty())
        return {};
    size = drawingSize(size);

    // What the metafile leaves undrawn is the paper's white, as for the other metafiles.
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    return picture;
}

} // namespace pictures
