#pragma once

// The outside world of a test: stands in for the user in front of the program's message
// boxes (records each and answers from `answers` in turn, then OK), counts the programs
// that would start and the program's ends, and keeps a clock the test sets. Delays run as
// on the desktop, unless the test holds them to run them itself. The file, print and
// font dialogs are recorded and answered by `onDialog`, or else cancelled.

#include <host.h>
#include <msgbox.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace testing {

struct ShownBox
{
    QString text;
    int style = 0;
    QString title;
};

struct Launch
{
    QString program;
    QStringList arguments;
    QString workingDirectory;
};

class RecordingHost final : public platform::Host
{
public:
    QList<ShownBox> boxes;
    QList<int> answers; // platform::vbCancel, vbYes, ...
    int otherwise = platform::vbOK; // the answer once `answers` has run out
    // Called with each box as it shows, before the answer is taken.
    std::function<void(const ShownBox &)> onBox;

    QList<Launch> launches;
    platform::LaunchResult launchResult {true, 4242, {}};
    // When set, answers each launch instead of launchResult.
    std::function<platform::LaunchResult(const Launch &)> onLaunch;

    int ends = 0;
    std::function<void()> onEnd;

    QList<platform::DialogRequest> dialogs;
    // Answers each dialog as the user would (it may set up the request's printer).
    std::function<platform::DialogAnswer(const platform::DialogRequest &)> onDialog;

    QDateTime clock; // an invalid clock reads the system's
    bool holdDelays = false;
    struct Delay
    {
        int milliseconds;
        QPointer<QObject> context;
        std::function<void()> call;
    };
    QList<Delay> heldDelays;

    int messageBox(const QString &text, int style, const QString &title, QWidget *) override
    {
        boxes.append({text, style, title});
        if (onBox)
            onBox(boxes.constLast());
        return answers.isEmpty() ? otherwise : answers.takeFirst();
    }

    platform::LaunchResult launch(
        const QString &program, const QStringList &arguments, const QString &workingDirectory) override
    {
        launches.append({program, arguments, workingDirectory});
        return onLaunch ? onLaunch(launches.constLast()) : launchResult;
    }

    void end() override
    {
        ++ends;
        if (onEnd)
            onEnd();
    }

    platform::DialogAnswer dialog(const platform::DialogRequest &request, QWidget *) override
    {
        dialogs.append(request);
        return onDialog ? onDialog(request) : platform::DialogAnswer {};
    }

    QDateTime now() const override { return clock.isValid() ? clock : QDateTime::currentDateTime(); }

    void delay(int milliseconds, QObject *context, std::function<void()> call) override
    {
        if (holdDelays) {
            heldDelays.append({milliseconds, context, std::move(call)});
            return;
        }
        platform::DesktopHost().delay(milliseconds, context, std::move(call));
    }

    // Runs the delays held so far, in order, for contexts that still live.
    void runHeldDelays()
    {
        const QList<Delay> due = std::exchange(heldDelays, {});
        for (const Delay &d : due) {
            if (d.context)
                d.call();
        }
    }
};

} // namespace testing
