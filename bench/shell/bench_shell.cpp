// Times what the pupil waits for in the main shell: the tiles of an activity coming up
// (at the first entry and at a change of activity in the tree) and going away.

#include "../../tests/app/shellcontent.h"
#include "../../tests/support/testsession.h"

#include <childwindows.h>
#include <frmsmallbutton.h>
#include <mdiform1.h>
#include <msgbox.h>
#include <session.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QMdiArea>

#include <algorithm>
#include <cstdio>

namespace {

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0.0 : values.at(values.size() / 2);
}

void flush()
{
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    testing::TestSession recorded; // every box answered OK
    Session &session = recorded;
    testing::ShellContent content;
    if (!content.open(session)) {
        std::fprintf(stderr, "could not build the course\n");
        return 1;
    }
    registerShellWindows(session);
    session.setWindowFactory(Session::Window::StartScreen, [](Session &) { return nullptr; });

    constexpr int Rounds = 30;
    QList<double> firstEntry;
    QList<double> change;
    QList<double> unload;
    for (int round = 0; round < Rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        auto *shell = session.window<MDIForm1>(Session::Window::Shell);
        shell->setSelectedActivity(113);
        shell->show();
        QCoreApplication::processEvents();
        shell->repaint();
        firstEntry << timer.nsecsElapsed() / 1e6;

        timer.restart();
        shell->UnloadResources();
        flush();
        unload << timer.nsecsElapsed() / 1e6;

        timer.restart();
        shell->setSelectedActivity(round % 2 ? 113 : 107);
        shell->LoadResources();
        QCoreApplication::processEvents();
        shell->repaint();
        change << timer.nsecsElapsed() / 1e6;

        shell->close();
        flush();
    }
    std::printf("shell with 13 tiles, first entry to painted:   median %.2f ms (%d rounds)\n",
        median(firstEntry), Rounds);
    std::printf("unloading 13 tiles:                            median %.2f ms\n", median(unload));
    std::printf("change of activity (7 or 13 tiles) to painted: median %.2f ms\n", median(change));
    return 0;
}
