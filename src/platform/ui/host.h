#pragma once

#include "launch.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>

class QObject;
class QWidget;

namespace platform {

// The world outside the program, as the windows meet it: message boxes, other programs,
// the program's end, the clock and delays. The program runs on the desktop's host; a test
// gives its session a recording one and answers for the user.
//
// The session that owns a host makes it the process's host for its lifetime
// (`HostScope`), since an error box can rise from any event handler, also from a control
// that was never told of a session.
class Host
{
public:
    virtual ~Host();

    // A modal box in the program's styles (msgbox.h); returns the button pressed.
    virtual int messageBox(const QString &text, int style, const QString &title, QWidget *parent) = 0;

    // Starts an outside program, not waiting for it (launch.h).
    virtual LaunchResult launch(
        const QString &program, const QStringList &arguments, const QString &workingDirectory) = 0;

    // Leaves the program at once, running no window's closing on the way.
    virtual void end() = 0;

    // The time of day, and a call after a delay while `context` lives.
    virtual QDateTime now() const = 0;
    virtual void delay(int milliseconds, QObject *context, std::function<void()> call) = 0;

    // The host the process's boxes go through, or none before the first session.
    static Host *active();
};

// The real desktop: Qt's message box, posix_spawn, the event loop's end, the system clock.
class DesktopHost : public Host
{
public:
    int messageBox(const QString &text, int style, const QString &title, QWidget *parent) override;
    LaunchResult launch(
        const QString &program, const QStringList &arguments, const QString &workingDirectory) override;
    void end() override;
    QDateTime now() const override;
    void delay(int milliseconds, QObject *context, std::function<void()> call) override;
};

// Makes `host` the active one while it lives, and brings back the one before.
class HostScope
{
public:
    explicit HostScope(Host &host);
    ~HostScope();
    HostScope(const HostScope &) = delete;
    HostScope &operator=(const HostScope &) = delete;

private:
    Host *m_previous;
};

// The desktop's message box itself, for a host that shows one.
int showMessageBox(const QString &text, int style, const QString &title, QWidget *parent);

} // namespace platform
