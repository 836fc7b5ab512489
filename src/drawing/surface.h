#pragma once

#include <hatchbrush.h>

#include <QFont>
#include <QImage>
#include <QRgb>
#include <QString>

// The pixel operations of the painter's canvas, on a 32-bit image: lines of a given
// width, rectangles and ellipses with an outline and a fill, the flood fill over the
// seed colour's surface, and text. They draw whole pixels without smoothing, so that a
// fill finds the edges of what was drawn and the pupil's picture keeps crisp colours.
// Colours are the program's 32-bit values 0x00BBGGRR.
namespace drawing {

// The fill patterns of the canvas, by their numbers; the hatches are those of the
// fill-style palette.
enum FillStyle : int {
    Solid = hatch::vbFSSolid,
    Transparent = hatch::vbFSTransparent,
    HorizontalLine = hatch::vbHorizontalLine,
    VerticalLine = hatch::vbVerticalLine,
    UpwardDiagonal = hatch::vbUpwardDiagonal,
    DownwardDiagonal = hatch::vbDownwardDiagonal,
    Cross = hatch::vbCross,
    DiagonalCross = hatch::vbDiagonalCross,
};

QRgb rgbOf(quint32 color);
quint32 colorOf(QRgb rgb);

// What fills an area: a colour and a pattern. A hatch paints only its lines and leaves
// the pixels between them as they were; a transparent brush paints nothing.
struct Brush
{
    int style = Solid;
    quint32 color = 0;

    bool paintsNothing() const;
    // Whether the pattern covers the pixel; the pattern is fixed to the picture's
    // corner, so neighbouring fills line up.
    bool covers(int x, int y) const;
};

// What draws outlines: a colour and a width in pixels (below 1 counts as 1).
struct Pen
{
    quint32 color = 0;
    int width = 1;
};

// A line from (x1, y1) to (x2, y2), both ends included; a wide pen draws round ends.
void drawLine(QImage &image, int x1, int y1, int x2, int y2, const Pen &pen);

// The box from (left, top) to (right, bottom), right and bottom excluded: the area
// inside filled with the brush, then the outline centred on the box's edge pixels.
void drawRectangle(
    QImage &image, int left, int top, int right, int bottom, const Pen &pen, const Brush &brush);

// The ellipse inscribed in the same box, filled and outlined alike.
void drawEllipse(QImage &image, int left, int top, int right, int bottom, const Pen &pen, const Brush &brush);

// Fills with the brush every pixel of the colour `seedColor` that is joined to (x, y)
// by pixels of that colour, side by side. Does nothing when (x, y) is outside the
// picture or has another colour. Returns whether it filled.
bool floodFillSurface(QImage &image, int x, int y, quint32 seedColor, const Brush &brush);

// The colour of a pixel, or -1 outside the picture.
qint64 pointColor(const QImage &image, int x, int y);

// Writes one line of text with its top left corner at (x, y), in the colour, leaving
// the background as it is.
void drawText(QImage &image, int x, int y, const QFont &font, quint32 color, const QString &text);

// A picture in the canvas's own format, of the colour given. Raises the out-of-memory
// error when there is no room for it.
QImage blankImage(QSize size, quint32 color);

// The platform's error 7: a picture too large for the memory left.
inline constexpr int OutOfMemory = 7;
[[noreturn]] void throwOutOfMemory();

} // namespace drawing
