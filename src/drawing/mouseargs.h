#pragma once

#include <twips.h>

#include <QMouseEvent>

// The arguments a mouse handler of the painter's windows takes: the button as 1 left,
// 2 right, 4 middle; the shift state as 1 shift, 2 control, 4 alt; the position in
// twips.
namespace drawing {

inline int buttonOf(Qt::MouseButtons buttons)
{
    return (buttons & Qt::LeftButton ? 1 : 0) | (buttons & Qt::RightButton ? 2 : 0)
        | (buttons & Qt::MiddleButton ? 4 : 0);
}

inline int shiftOf(Qt::KeyboardModifiers modifiers)
{
    return (modifiers & Qt::ShiftModifier ? 1 : 0) | (modifiers & Qt::ControlModifier ? 2 : 0)
        | (modifiers & Qt::AltModifier ? 4 : 0);
}

inline double twipsX(const QMouseEvent *event)
{
    return platform::twipsFromPixelsX(qRound(event->position().x()));
}

inline double twipsY(const QMouseEvent *event)
{
    return platform::twipsFromPixelsY(qRound(event->position().y()));
}

} // namespace drawing
