#pragma once

#include "launch.h"

#include <QDateTime>
#include <QFont>
#include <QString>
#include <QStringList>

#include <functional>

class QObject;
class QPrinter;
class QWidget;

namespace platform {

// A file, print or font dialog the program asks the user through.
struct DialogRequest
{
    enum class Kind { Open, Save, Print, Font };
    Kind kind = Kind::Open;
    QString title;
    // The asking dialog object's own flag word and "description|pattern|..." filter, as
    // it was set up; what they mean to the dialog is spelled out in the fields below.
    int flags = 0;
    QString filter;

    // Files: Qt's name filters, the one selected, the folder the dialog starts in and
    // the name proposed there.
    QStringList nameFilters;
    int selectedFilter = 0;
    QString folder;
    QString fileName;
    QString defaultSuffix; // without the dot
    bool confirmOverwrite = false;
    bool qtDialog = false; // Qt's own dialog even where the desktop has one

    // Printing: the printer the dialog sets up, and what it offers.
    QPrinter *printer = nullptr;
    bool printToFile = false;
    bool printPageRange = false;
    bool printSelection = false;

    // Font, as the dialog starts; with `fontColour` it offers the colour too.
    QFont font;
    bool fontColour = false;
    quint32 colour = 0; // 0x00BBGGRR
};

// The user's answer: OK or cancel, and what was chosen.
struct DialogAnswer
{
    bool accepted = false;
    QString fileName; // the full path chosen
    int copies = 1; // printing
    QFont font;
    quint32 colour = 0;
};

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
        const QString &program, const QStringList &arguments, const QString &workingDirectory)
        = 0;

    // Leaves the program at once, running no window's closing on the way.
    virtual void end() = 0;

    // The time of day, and a call after a delay while `context` lives.
    virtual QDateTime now() const = 0;
    virtual void delay(int milliseconds, QObject *context, std::function<void()> call) = 0;

    // A modal file, print or font dialog over `parent`.
    virtual DialogAnswer dialog(const DialogRequest &request, QWidget *parent) = 0;

    // The host the process's boxes go through, or none before the first session.
    static Host *active();
};

// The real desktop: Qt's message box and dialogs, posix_spawn, the event loop's end, the
// system clock.
class DesktopHost : public Host
{
public:
    int messageBox(const QString &text, int style, const QString &title, QWidget *parent) override;
    LaunchResult launch(
        const QString &program, const QStringList &arguments, const QString &workingDirectory) override;
    void end() override;
    QDateTime now() const override;
    void delay(int milliseconds, QObject *context, std::function<void()> call) override;
    DialogAnswer dialog(const DialogRequest &request, QWidget *parent) override;
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
