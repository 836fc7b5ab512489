#pragma once

#include <QHash>
#include <QToolBar>

class QButtonGroup;
class QToolButton;

// A bar of picture buttons known by their keys, as the drawing window's two toolbars
// are: plain command buttons, buttons of one group of which one stays pressed, and
// dropdown buttons, which report a click like the others so that the window drops
// their palette down.
class DrawingToolbar final : public QToolBar
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DrawingToolbar)

public:
    enum class Style { Plain, Group, Dropdown };

    DrawingToolbar(const QString &name, Qt::Orientation orientation, QWidget *parent);
    ~DrawingToolbar() override;

    // A button with its picture (a name of the program's pictures), its tool tip
    // (none when empty) and its style.
    QToolButton *addButton(const QString &key, const QString &picture, const QString &toolTip, Style style);
    QToolButton *Buttons(const QString &key) const { return m_buttons.value(key); }
    QStringList keys() const { return m_keys; }

    // A group button's value: 1 pressed, 0 not.
    int Value(const QString &key) const;
    void setValue(const QString &key, int value);

    // Width and height in twips.
    int Width() const;
    int Height() const;

signals:
    void ButtonClick(const QString &key);

private:
    QHash<QString, QToolButton *> m_buttons;
    QStringList m_keys;
    QButtonGroup *m_group = nullptr;
};
