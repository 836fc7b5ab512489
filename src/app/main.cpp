#include "childwindows.h"
#include "lostwork.h"
#include "main_routine.h"
#include "windowsystem.h"

#include <errorpolicy.h>
#include <programbitmaps.h>
#include <session.h>
#include <translations.h>

#include <QApplication>
#include <QTimer>

int main(int argc, char *argv[])
{
    chooseWindowSystem();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tremidia"));
    // No display name: the window system would add it to every caption, and the
    // windows' captions are the program's own text.
    QApplication::setWindowIcon(resources::LoadResIcon(QStringLiteral("agio")));
    platform::installGreekTranslations(app);
    // Everything the running program holds, stopped in its order before the application goes.
    Session session(std::make_unique<platform::DesktopHost>());
    registerChildWindows(session);

    // After a failed start the error box has been shown; the program ends there.
    if (!Main(session))
        return 1;
    // Once the start screen is up: work that a crash left unsaved is offered back.
    QTimer::singleShot(0, &app, [&session] { platform::guarded([&session] { lostwork::offer(session); }); });
    return app.exec();
}
