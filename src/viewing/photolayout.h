#pragma once

#include <QRect>

// The arithmetic of the photo viewer and its enlarged view, apart from the windows.
// Lengths are twips unless a name says pixels.
namespace photolayout {

inline constexpr int MinimumContentPixels = 400;
inline constexpr int PanelPadding = 240; // added to the content's width
inline constexpr int Gap = 120; // above the caption, and between the parts
inline constexpr int MaxLegendLines = 8;
inline constexpr quint32 PanelColor = 0xAFE0FF; // RGB(255, 224, 175)

// The width of the panel's content: the picture's, but never under 400 pixels.
int contentWidth(int pictureWidthPixels);

struct Frames
{
    int panelHorizontal = 0; // panel's Width - ScaleWidth
    int panelVertical = 0; // panel's Height - ScaleHeight
    int window = 0; // window's Height - ScaleHeight
};

struct Layout
{
    QRect panel; // in the window's client area
    QRect caption; // these three in the panel's inner area
    QRect image;
    QRect legend;
    int windowWidth = 0; // outer size, also the window's minimum
    int windowHeight = 0;
};

// Places caption, picture and legend one under the other, centred in the panel. The
// caption and legend heights are their fitted heights (0 for an empty one).
Layout layOut(int pictureWidthPixels, int pictureHeightPixels, int captionHeight, int legendHeight,
    const Frames &frames);

// The height that shows a rich text of that many lines, at most eight, in lines of
// that height.
int fittedHeight(int lineCount, int lineHeight);

// The enlarged view: the picture of bw by bh pixels fitted into an area of W by H
// pixels, keeping its proportions, with 2.5 % spare on the tighter side.
struct Enlarged
{
    float factor = 0;
    QRect rect; // pixels
};
Enlarged enlarge(int areaWidth, int areaHeight, int bitmapWidth, int bitmapHeight);

} // namespace photolayout
