#pragma once

// Reads a window as a screen reader does, through Qt's accessibility interfaces: every
// object below it, and the ones a pupil can give the focus to that have no name or no
// role a reader can say.

#include <QAccessible>
#include <QSet>
#include <QStringList>
#include <QWidget>

namespace testing {

inline QString describe(QAccessibleInterface *iface)
{
    QString what = QStringLiteral("role %1 «%2»").arg(int(iface->role())).arg(iface->text(QAccessible::Name));
    if (QObject *o = iface->object())
        what += QStringLiteral(" (%1 %2)")
                    .arg(QString::fromLatin1(o->metaObject()->className()), o->objectName());
    else if (QAccessibleInterface *parent = iface->parent(); parent && parent != iface)
        what += QStringLiteral(" in ") + describe(parent);
    return what;
}

template<typename Visit> void walkAccessible(QAccessibleInterface *iface, Visit visit, int depth = 0)
{
    static thread_local QSet<QAccessibleInterface *> *seen = nullptr;
    QSet<QAccessibleInterface *> local;
    if (depth == 0)
        seen = &local;
    if (!iface || !iface->isValid() || depth > 40 || seen->contains(iface))
        return;
    seen->insert(iface);
    visit(iface);
    const int count = iface->childCount();
    for (int i = 0; i < count; ++i)
        walkAccessible(iface->child(i), visit, depth + 1);
    if (depth == 0)
        seen = nullptr;
}

// The focusable, showing objects below the widget without a name or a sayable role.
inline QStringList namelessFocusable(QWidget *window)
{
    QStringList problems;
    walkAccessible(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface *iface) {
        const QAccessible::State state = iface->state();
        if (!state.focusable || state.invisible || state.offscreen)
            return;
        const QAccessible::Role role = iface->role();
        const bool sayable = role != QAccessible::NoRole && role != QAccessible::Client;
        if (!sayable || iface->text(QAccessible::Name).trimmed().isEmpty())
            problems << describe(iface);
    });
    return problems;
}

// Every object below the widget with this role.
inline QList<QAccessibleInterface *> withRole(QWidget *window, QAccessible::Role role)
{
    QList<QAccessibleInterface *> found;
    walkAccessible(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface *iface) {
        if (iface->role() == role)
            found << iface;
    });
    return found;
}

} // namespace testing
