#include "photolayout.h"

#include <twips.h>

#include <algorithm>

namespace photolayout {

int contentWidth(int pictureWidthPixels)
{
    return std::max(MinimumContentPixels, pictureWidthPixels) * platform::TwipsPerPixelX;
}

Layout layOut(int pictureWidthPixels, int pictureHeightPixels, int captionHeight, int legendHeight,
    const Frames &frames)
{
    Layout l;
    const int content = contentWidth(pictureWidthPixels);
    const int panelWidth = content + PanelPadding;
    const int panelScaleWidth = panelWidth - frames.panelHorizontal;

    l.caption = QRect((panelScaleWidth - content) / 2, Gap, content, captionHeight);
    const int imageWidth = pictureWidthPixels * platform::TwipsPerPixelX;
    const int imageHeight = pictureHeightPixels * platform::TwipsPerPixelY;
    l.image = QRect(
        (panelScaleWidth - imageWidth) / 2, l.caption.top() + captionHeight + Gap, imageWidth, imageHeight);
    l.legend = QRect(l.caption.left(), l.image.top() + imageHeight + Gap, content, legendHeight);

    const int panelHeight = legendHeight + l.legend.top() + frames.panelVertical + Gap;
    l.panel = QRect(0, 0, panelWidth, panelHeight);
    l.windowWidth = panelWidth + 2 * frames.panelHorizontal;
    l.windowHeight = frames.window + panelHeight + frames.panelVertical;
    return l;
}

int fittedHeight(int lineCount, int lineHeight)
{
    return lineHeight * std::min(lineCount, MaxLegendLines);
}

Enlarged enlarge(int areaWidth, int areaHeight, int bitmapWidth, int bitmapHeight)
{
    Enlarged e;
    if (bitmapWidth <= 0 || bitmapHeight <= 0)
        return e;
    const double byHeight = double(areaHeight) / bitmapHeight;
    const double byWidth = double(areaWidth) / bitmapWidth;
    float factor = float(byHeight < byWidth ? byHeight : byWidth);
    factor = factor * 0.975f;
    e.factor = factor;
    const int w = int(double(factor) * bitmapWidth);
    const int h = int(double(factor) * bitmapHeight);
    e.rect = QRect(int((areaWidth - w) / 2.0), int((areaHeight - h) / 2.0), w, h);
    return e;
}

} // namespace photolayout
