#pragma once

#include <QWidget>

namespace controls {

// The style's focus frame over a widget whose own children cover it (a tile is all
// picture): a see-through layer on top that draws the frame while the widget has the
// keyboard focus. Clicks pass through it.
// Whether a focus change came from the keyboard (Tab, Shift+Tab, a shortcut or arrow).
bool byKeyboard(Qt::FocusReason reason);

class FocusFrame final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FocusFrame)

public:
    explicit FocusFrame(QWidget *target);
    ~FocusFrame() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QWidget *m_target;
};

} // namespace controls
