#include "tipgeometry.h"

#include <twips.h>

#include <QFontMetrics>

#include <cstdlib>

namespace tipgeometry {

int textWidthLimit(qsizetype length)
{
    if (length >= 1 && length <= 200)
        return 200;
    if (length >= 201 && length <= 400)
        return 300;
    return 400;
}

namespace {

// The text's block as the system measures it: the top-left stays, the size is the
// wrapped text's.
QRect measure(const QFontMetrics &metrics, const QString &text, int right)
{
    const QRect bounds
        = metrics.boundingRect(QRect(0, 0, right, 0), Qt::TextWordWrap | Qt::AlignHCenter, text);
    return QRect(0, 0, bounds.width(), bounds.height());
}

} // namespace

Layout layOut(const QFontMetrics &metrics, const QString &text, QSize picture)
{
    Layout l;
    l.hasText = !text.isEmpty();
    l.hasPicture = !picture.isEmpty();
    if (!l.hasText && !l.hasPicture)
        return l;
    l.empty = false;
    const int limit = textWidthLimit(text.size());
    if (l.hasPicture && l.hasText) {
        l.picture = QRect(0, 0, picture.width(), picture.height());
        l.text = measure(metrics, text, std::max(picture.width(), limit));
        l.text.translate(Margin, Margin);
        l.picture.translate(Margin, std::abs(l.text.bottom() + 1) + Margin);
        l.all = l.text.united(l.picture);
    } else if (l.hasPicture) {
        l.picture = QRect(Margin, Margin, picture.width(), picture.height());
        l.all = l.picture;
    } else {
        l.text = measure(metrics, text, limit).translated(Margin, Margin);
        l.all = l.text;
    }
    // QRect's right and bottom are the last pixel inside; the system's are one behind.
    l.widthTwips = std::abs(l.all.right() + 1 + Margin) * platform::TwipsPerPixelX;
    l.heightTwips = std::abs(l.all.bottom() + 1 + Margin) * platform::TwipsPerPixelY;
    return l;
}

QPoint place(int tipLeft, int tipTop, int widthTwips, int heightTwips, QSize screenTwips)
{
    int left = tipLeft - widthTwips / 2;
    if (left + widthTwips > screenTwips.width())
        left = screenTwips.width() - widthTwips;
    if (left < 0)
        left = 0;
    int top = tipTop + BelowMouse;
    if (screenTwips.height() - BottomStrip < top + heightTwips)
        top = screenTwips.height() - heightTwips - BottomStrip;
    if (top < 0)
        top = 0;
    return QPoint(left, top);
}

QRegion body(int w, int h)
{
    return QRegion(0, 0, w, h);
}

QRegion shadow(int w, int h)
{
    return body(w, h).translated(ShadowOffset, ShadowOffset).subtracted(body(w, h));
}

QRegion outline(int w, int h)
{
    return body(w, h).united(body(w, h).translated(ShadowOffset, ShadowOffset));
}

} // namespace tipgeometry
