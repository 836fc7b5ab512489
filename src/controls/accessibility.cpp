#include "accessibility.h"

#include <QAccessible>
#include <QMetaObject>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QWidget>

namespace controls {

namespace {

constexpr char PressableProperty[] = "tremidiaPressable";

QAccessibleInterface *factory(const QString &, QObject *object)
{
    if (!object || !object->isWidgetType() || !isPressable(object))
        return nullptr;
    return new PressableAccessible(static_cast<QWidget *>(object));
}

} // namespace

void installAccessibility()
{
    static const bool installed = [] {
        QAccessible::installFactory(factory);
        return true;
    }();
    Q_UNUSED(installed);
}

void makePressable(QWidget *widget)
{
    installAccessibility();
    widget->setProperty(PressableProperty, true);
}

bool isPressable(const QObject *object)
{
    return object && object->property(PressableProperty).toBool();
}

void drawFocusFrame(QPainter &painter, const QWidget *widget)
{
    if (!widget->hasFocus())
        return;
    QStyleOptionFocusRect option;
    option.initFrom(widget);
    option.state |= QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    option.rect = widget->rect().adjusted(1, 1, -1, -1);
    option.backgroundColor = widget->palette().color(widget->backgroundRole());
    widget->style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, widget);
}

PressableAccessible::PressableAccessible(QWidget *widget)
    : QAccessibleWidget(widget, QAccessible::PushButton)
{
}

QString PressableAccessible::text(QAccessible::Text t) const
{
    switch (t) {
    case QAccessible::Name:
        // The tip is the only words a picture button has.
        return widget()->accessibleName().isEmpty() ? widget()->toolTip() : widget()->accessibleName();
    case QAccessible::Description:
        return widget()->accessibleDescription();
    default:
        return QAccessibleWidget::text(t);
    }
}

QStringList PressableAccessible::actionNames() const
{
    QStringList names;
    if (widget()->isEnabled())
        names << pressAction();
    names << QAccessibleWidget::actionNames();
    return names;
}

void PressableAccessible::doAction(const QString &actionName)
{
    if (actionName == pressAction()) {
        if (widget()->isEnabled())
            QMetaObject::invokeMethod(widget(), "accessiblePress", Qt::DirectConnection);
        return;
    }
    QAccessibleWidget::doAction(actionName);
}

QStringList PressableAccessible::keyBindingsForAction(const QString &actionName) const
{
    if (actionName == pressAction())
        return {QStringLiteral("Space")};
    return QAccessibleWidget::keyBindingsForAction(actionName);
}

} // namespace controls
