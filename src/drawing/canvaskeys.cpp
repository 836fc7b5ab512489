#include "canvaskeys.h"

#include <twips.h>

#include <QKeyEvent>
#include <QScrollBar>
#include <QWidget>

namespace {

// Moves a bar by `by` in its own units (twips); a hidden bar stays where it is. True, as
// the key is used up either way.
bool moveBy(QScrollBar *bar, int by)
{
    if (!bar->isHidden())
        bar->setValue(bar->value() + by);
    return true;
}

// Moves a bar to its start or its end.
void moveToEdge(QScrollBar *bar, bool start)
{
    if (!bar->isHidden())
        bar->setValue(start ? bar->minimum() : bar->maximum());
}

} // namespace

CanvasScrollKeys::CanvasScrollKeys(QWidget *canvas, QScrollBar *horizontal, QScrollBar *vertical)
    : QObject(canvas)
    , m_canvas(canvas)
    , m_horizontal(horizontal)
    , m_vertical(vertical)
{
    canvas->installEventFilter(this);
}

bool CanvasScrollKeys::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_canvas && event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (scroll(key->key(), key->modifiers() & ~Qt::KeypadModifier)) {
            key->accept();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

bool CanvasScrollKeys::scroll(int key, Qt::KeyboardModifiers modifiers)
{
    const int stepX = platform::twipsFromPixelsX(StepPixels);
    const int stepY = platform::twipsFromPixelsY(StepPixels);
    // A page is what the window shows, less a step, so that a line of the old page stays
    // in sight to read on from.
    const int pageX = qMax(stepX, platform::twipsFromPixelsX(m_canvas->width()) - stepX);
    const int pageY = qMax(stepY, platform::twipsFromPixelsY(m_canvas->height()) - stepY);
    const bool plain = modifiers == Qt::NoModifier;
    const bool back
        = key == Qt::Key_Left || key == Qt::Key_Up || key == Qt::Key_PageUp || key == Qt::Key_Home;
    const int sign = back ? -1 : 1;

    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        return plain && moveBy(m_horizontal, sign * stepX);
    case Qt::Key_Up:
    case Qt::Key_Down:
        return plain && moveBy(m_vertical, sign * stepY);
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (plain)
            return moveBy(m_vertical, sign * pageY);
        return modifiers == Qt::ShiftModifier && moveBy(m_horizontal, sign * pageX);
    case Qt::Key_Home:
    case Qt::Key_End:
        if (!plain && modifiers != Qt::ControlModifier)
            return false;
        moveToEdge(m_horizontal, back);
        if (!plain)
            moveToEdge(m_vertical, back);
        return true;
    default:
        return false;
    }
}
