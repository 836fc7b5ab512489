// An install into a temporary DESTDIR: the files a computer gets, the menu entry and the
// software centre's description as their validators read them, the content tool on the
// installed sample course, and the installed program started from its menu entry.

#include "../support/processrun.h"
#include "../support/toolcommands.h"
#include "installedfiles.h"

#include <settings.h>

#include <QDirIterator>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QScreen>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

QByteArray readAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The value of a key in the [Desktop Entry] group.
QString desktopValue(const QByteArray &entry, const QString &key)
{
    for (const QString &line : QString::fromUtf8(entry).split(u'\n')) {
        if (line.startsWith(key + u'='))
            return line.mid(key.size() + 1).trimmed();
    }
    return {};
}

QStringList listing(const QString &root)
{
    QStringList out;
    QDirIterator it(
        root, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        out << info.filePath() + u' ' + QString::number(info.isDir() ? -1 : info.size()) + u' '
                + QString::number(info.lastModified().toMSecsSinceEpoch());
    }
    out.sort();
    return out;
}

QString tool(const char *name)
{
    return QStandardPaths::findExecutable(QString::fromLatin1(name));
}

} // namespace

class tst_Install : public QObject
{
    Q_OBJECT

    QTemporaryDir m_destdir;

    QString staged(const QString &absolute) const { return m_destdir.path() + absolute; }

    // The installed program's window that shows the start screen, as the window system
    // sees it: its id, or empty while there is none.
    QByteArray startScreenOf(qint64 pid, QRect &geometry)
    {
        const ProcessRun found = runProcess(tool("xdotool"),
            {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--pid"),
                QString::number(pid)});
        for (const QByteArray &id : found.out.split('\n')) {
            if (id.trimmed().isEmpty())
                continue;
            const QString window = QString::fromLatin1(id.trimmed());
            const ProcessRun name = runProcess(tool("xdotool"), {QStringLiteral("getwindowname"), window});
            const ProcessRun shape = runProcess(
                tool("xdotool"), {QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), window});
            if (QString::fromUtf8(name.out).trimmed() != QStringLiteral("Τρεμίδια"))
                continue;
            QMap<QString, int> values;
            for (const QString &line : QString::fromUtf8(shape.out).split(u'\n')) {
                const qsizetype eq = line.indexOf(u'=');
                if (eq > 0)
                    values.insert(line.left(eq), line.mid(eq + 1).toInt());
            }
            geometry = QRect(values.value(QStringLiteral("X")), values.value(QStringLiteral("Y")),
                values.value(QStringLiteral("WIDTH")), values.value(QStringLiteral("HEIGHT")));
            // The start screen is 800 by 600; the error box of a failed start is smaller.
            if (geometry.size() == QSize(800, 600))
                return id.trimmed();
        }
        return {};
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_destdir.isValid());
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("DESTDIR"), m_destdir.path());
        const ProcessRun r = runProcess(QStringLiteral(TREMIDIA_CMAKE_COMMAND),
            {QStringLiteral("--install"), QStringLiteral(TREMIDIA_BINARY_DIR)}, env);
        QVERIFY2(r.ok(), r.all().constData());
    }

    void cleanupTestCase()
    {
        QProcess::execute(
            QStringLiteral("chmod"), {QStringLiteral("-R"), QStringLiteral("u+w"), m_destdir.path()});
    }

    void installPutsProgramsCourseMenuEntryIconsAndManualsInPlace()
    {
        for (const QString &file : installed::files())
            QVERIFY2(QFileInfo::exists(staged(file)), qPrintable(file));
        for (const char *program : {"/tremidia", "/tremidia-content"})
            QVERIFY(QFileInfo(staged(installed::Bin + QString::fromLatin1(program))).isExecutable());
        // The course's content folders come along with its database.
        const QString sample = staged(installed::Data + QStringLiteral("/tremidia/sample"));
        for (const char *folder : {"Pictures", "piges", "Actions"})
            QVERIFY2(QFileInfo(sample + u'/' + QString::fromLatin1(folder)).isDir(), folder);
        QVERIFY(!QFileInfo::exists(sample + QStringLiteral("/.built")));
    }

    void iconIsDrawnInEverySize()
    {
        for (const QString &size : installed::iconSizes()) {
            QImageReader reader(
                staged(installed::Data + QStringLiteral("/icons/hicolor/%1x%1/apps/").arg(size)
                    + installed::AppId + QStringLiteral(".png")));
            QCOMPARE(reader.size(), QSize(size.toInt(), size.toInt()));
            const QImage image = reader.read();
            QVERIFY(!image.isNull());
            QVERIFY(image.hasAlphaChannel());
            QVERIFY(qAlpha(image.pixel(image.width() / 2, image.height() / 2)) > 0);
        }
    }

    void desktopEntryIsValidAndGreek()
    {
        QVERIFY2(!tool("desktop-file-validate").isEmpty(), "desktop-file-validate (desktop-file-utils)");
        const QString entry = staged(installed::DesktopEntry);
        const ProcessRun r = runProcess(tool("desktop-file-validate"), {entry});
        QVERIFY2(r.ok() && r.out.trimmed().isEmpty(), r.all().constData());
        const QByteArray text = readAll(entry);
        QCOMPARE(desktopValue(text, QStringLiteral("Name")), QStringLiteral("Τρεμίδια"));
        QCOMPARE(desktopValue(text, QStringLiteral("Categories")), QStringLiteral("Education;History;"));
        QCOMPARE(desktopValue(text, QStringLiteral("Icon")), installed::AppId);
        QVERIFY(desktopValue(text, QStringLiteral("GenericName")).contains(QStringLiteral("πηγές")));
        QVERIFY(!desktopValue(text, QStringLiteral("Comment")).isEmpty());
    }

    void metainfoIsValid()
    {
        QVERIFY2(!tool("appstreamcli").isEmpty(), "appstreamcli (appstream)");
        const ProcessRun r = runProcess(tool("appstreamcli"),
            {QStringLiteral("validate"), QStringLiteral("--no-net"), staged(installed::Metainfo)});
        QVERIFY2(r.ok(), r.all().constData());
        const QString text = QString::fromUtf8(readAll(staged(installed::Metainfo)));
        QVERIFY(text.contains(QStringLiteral("<name xml:lang=\"el\">Τρεμίδια</name>")));
        QVERIFY(text.contains(QStringLiteral("start-screen.png")));
    }

    void manualPagesTellCommandsAndExitCodes()
    {
        const QString page
            = QString::fromUtf8(readAll(staged(installed::Man + QStringLiteral("/man1/tremidia-content.1"))));
        // Every command the installed tool's usage lists, and no other.
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        const ProcessRun usage = runProcess(staged(installed::Bin + QStringLiteral("/tremidia-content")), {}, env);
        QCOMPARE(usage.exitCode, 1);
        const QList<testing::ListedCommand> commands = testing::commandsInUsage(QString::fromUtf8(usage.err));
        QVERIFY2(!commands.isEmpty(), usage.err.constData());
        QVERIFY2(testing::commandsInManualPage(page) == commands, usage.err.constData());
        QVERIFY(page.contains(QStringLiteral(".SH EXIT STATUS")));
        QVERIFY(
            readAll(staged(installed::Man + QStringLiteral("/man1/tremidia.1"))).contains("tremidia.conf"));
    }

    void systemSettingsSelectTheInstalledSample()
    {
        const QString file = staged(installed::SystemSettings);
        const platform::SelectedDatabase selected = platform::readSelectedDatabaseFrom(file);
        QCOMPARE(selected.title, QStringLiteral("Το Αιγαίο στην αρχαιότητα"));
        QCOMPARE(selected.path, installed::SampleDatabase);
        QVERIFY(QFileInfo::exists(staged(selected.path)));
        // The technician's instructions, in Greek, as a comment.
        const QString text = QString::fromUtf8(readAll(file));
        QVERIFY(text.startsWith(u'#'));
        QVERIFY(text.contains(QStringLiteral("διαδρομή")));
    }

    void installedContentToolChecksTheInstalledSample()
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        const ProcessRun r = runProcess(staged(installed::Bin + QStringLiteral("/tremidia-content")),
            {QStringLiteral("check"), staged(installed::SampleDatabase)}, env);
        QVERIFY2(r.ok(), r.all().constData());
    }

    // The installed tool finds the installed reader beside it (libexec/tremidia) and
    // imports a Jet file through it.
    void installedContentToolImportsAJetFileThroughTheInstalledReader()
    {
        QVERIFY(QFileInfo(staged(installed::JetReader)).isExecutable());
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.remove(QStringLiteral("TREMIDIA_JET_READER"));
        const ProcessRun r = runProcess(staged(installed::Bin + QStringLiteral("/tremidia-content")),
            {QStringLiteral("tables"), QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb")}, env);
        QVERIFY2(r.ok(), r.all().constData());
        QVERIFY2(r.out.contains("Euretirio"), r.all().constData());
    }

    void installedProgramShowsTheStartScreenFromItsMenuEntry()
    {
        QVERIFY2(!tool("xdotool").isEmpty(), "xdotool");
        QVERIFY2(QGuiApplication::platformName() == u"xcb", "runs on a virtual X display (xvfb-run)");

        // The Exec line as the menu runs it, with the installed programs on the PATH.
        const QStringList exec = QProcess::splitCommand(
            desktopValue(readAll(staged(installed::DesktopEntry)), QStringLiteral("Exec")));
        QCOMPARE(exec.value(0), QStringLiteral("tremidia"));

        // The system settings file as installed, its path read below the DESTDIR; and the
        // course read-only, as on a pupil's computer.
        QTemporaryDir config;
        const platform::SelectedDatabase system
            = platform::readSelectedDatabaseFrom(staged(installed::SystemSettings));
        QDir(config.path()).mkpath(QStringLiteral("tremidia"));
        QFile conf(config.filePath(QStringLiteral("tremidia/tremidia.conf")));
        QVERIFY(conf.open(QIODevice::WriteOnly));
        conf.write(
            QStringLiteral("[Επιλεγμένη Βάση]\n%1=%2\n").arg(system.title, staged(system.path)).toUtf8());
        conf.close();
        const QString sample = staged(installed::Data + QStringLiteral("/tremidia/sample"));
        QCOMPARE(
            QProcess::execute(QStringLiteral("chmod"), {QStringLiteral("-R"), QStringLiteral("a-w"), sample}),
            0);
        const QStringList before = listing(sample);

        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("PATH"), staged(installed::Bin) + u':' + env.value(QStringLiteral("PATH")));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), config.path());
        env.insert(QStringLiteral("XDG_CONFIG_DIRS"), QStringLiteral("/nonexistent"));
        env.remove(QStringLiteral("QT_QPA_PLATFORM"));
        QProcess program;
        program.setProcessEnvironment(env);
        program.setProgram(QStandardPaths::findExecutable(exec.at(0), {staged(installed::Bin)}));
        program.setArguments(exec.mid(1));
        program.start();
        QVERIFY2(program.waitForStarted(), qPrintable(program.errorString()));

        QRect geometry;
        QByteArray window;
        QTRY_VERIFY_WITH_TIMEOUT(!(window = startScreenOf(program.processId(), geometry)).isEmpty()
                || program.state() == QProcess::NotRunning,
            60000);
        QVERIFY2(!window.isEmpty(), program.readAllStandardError().constData());

        // A start screen that has painted: many colours, not one blank field. The picture
        // is kept beside the test output for the software centre's screenshots.
        QImage shot;
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                shot = QGuiApplication::primaryScreen()->grabWindow(0).toImage().copy(geometry);
                QSet<QRgb> colours;
                for (int y = 0; y < shot.height(); y += 3)
                    for (int x = 0; x < shot.width(); x += 3)
                        colours.insert(shot.pixel(x, y));
                return colours.size() > 64;
            }(),
            20000);
        QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR));
        shot.save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/installed-start-screen.png"));

        program.terminate();
        if (!program.waitForFinished(10000)) {
            program.kill();
            program.waitForFinished();
        }
        QCOMPARE(listing(sample), before);
    }
};

QTEST_MAIN(tst_Install)
#include "tst_install.moc"
