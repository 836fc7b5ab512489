#include "childwindows.h"
#include "lostwork.h"
#include "main_routine.h"
#include "windowsystem.h"

#include <errorpolicy.h>
#include <latethreads.h>
#include <programbitmaps.h>
#include <session.h>
#include <translations.h>

#include <QApplication>
#include <QTimer>

namespace {

// How long the end of the process waits for a thread the session could not stop in time.
constexpr int LateThreadsWaitMs = 1000;

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
