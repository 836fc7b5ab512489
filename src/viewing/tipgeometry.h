#pragma once

#include <QPoint>
#include <QRect>
#include <QRegion>
#include <QSize>
#include <QString>

#include <memory>

class QFont;
class QFontMetrics;
class QTextLayout;

// The measuring, placing and shaping of the popup tip, apart from its window so that
// every number can be checked on its own. Rectangles are in pixels relative to the tip,
// positions on the screen in twips.
namespace tipgeometry {

inline constexpr int Margin = 12; // around and between text and picture, pixels
inline constexpr int ShadowOffset = 10; // pixels to the right and down
inline constexpr int Enlargement = 20; // pixels added to the window for the shadow
inline constexpr int BelowMouse = 200; // twips
inline constexpr int BottomStrip = 450; // twips kept free at the screen's bottom
inline constexpr quint32 FrameColor = 0x333333; // RGB(51, 51, 51)
inline constexpr quint32 ShadowColor = 0x808080; // RGB(128, 128, 128)

// The width the text wraps at, by its length: 200, 300 or 400 pixels.
int textWidthLimit(qsizetype length);

struct Layout
{
    bool empty = true; // neither text nor picture: nothing is laid out
    bool hasText = false;
    bool hasPicture = false;
    QRect text; // where the text is drawn, word-wrapped
    QRect picture; // where the picture stands at its natural size
    QRect all; // their union
    int widthTwips = 0; // the window, before the shadow's enlargement
    int heightTwips = 0;
};

// Lays out the text (measured word-wrapped and centred, as it will be wrapped) and a
// picture of the given size (empty size: no picture).
Layout layOut(const QFontMetrics &metrics, const QString &text, QSize picture);

// The top-left corner of the window in twips: centred on the mouse and below it, kept on
// the screen and out of its bottom strip.
QPoint place(int tipLeft, int tipTop, int widthTwips, int heightTwips, QSize screenTwips);

// The tip's own rectangle, its shadow, and the window's shape (both), for a tip of
// w by h pixels before the enlargement.
QRegion body(int w, int h);
QRegion shadow(int w, int h);
QRegion outline(int w, int h);

// The text in lines exactly as QPainter draws it word-wrapped, left and top aligned, in
// a block of that width: the same breaks, the same line positions (relative to the
// block's top-left), so that a stretch of it can be found on the painted tip.
std::unique_ptr<QTextLayout> textLines(const QFont &font, const QString &text, int width);

// Where the characters from `start`, `length` of them, stand in those lines: one
// rectangle a line, the lines' full height, relative to the block's top-left.
QRegion stretchArea(const QTextLayout &lines, int start, int length);

} // namespace tipgeometry
