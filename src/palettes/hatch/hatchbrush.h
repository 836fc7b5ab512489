#pragma once

#include <QBrush>
#include <QColor>
#include <QImage>

#include <array>
#include <cstdint>

// The hatched brushes of the drawing surface's fill styles, pixel for pixel as the
// Windows hatch brushes lay them: an 8 × 8 tile, repeated from the device origin, whose
// set bits take the hatch colour and whose clear bits the background (or nothing, when
// the background is transparent).
//
// Hatch indices are those of CreateHatchBrush; fill styles those of a picture box's
// FillStyle. Both are used by the fill-style palette and by the drawing tools, so that
// what the pupil picks is exactly what the shape gets.
namespace hatch {

// Hatch indices.
enum Index : int {
    Horizontal = 0, // ----
    Vertical = 1, // ||||
    ForwardDiagonal = 2, // \\\\ : down from left to right
    BackwardDiagonal = 3, // //// : up from left to right
    Cross = 4, // ++++
    DiagonalCross = 5, // xxxx
};

// Fill styles of the drawing surface.
enum FillStyle : int {
    vbFSSolid = 0,
    vbFSTransparent = 1,
    vbHorizontalLine = 2,
    vbVerticalLine = 3,
    vbUpwardDiagonal = 4,
    vbDownwardDiagonal = 5,
    vbCross = 6,
    vbDiagonalCross = 7,
};

inline constexpr int TileSize = 8;

// Whether the index names one of the six patterns. Any other index paints solid in the
// hatch colour, as the fill-style palette's first cell relies on (index 8).
constexpr bool isPattern(int index)
{
    return index >= Horizontal && index <= DiagonalCross;
}

// The tile's eight rows, top first; bit 7 is the leftmost pixel, a set bit is hatch
// colour. All bits set for an index that is no pattern.
std::array<std::uint8_t, TileSize> rows(int index);

// Whether the pixel (x, y) of a surface filled from its origin takes the hatch colour.
// Negative coordinates repeat the tile as positive ones do.
bool isHatchPixel(int index, int x, int y);

// The 8 × 8 tile itself, ARGB32: hatch colour on the background colour, which may be
// Qt::transparent.
QImage tile(int index, const QColor &hatchColour, const QColor &background = Qt::transparent);

// A brush of that pattern. A texture brush is laid from the painter's brush origin, so
// keep that at the surface's (0, 0), which is the default, for the pattern to meet
// neighbouring fills without a seam. Solid for an index that is no pattern.
QBrush brush(int index, const QColor &hatchColour, const QColor &background = Qt::transparent);

// The hatch index of a fill style: 2 → Horizontal ... 7 → DiagonalCross; -1 for solid,
// transparent and anything else.
constexpr int indexOfFillStyle(int fillStyle)
{
    return fillStyle >= vbHorizontalLine && fillStyle <= vbDiagonalCross ? fillStyle - vbHorizontalLine : -1;
}

// The brush a shape is filled with for a fill style and fill colour: solid for 0, no brush
// for 1 (transparent) and for an unknown style, the hatch for 2 to 7 with its gaps left as
// they are or painted in the background colour given.
QBrush fillStyleBrush(int fillStyle, const QColor &fillColour, const QColor &background = Qt::transparent);

// A colour value 0x00BBGGRR as a colour; the top byte is ignored.
constexpr QRgb rgbOfValue(quint32 value)
{
    return qRgb(int(value & 0xFF), int((value >> 8) & 0xFF), int((value >> 16) & 0xFF));
}
inline QColor colourOfValue(quint32 value)
{
    return QColor::fromRgb(rgbOfValue(value));
}

// The value 0x00BBGGRR of a colour.
constexpr quint32 valueOfRgb(QRgb rgb)
{
    return quint32(qRed(rgb)) | (quint32(qGreen(rgb)) << 8) | (quint32(qBlue(rgb)) << 16);
}
inline quint32 valueOfColour(const QColor &colour)
{
    return valueOfRgb(colour.rgb());
}

} // namespace hatch
