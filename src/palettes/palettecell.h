#pragma once

#include <QColor>
#include <QPoint>
#include <QRect>
#include <QtGlobal>

class QPainter;

// One cell of a palette: its rectangle in pixels of the window's client area, right and
// bottom edges outside it as the window system's rectangles have them, and the one value
// it stands for (a colour 0x00BBGGRR, a fill style, a line width).
struct PaletteCell
{
    qint32 Left = 0;
    qint32 Top = 0;
    qint32 Right = 0;
    qint32 Bottom = 0;
    quint32 Color = 0;

    static PaletteCell fromEdges(int left, int top, int right, int bottom, quint32 value = 0)
    {
        return {left, top, right, bottom, value};
    }

    // Left and top edges belong to the cell, right and bottom don't.
    bool contains(QPoint p) const { return p.x() >= Left && p.x() < Right && p.y() >= Top && p.y() < Bottom; }
    // The cell grown by d pixels on every side (shrunk for a negative d).
    PaletteCell inflated(int d) const { return {Left - d, Top - d, Right + d, Bottom + d, Color}; }
    QRect rect() const { return QRect(Left, Top, Right - Left, Bottom - Top); }
};

// The one-pixel edges that mark a palette's cells: raised under the pointer, sunken on the
// chosen cell. Light above and to the left of a raised cell, dark below and to the right;
// the other way round for a sunken one.
namespace paletteedge {

enum class Kind { Raised, Sunken };

inline const QColor Highlight {255, 255, 255};
inline const QColor Shadow {128, 128, 128};

void draw(QPainter &painter, const QRect &rect, Kind kind);

} // namespace paletteedge
