#pragma once

#include <QColor>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QPixmap>
#include <QWidget>

// Plain one-colour faces, so that a grab of the button tells which face shows.
inline QPixmap solidFace(const QColor &colour, QSize size = QSize(40, 30))
{
    QPixmap pix(size);
    pix.fill(colour);
    return pix;
}

inline QColor shownColour(QWidget &widget, QPoint at = QPoint(5, 5))
{
    return widget.grab().toImage().pixelColor(at);
}

// Delivers a mouse event straight to the widget, wherever the point is, as the window
// system does while a button holds the pointer.
inline void sendMouse(QWidget &widget, QEvent::Type type, QPointF at, Qt::MouseButton button,
    Qt::MouseButtons held, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QMouseEvent event(type, at, widget.mapToGlobal(at), button, held, modifiers);
    QCoreApplication::sendEvent(&widget, &event);
}
