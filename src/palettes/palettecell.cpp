#include "palettecell.h"

#include <QPainter>

namespace paletteedge {

void draw(QPainter &painter, const QRect &r, Kind kind)
{
    if (r.width() <= 0 || r.height() <= 0)
        return;
    const QColor &upperLeft = kind == Kind::Raised ? Highlight : Shadow;
    const QColor &lowerRight = kind == Kind::Raised ? Shadow : Highlight;
    // The lower and right lines are drawn last and take the two far corners.
    painter.fillRect(QRect(r.left(), r.top(), r.width() - 1, 1), upperLeft);
    painter.fillRect(QRect(r.left(), r.top(), 1, r.height() - 1), upperLeft);
    painter.fillRect(QRect(r.left(), r.bottom(), r.width(), 1), lowerRight);
    painter.fillRect(QRect(r.right(), r.top(), 1, r.height()), lowerRight);
}

} // namespace paletteedge
