#include "drawingtoolbar.h"

#include <programbitmaps.h>
#include <twips.h>

#include <QButtonGroup>
#include <QToolButton>

DrawingToolbar::DrawingToolbar(const QString &name, Qt::Orientation orientation, QWidget *parent)
    : QToolBar(parent)
{
    setObjectName(name);
    setOrientation(orientation);
    setMovable(false);
    setFloatable(false);
    setIconSize(QSize(20, 20));
    setToolButtonStyle(Qt::ToolButtonIconOnly);
}

DrawingToolbar::~DrawingToolbar() = default;

QToolButton *DrawingToolbar::addButton(
    const QString &key, const QString &picture, const QString &toolTip, Style style)
{
    auto *button = new QToolButton(this);
    button->setObjectName(key);
    button->setAutoRaise(true);
    // Reachable with Tab and pressed with Space; a click still leaves the focus on the
    // picture.
    button->setFocusPolicy(Qt::TabFocus);
    if (resources::exists(picture))
        button->setIcon(resources::LoadResIcon(picture));
    else
        button->setText(key);
    button->setToolTip(toolTip);
    // A picture key is read by its tip.
    button->setAccessibleName(toolTip);
    if (style == Style::Group) {
        if (!m_group) {
            m_group = new QButtonGroup(this);
            m_group->setExclusive(true);
        }
        button->setCheckable(true);
        m_group->addButton(button);
    }
    // A dropdown button's picture carries its small arrow, so the whole face is one
    // button and reports a click like the others.
    connect(button, &QToolButton::clicked, this, [this, key] { emit ButtonClick(key); });
    addWidget(button);
    m_buttons.insert(key, button);
    m_keys.append(key);
    return button;
}

int DrawingToolbar::Value(const QString &key) const
{
    const QToolButton *button = m_buttons.value(key);
    return button && button->isChecked() ? 1 : 0;
}

void DrawingToolbar::setValue(const QString &key, int value)
{
    if (QToolButton *button = m_buttons.value(key))
        button->setChecked(value == 1);
}

int DrawingToolbar::Width() const
{
    return platform::twipsFromPixelsX(width());
}

int DrawingToolbar::Height() const
{
    return platform::twipsFromPixelsY(height());
}
