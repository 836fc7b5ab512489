#include "windowsystem.h"

QByteArray windowSystemChoice(const QByteArray &waylandDisplay, const QByteArray &userChoice)
{
    if (waylandDisplay.isEmpty() || !userChoice.isEmpty())
        return {};
    return QByteArrayLiteral("xcb;wayland");
}

void chooseWindowSystem()
{
    const QByteArray choice = windowSystemChoice(qgetenv("WAYLAND_DISPLAY"), qgetenv("QT_QPA_PLATFORM"));
    if (!choice.isEmpty())
        qputenv("QT_QPA_PLATFORM", choice);
}
