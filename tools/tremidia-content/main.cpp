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

void usage()
{
    QTextStream err(stderr);
    err << "usage: tremidia-content COMMAND ARGS\n"
           "  import SOURCE DEST.sqlite   convert a Jet or SQLite content file to SQLite\n"
           "  tables FILE                 user tables and their row counts\n"
           "  query FILE SQL              run SQL, print the rows as TSV\n"
           "  rtf-text FILE.rtf           plain text of an RTF file\n"
           "  rtf-runs FILE.rtf           formatting runs of an RTF file, as JSON lines\n"
           "  rtf-rewrite IN.rtf OUT.rtf  open a file as the notepad does, save it as the notepad does\n"
           "  hotwords FILE RESOURCEID    the hot words of a text source, located\n"
           "  check FILE                  audit the content files (that each picture shows\n"
           "                              and each sound or video plays) and hot words\n"
           "  search FILE [--type N] [--author TEXT] [--museum TEXT] [--keyword N] [--time N] [--place N]\n"
           "                              the search window's list for those criteria:\n"
           "                              icon, tab, text, tab, tag\n"
           "  index FILE [TYPE]           the index's list for a type (0 or none: all):\n"
           "                              EuretirioID, tab, Oros\n"
           "  fulltext FILE QUERY...      the sources whose words match the query, best first:\n"
           "                              ResourceID, tab, ResTypeID, tab, title\n"
           "  picture IN OUT.png          draw a picture as the viewers do, into a PNG\n"
           "  media FILE                  whether the player plays a sound or video:\n"
           "                              duration in ms, tab, video or audio\n";
}

// How long the end waits for a player's engine that is still stopping.
constexpr int ExitWaitMs = 1000;

int run(const QString &command, const QStringList &args, media::Engines &engines)
{
    if (command == u"import")
        return commands::import(args);
    if (command == u"tables")
        return commands::tables(args);
    if (command == u"query")
        return commands::query(args);
    if (command == u"rtf-text")
        return commands::rtfText(args);
    if (command == u"rtf-runs")
        return commands::rtfRuns(args);
    if (command == u"rtf-rewrite")
        return commands::rtfRewrite(args);
    if (command == u"hotwords")
        return commands::hotwords(args);
    if (command == u"check")
        return commands::check(args, engines);
    if (command == u"search")
        return commands::search(args);
    if (command == u"index")
        return commands::index(args);
    if (command == u"fulltext")
        return commands::fulltext(args);
    if (command == u"picture")
        return commands::picture(args);
    if (command == u"media")
        return commands::media(args, engines);
    usage();
    return 1;
}

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
    if (args.isEmpty()) {
        usage();
        return 1;
    }
    const QString command = args.takeFirst();
    // The players' engines: a pipeline stuck inside GStreamer (a file that never answers)
    // is waited for a moment at the end, and the tool then ends without it.
    platform::LateThreads late;
    int code = 0;
    {
        media::Engines engines(late);
        code = run(command, args, engines);
    }
    return late.finish(code, std::chrono::milliseconds(ExitWaitMs));
}
