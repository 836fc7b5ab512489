#include "commands.h"

#include <engines.h>
#include <latethreads.h>

#include <QDir>
#include <QGuiApplication>
#include <QTextStream>

#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

namespace {

int usage()
{
    QTextStream(stderr) << commands::usage();
    return 1;
}

// How long the end waits for a player's engine that is still stopping.
constexpr int ExitWaitMs = 1000;

} // namespace

int main(int argc, char *argv[])
{
    // The RTF reader builds QTextDocuments and images; a GUI application without a
    // display is enough for that.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Run from a maintenance shell or a build there is often no session runtime folder;
    // give Qt a private one rather than a warning on every run.
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        const QByteArray dir
            = QDir::tempPath().toLocal8Bit() + "/tremidia-content-runtime-" + QByteArray::number(getuid());
        ::mkdir(dir.constData(), 0700);
        qputenv("XDG_RUNTIME_DIR", dir);
    }
    QGuiApplication app(argc, argv);

    QStringList args = app.arguments();
    args.removeFirst();
    if (args.isEmpty())
        return usage();
    const QString name = args.takeFirst();
    const commands::Command *command = commands::find(name);
    if (!command)
        return usage();
    // The players' engines: a pipeline stuck inside GStreamer (a file that never answers)
    // is waited for a moment at the end, and the tool then ends without it.
    platform::LateThreads late;
    int code = 0;
    {
        media::Engines engines(late);
        code = command->run(args, engines);
    }
    return late.finish(code, std::chrono::milliseconds(ExitWaitMs));
}
