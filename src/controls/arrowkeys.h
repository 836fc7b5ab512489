#pragma once

#include <QPoint>
#include <QtGlobal>

namespace controls {

// Where a point lies as seen along an arrow key: how far ahead, and how far off to the
// side. Tiles and palette cells pick their neighbour for an arrow from these two.
struct ArrowOffset
{
    qint64 along = 0;
    qint64 across = 0;
};

inline ArrowOffset arrowOffset(int key, QPoint d)
{
    switch (key) {
    case Qt::Key_Right:
        return {d.x(), d.y()};
    case Qt::Key_Left:
        return {-d.x(), d.y()};
    case Qt::Key_Down:
        return {d.y(), d.x()};
    default:
        return {-d.y(), d.x()};
    }
}

} // namespace controls
