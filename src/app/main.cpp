#include "childwindows.h"
#include "lostwork.h"
#include "main_routine.h"
#include "windowsystem.h"

#include <errorpolicy.h>
#include <frmhandins.h>
#include <latethreads.h>
#include <programbitmaps.h>
#include <session.h>
#include <translations.h>

#include <QApplication>
#include <QTimer>

#include <optional>

namespace {

// How long the end of the process waits for a thread the session could not stop in time.
constexpr int LateThreadsWaitMs = 1000;

// `--handins FOLDER`: the folder whose handed-in work the teacher lists (empty when the
// folder was left out); nothing for the pupil's usual start.
std::optional<QString> handInsFolder(const QStringList &arguments)
{
    const qsizetype at = arguments.indexOf(QStringLiteral("--handins"));
    if (at < 1)
        return std::nullopt;
    return at + 1 < arguments.size() ? arguments.at(at + 1) : QString();
}

int run(int argc, char *argv[], platform::LateThreads &late)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tremidia"));
    // No display name: the window system would add it to every caption, and the
    // windows' captions are the program's own text.
    QApplication::setWindowIcon(resources::LoadResIcon(QStringLiteral("agio")));
    platform::installGreekTranslations(app);
    // Everything the running program holds, stopped in its order before the application goes.
    Session session(std::make_unique<platform::DesktopHost>(), late);
    registerChildWindows(session);

    // The teacher's way in: the work handed in to a folder, with no course to open.
    if (const std::optional<QString> folder = handInsFolder(QApplication::arguments()))
        return showHandIns(session, *folder) ? app.exec() : 1;

    // After a failed start the error box has been shown; the program ends there.
    if (!Main(session))
        return 1;
    // Once the start screen is up: work that a crash left unsaved is offered back.
    QTimer::singleShot(0, &app, [&session] { platform::guarded([&session] { lostwork::offer(session); }); });
    return app.exec();
}

} // namespace

int main(int argc, char *argv[])
{
    chooseWindowSystem();
    // Threads that did not stop within their bound when the session ended (a media
    // engine stuck inside GStreamer, a speech engine the service never answers) are
    // joined here, after the application has gone; the process ends around one that is
    // stuck for good.
    platform::LateThreads late;
    const int code = run(argc, argv, late);
    return late.finish(code, std::chrono::milliseconds(LateThreadsWaitMs));
}
