#include "host.h"

#include "msgbox.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>

namespace platform {

namespace {

// The one mutable pointer of the host: set by a session's HostScope, for its lifetime.
Host *g_active = nullptr;

} // namespace

Host::~Host() = default;

Host *Host::active()
{
    return g_active;
}

int DesktopHost::messageBox(const QString &text, int style, const QString &title, QWidget *parent)
{
    return showMessageBox(text, style, title, parent);
}

LaunchResult DesktopHost::launch(
    const QString &program, const QStringList &arguments, const QString &workingDirectory)
{
    return launchDetached(program, arguments, workingDirectory);
}

void DesktopHost::end()
{
    // Leave the event loop without closing windows one by one, so no window's close
    // handling runs on the way out.
    for (QWidget *w : QApplication::topLevelWidgets())
        w->hide();
    QCoreApplication::exit(0);
}

QDateTime DesktopHost::now() const
{
    return QDateTime::currentDateTime();
}

void DesktopHost::delay(int milliseconds, QObject *context, std::function<void()> call)
{
    QTimer::singleShot(milliseconds, context, std::move(call));
}

HostScope::HostScope(Host &host)
    : m_previous(g_active)
{
    g_active = &host;
}

HostScope::~HostScope()
{
    g_active = m_previous;
}

} // namespace platform
