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

constexpr char RoleProperty[] = "tremidiaAccessibleRole";

// The nearest of Qt's own classes above ours.
const QMetaObject *qtBase(const QMetaObject *meta)
{
    while (meta && !QByteArray(meta->className()).startsWith('Q'))
        meta = meta->superClass();
    return meta;
}

QAccessibleInterface *factory(const QString &className, QObject *object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    auto *widget = static_cast<QWidget *>(object);
    if (isPressable(object))
        return new PressableAccessible(widget);
    const QVariant role = object->property(RoleProperty);
    if (role.isValid())
        return new QAccessibleWidget(widget, QAccessible::Role(role.toInt()));
    // The program's own windows are plain widgets to Qt, which reads them as a "client";
    // a reader must hear a window named by its caption.
    if (widget->isWindow() && className == QLatin1String(object->metaObject()->className())
        && qtBase(object->metaObject()) == &QWidget::staticMetaObject)
        return new QAccessibleWidget(widget, QAccessible::Window);
    return nullptr;
}

} // namespace

void installFactoryOnce(QAccessible::InterfaceFactory factory)
{
    // Qt keeps the one list of factories and passes over a factory it has already.
    QAccessible::installFactory(factory);
}

void installAccessibility()
{
    installFactoryOnce(factory);
}

void setAccessibleRole(QWidget *widget, QAccessible::Role role, const QString &name)
{
    installAccessibility();
    widget->setProperty(RoleProperty, int(role));
    widget->setAccessibleName(name);
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
