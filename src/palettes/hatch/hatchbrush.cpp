#include "hatchbrush.h"

namespace hatch {

namespace {

constexpr std::array<std::array<std::uint8_t, TileSize>, 6> Patterns {{
    {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xFF}, // Horizontal
    {0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08}, // Vertical
    {0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01}, // ForwardDiagonal
    {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80}, // BackwardDiagonal
    {0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0xFF}, // Cross
    {0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81}, // DiagonalCross
}};

constexpr int wrap(int v)
{
    return ((v % TileSize) + TileSize) % TileSize;
}

} // namespace

std::array<std::uint8_t, TileSize> rows(int index)
{
    if (!isPattern(index)) {
        std::array<std::uint8_t, TileSize> solid {};
        solid.fill(0xFF);
        return solid;
    }
    return Patterns[std::size_t(index)];
}

bool isHatchPixel(int index, int x, int y)
{
    if (!isPattern(index))
        return true;
    return (Patterns[std::size_t(index)][std::size_t(wrap(y))] >> (7 - wrap(x))) & 1;
}

QImage tile(int index, const QColor &hatchColour, const QColor &background)
{
    QImage image(TileSize, TileSize, QImage::Format_ARGB32);
    const QRgb fore = hatchColour.rgba();
    const QRgb back = background.rgba();
    for (int y = 0; y < TileSize; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < TileSize; ++x)
            line[x] = isHatchPixel(index, x, y) ? fore : back;
    }
    return image;
}

QBrush brush(int index, const QColor &hatchColour, const QColor &background)
{
    if (!isPattern(index))
        return QBrush(hatchColour);
    return QBrush(tile(index, hatchColour, background));
}

QBrush fillStyleBrush(int fillStyle, const QColor &fillColour, const QColor &background)
{
    if (fillStyle == vbFSSolid)
        return QBrush(fillColour);
    const int index = indexOfFillStyle(fillStyle);
    if (index < 0)
        return QBrush(Qt::NoBrush);
    return brush(index, fillColour, background);
}

} // namespace hatch
