#pragma once

#include <QAccessibleWidget>

class QPainter;
class QWidget;

// What screen readers hear of the program's own controls. Qt knows its standard widgets;
// a picture button or a tile is a plain QWidget to it and would be read as an unnamed
// "filler". A widget marked pressable is read as a push button instead, named by its
// accessible name or else its tool tip, and its press action calls the widget's
// invokable accessiblePress().
namespace controls {

// Installs the interface factory once; every pressable control calls it when made, so
// neither the program nor a test has to remember it.
void installAccessibility();

// Installs a factory of screen-reader interfaces once, however often its windows ask.
void installFactoryOnce(QAccessible::InterfaceFactory factory);

// Gives a plain widget a role for screen readers (a canvas, a pane), with its name.
void setAccessibleRole(QWidget *widget, QAccessible::Role role, const QString &name);

// Marks a widget as a push button for screen readers (and installs the factory).
void makePressable(QWidget *widget);
bool isPressable(const QObject *object);

// Draws the style's focus frame inside `widget` when it has the keyboard focus, as the
// style draws it on its own buttons.
void drawFocusFrame(QPainter &painter, const QWidget *widget);

class PressableAccessible final : public QAccessibleWidget
{
public:
    explicit PressableAccessible(QWidget *widget);
    QString text(QAccessible::Text t) const override;
    QStringList actionNames() const override;
    void doAction(const QString &actionName) override;
    QStringList keyBindingsForAction(const QString &actionName) const override;
};

} // namespace controls
