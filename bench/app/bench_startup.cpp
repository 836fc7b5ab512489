// Time from launch to the first paint of the start screen, offscreen, on a small SQLite
// content file and on the Jet fixture (imported at every start).
//
// The bench starts itself as a child process per run, so each figure includes process
// start, Qt's start-up and the import: the parent times from starting the child to the
// child's "painted" line, and the child times from Main() to the paint itself.
//
//   bench_startup [runs]         (default 7 runs per content file)

#include <childwindows.h>
#include <frmnewfirst.h>
#include <latethreads.h>
#include <main_routine.h>
#include <msgbox.h>
#include <session.h>
#include <translations.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>

namespace {

const char *const SmallContent = R"sql(
CREATE TABLE Themes (ThemeID INTEGER PRIMARY KEY, Theme TEXT COLLATE NOCASE);
CREATE TABLE Scenarios (ScenarioID INTEGER PRIMARY KEY, Scenario TEXT COLLATE NOCASE, ThemeID INTEGER);
CREATE TABLE Activities (ActivityID INTEGER PRIMARY KEY, Activity TEXT COLLATE NOCASE, ActionsDocument TEXT COLLATE NOCASE);
CREATE TABLE RelScenarioActivity (ScenarioID INTEGER, ActivityID INTEGER);
INSERT INTO Themes VALUES (2, 'Η αθηναϊκή δημοκρατία'), (5, 'Η Σπάρτη'), (17, 'Η Μακεδονία');
INSERT INTO Scenarios VALUES (10, 'Η εκκλησία του δήμου', 2), (12, 'Ο οστρακισμός', 2), (40, 'Η αγωγή', 5);
INSERT INTO Activities VALUES (101, 'Ποιοι ψήφιζαν;', NULL), (102, 'Η Πνύκα', NULL), (130, 'Τα παιδιά', NULL);
INSERT INTO RelScenarioActivity VALUES (10, 101), (10, 102), (40, 130);
)sql";

bool writeSmallContent(const QString &path)
{
    sqlite3 *db = nullptr;
    if (sqlite3_open(path.toUtf8().constData(), &db) != SQLITE_OK)
        return false;
    const bool ok = sqlite3_exec(db, SmallContent, nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(db);
    return ok;
}

// The child: one start, reported on stdout.
int runOnce(int argc, char *argv[])
{
    QApplication app(argc, argv);
    platform::installGreekTranslations(app);

    QElapsedTimer sinceMain;
    bool painted = false;
    // The screen is made inside Main(); catch its first paint as it is created.
    struct Watcher : QObject
    {
        QElapsedTimer *timer;
        bool *painted;
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            if (event->type() == QEvent::Show)
                if (auto *screen = qobject_cast<frmNewFirst *>(watched))
                    QObject::connect(screen, &frmNewFirst::firstPainted, screen, [this] {
                        if (*painted)
                            return;
                        *painted = true;
                        std::fprintf(stdout, "painted %.3f\n", timer->nsecsElapsed() / 1e6);
                        std::fflush(stdout);
                        QCoreApplication::exit(0);
                    });
            return false;
        }
    } watcher;
    watcher.timer = &sinceMain;
    watcher.painted = &painted;
    app.installEventFilter(&watcher);

    // A box would wait for a hand; its text goes to the parent instead.
    struct ReportingHost final : platform::DesktopHost
    {
        int messageBox(const QString &text, int, const QString &, QWidget *) override
        {
            std::fprintf(stdout, "error %s\n", text.toUtf8().constData());
            std::fflush(stdout);
            return platform::vbOK;
        }
    };
    platform::LateThreads late;
    Session session(std::make_unique<ReportingHost>(), late);
    registerShellWindows(session);
    sinceMain.start();
    if (!Main(session))
        return 1;
    return app.exec();
}

struct Figures
{
    QList<double> launch; // parent: start of the child to its first paint
    QList<double> fromMain; // child: Main() to the first paint
};

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values[values.size() / 2];
}

bool measure(const QString &self, const QString &configHome, const QString &title, const QString &path,
    int runs, Figures *figures, QString *error)
{
    const QString folder = configHome + QStringLiteral("/tremidia");
    QDir().mkpath(folder);
    QFile conf(folder + QStringLiteral("/tremidia.conf"));
    if (!conf.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    conf.write((QStringLiteral("[Επιλεγμένη Βάση]\n") + title + u'=' + path + u'\n').toUtf8());
    conf.close();

    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome);
    env.insert(QStringLiteral("XDG_CONFIG_DIRS"), configHome + QStringLiteral("/none"));

    for (int run = 0; run < runs; ++run) {
        QProcess child;
        child.setProcessEnvironment(env);
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QElapsedTimer launch;
        launch.start();
        child.start(self, {QStringLiteral("--once")});
        double launchMs = -1;
        QByteArray line;
        while (child.waitForReadyRead(30000)) {
            line += child.readAll();
            if (line.contains('\n')) {
                launchMs = launch.nsecsElapsed() / 1e6;
                break;
            }
        }
        child.waitForFinished(30000);
        line = line.trimmed();
        if (!line.startsWith("painted ")) {
            *error = QString::fromUtf8(line);
            return false;
        }
        figures->launch << launchMs;
        figures->fromMain << line.mid(8).toDouble();
    }
    return true;
}

void print(const char *name, const Figures &f)
{
    auto minOf = [](const QList<double> &v) { return *std::min_element(v.begin(), v.end()); };
    auto maxOf = [](const QList<double> &v) { return *std::max_element(v.begin(), v.end()); };
    std::printf("%-28s launch to first paint: median %7.1f ms (min %7.1f, max %7.1f)\n", name,
        median(f.launch), minOf(f.launch), maxOf(f.launch));
    std::printf("%-28s Main() to first paint: median %7.1f ms (min %7.1f, max %7.1f)\n", "",
        median(f.fromMain), minOf(f.fromMain), maxOf(f.fromMain));
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc > 1 && qstrcmp(argv[1], "--once") == 0)
        return runOnce(argc, argv);

    QCoreApplication app(argc, argv);
    const int runs = argc > 1 ? qMax(1, QByteArray(argv[1]).toInt()) : 7;
    QTemporaryDir dir;
    const QString self = QCoreApplication::applicationFilePath();
    const QString configHome = dir.filePath(QStringLiteral("config"));

    const QString small = dir.filePath(QStringLiteral("small.sqlite"));
    if (!writeSmallContent(small)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(small));
        return 1;
    }
    const QString jet = QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb");
    if (!QFileInfo::exists(jet)) {
        std::fprintf(stderr, "missing test data file: %s\n", qPrintable(jet));
        return 1;
    }

    std::printf("start screen, offscreen, %d runs each\n", runs);
    QString error;
    Figures smallFigures;
    if (measure(self, configHome, QStringLiteral("Μικρή"), small, runs, &smallFigures, &error))
        print("small SQLite content", smallFigures);
    else
        std::printf("small SQLite content: failed: %s\n", qPrintable(error));

    if (QFileInfo::exists(jet)) {
        Figures jetFigures;
        if (measure(self, configHome, QStringLiteral("Jet"), jet, runs, &jetFigures, &error))
            print("Jet 4 fixture (import)", jetFigures);
        else
            std::printf("Jet 4 fixture: failed: %s\n", qPrintable(error));
    }
    return 0;
}
