#pragma once

#include <QObject>

class QScrollBar;
class QWidget;

// Scrolls a picture larger than its window by keys while the window's canvas has the
// focus: an arrow moves a step, Page Up and Page Down a window's height (with Shift, its
// width), Home and End to the left and right edge, Ctrl+Home and Ctrl+End to the top
// left and the bottom right corner, as a text box moves through its lines. The scroll
// bars keep the position, so a key moves the picture just as dragging a bar does; a
// direction whose bar is hidden (the picture fits) does not move.
class CanvasScrollKeys final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CanvasScrollKeys)

public:
    // Watches the canvas's keys; lives as long as the canvas.
    CanvasScrollKeys(QWidget *canvas, QScrollBar *horizontal, QScrollBar *vertical);

    // An arrow's step, in pixels, as a scroll area takes it.
    static constexpr int StepPixels = 20;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // True when the key is one of the scrolling keys (it is then used up, moved or not).
    bool scroll(int key, Qt::KeyboardModifiers modifiers);

    QWidget *const m_canvas;
    QScrollBar *const m_horizontal;
    QScrollBar *const m_vertical;
};
