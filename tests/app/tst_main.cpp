#include "../support/testsession.h"

#include "startscreencontent.h"

#include <checklistview.h>
#include <childwindows.h>
#include <contentpath.h>
#include <database.h>
#include <frmnewfirst.h>
#include <jetimportprogress.h>
#include <main_routine.h>
#include <msgbox.h>
#include <runtimeerror.h>
#include <session.h>

#include <QApplication>
#include <QFileInfo>
#include <QLabel>
#include <QProgressDialog>
#include <QTemporaryDir>
#include <QTest>

using namespace startscreen_fixture;

class tst_Main : public QObject
{
    Q_OBJECT

    std::unique_ptr<testing::TestSession> m_s;
    Session &session() { return *m_s; }
    QTemporaryDir m_dir;

    QString configHome() const { return m_dir.filePath(QStringLiteral("config")); }

    void select(const QString &title, const QString &path)
    {
        QVERIFY(
            writeSettings(configHome(), QStringLiteral("[Επιλεγμένη Βάση]\n") + title + u'=' + path + u'\n'));
    }

    static QList<frmNewFirst *> startScreens()
    {
        QList<frmNewFirst *> screens;
        for (QWidget *w : QApplication::topLevelWidgets())
            if (auto *screen = qobject_cast<frmNewFirst *>(w))
                screens << screen;
        return screens;
    }

    // What the engine itself says about a file it cannot open.
    static platform::RuntimeError engineError(const QString &path)
    {
        try {
            content::Database::OpenDatabase(path);
        } catch (const platform::RuntimeError &e) {
            return e;
        }
        return platform::RuntimeError(0, QString());
    }

    void expectOneErrorBox(const platform::RuntimeError &expected)
    {
        QVERIFY(expected.number() != 0);
        QCOMPARE(m_s->host->boxes.size(), 1);
        QCOMPARE(m_s->host->boxes[0].text,
            QStringLiteral("Λάθος # ") + QString::number(expected.number()) + QStringLiteral("\r\n")
                + expected.description());
        QCOMPARE(m_s->host->boxes[0].style, 16);
        QCOMPARE(m_s->host->boxes[0].title, QStringLiteral("Τρεμίδια"));
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        qputenv("XDG_CONFIG_HOME", configHome().toUtf8());
        qputenv("XDG_CONFIG_DIRS", m_dir.filePath(QStringLiteral("system-config")).toUtf8());
    }

    void init()
    {
        QDir(configHome()).removeRecursively();
        m_s = std::make_unique<testing::TestSession>();
        registerShellWindows(session());
    }

    void cleanup()
    {
        qDeleteAll(startScreens());
        m_s.reset();
    }

    void selectedDatabaseOpensAndStartScreenShows()
    {
        const QString path = m_dir.filePath(QStringLiteral("school/aigaio.sqlite"));
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QCOMPARE(writeContent(path), QString());
        select(QStringLiteral("Το Αιγαίο στην αρχαιότητα"), path);

        QVERIFY(Main(session()));
        QVERIFY(m_s->host->boxes.isEmpty());
        QCOMPARE(session().content().databaseTitle, QStringLiteral("Το Αιγαίο στην αρχαιότητα"));
        QCOMPARE(session().content().databasePath, path);
        QVERIFY(session().content().database);
        QCOMPARE(session().content().dataFolder, QFileInfo(path).path());
        QVERIFY(!session().content().dataFolder.endsWith(u'/'));

        const QList<frmNewFirst *> screens = startScreens();
        QCOMPARE(screens.size(), 1);
        QVERIFY(screens[0]->isVisible());
        QCOMPARE(screens[0]->List2->count(), 3);
        QCOMPARE(screens[0]->Label4->text(), QStringLiteral("Παρουσίαση Βάσης: Το Αιγαίο στην αρχαιότητα"));
    }

    void settingsGroupWithoutEntryGivesErrorBoxAndNoStartScreen()
    {
        QVERIFY(writeSettings(configHome(), QStringLiteral("[Επιλεγμένη Βάση]\n")));
        const platform::RuntimeError expected = engineError(QString());

        QVERIFY(!Main(session()));
        expectOneErrorBox(expected);
        QVERIFY(session().content().databasePath.isEmpty());
        QVERIFY(!session().content().database);
        QVERIFY(startScreens().isEmpty());
    }

    void noSettingsFileAtAllEndsTheSameWay()
    {
        const platform::RuntimeError expected = engineError(QString());
        QVERIFY(!Main(session()));
        expectOneErrorBox(expected);
        QVERIFY(startScreens().isEmpty());
    }

    void missingDatabaseFileGivesErrorBox()
    {
        const QString path = m_dir.filePath(QStringLiteral("nowhere/missing.mdb"));
        select(QStringLiteral("Χαμένη"), path);
        const platform::RuntimeError expected = engineError(path);

        QVERIFY(!Main(session()));
        expectOneErrorBox(expected);
        QVERIFY(startScreens().isEmpty());
    }

    void brokenDatabaseFileGivesErrorBox()
    {
        const QString path = m_dir.filePath(QStringLiteral("broken.mdb"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(4096, '\x5a'));
        file.close();
        select(QStringLiteral("Χαλασμένη"), path);
        const platform::RuntimeError expected = engineError(path);

        QVERIFY(!Main(session()));
        expectOneErrorBox(expected);
        QVERIFY(startScreens().isEmpty());
    }

    void databaseWithoutThemesTableFailsToShowTheStartScreen()
    {
        const QString path = m_dir.filePath(QStringLiteral("empty.sqlite"));
        QCOMPARE(writeContent(path, "CREATE TABLE Other (x INTEGER);"), QString());
        select(QStringLiteral("Άδεια"), path);

        QVERIFY(!Main(session()));
        QCOMPARE(m_s->host->boxes.size(), 1);
        QVERIFY(m_s->host->boxes[0].text.startsWith(QStringLiteral("Λάθος # ")));
        QCOMPARE(m_s->host->boxes[0].style, 16);
        QVERIFY(startScreens().isEmpty());
    }

    void databaseInRootFolderGivesRootAsDataFolder()
    {
        // The folder helper alone, then the whole start where the root can be written.
        QCOMPARE(platform::parentFolderName(QStringLiteral("/aigaio.sqlite")), QStringLiteral("/"));
        QCOMPARE(
            platform::contentPath(QStringLiteral("/"), QStringLiteral("\\piges\\"), QStringLiteral("a.rtf")),
            QStringLiteral("/piges/a.rtf"));

        const QString path
            = QStringLiteral("/tremidia-start-test-%1.sqlite").arg(QCoreApplication::applicationPid());
        if (!QFileInfo(QStringLiteral("/")).isWritable())
            QSKIP("the root folder is not writable here");
        QCOMPARE(writeContent(path), QString());
        select(QStringLiteral("Στη ρίζα"), path);
        const bool started = Main(session());
        QFile::remove(path);
        QVERIFY(started);
        QCOMPARE(session().content().dataFolder, QStringLiteral("/"));
    }

    void jetFileOpensThroughTheImport()
    {
        const QString path = QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb");
        QVERIFY2(QFileInfo::exists(path), qPrintable(QStringLiteral("missing test data file: ") + path));
        const QByteArray before = fileHash(path);
        select(QStringLiteral("Αρχαία Ελλάδα"), path);

        QVERIFY(Main(session()));
        QVERIFY(m_s->host->boxes.isEmpty());
        QCOMPARE(session().content().dataFolder, QFileInfo(path).path());
        const QList<frmNewFirst *> screens = startScreens();
        QCOMPARE(screens.size(), 1);
        QCOMPARE(screens[0]->List2->count(), 3);
        QCOMPARE(CheckListView::key(screens[0]->List2->ListItems(1)).left(1), QStringLiteral("T"));
        session().content().database.reset();
        QCOMPARE(fileHash(path), before);
    }

    void databaseFileIsUnchangedAfterARun()
    {
        const QString path = m_dir.filePath(QStringLiteral("readonly.sqlite"));
        QCOMPARE(writeContent(path), QString());
        const QByteArray before = fileHash(path);
        const QDateTime modified = QFileInfo(path).lastModified();
        select(QStringLiteral("Μόνο για ανάγνωση"), path);

        QVERIFY(Main(session()));
        frmNewFirst *screen = startScreens().value(0);
        QVERIFY(screen);
        QVERIFY(QTest::qWaitForWindowExposed(screen));
        // Go through every theme and scenario, as a pupil looking around would.
        for (int t = 1; t <= screen->List2->count(); ++t) {
            QTreeWidgetItem *theme = screen->List2->ListItems(t);
            QTest::mouseClick(
                screen->List2->viewport(), Qt::LeftButton, {}, screen->List2->checkBoxRect(theme).center());
            for (int s = 1; s <= screen->List1->count(); ++s) {
                QTreeWidgetItem *scenario = screen->List1->ListItems(s);
                QTest::mouseClick(screen->List1->viewport(), Qt::LeftButton, {},
                    screen->List1->checkBoxRect(scenario).center());
            }
        }
        delete screen;
        session().content().database.reset();
        QCOMPARE(fileHash(path), before);
        QCOMPARE(QFileInfo(path).lastModified(), modified);
        QVERIFY(!QFileInfo::exists(path + QStringLiteral("-journal")));
        QVERIFY(!QFileInfo::exists(path + QStringLiteral("-wal")));
    }

    void importProgressBoxSpeaksGreekAndCanCancel()
    {
        JetImportProgress progress;
        auto report = progress.callback();
        QVERIFY(!progress.started());
        QVERIFY(report(0, 1000));
        QVERIFY(progress.started());
        QProgressDialog *dialog = progress.dialog();
        QCOMPARE(dialog->labelText(), QStringLiteral("Φόρτωση περιεχομένου…"));
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Τρεμίδια"));
        QCOMPARE(dialog->minimumDuration(), 500);
        dialog->cancel();
        QVERIFY(!report(10, 1000));
    }
};

QTEST_MAIN(tst_Main)
#include "tst_main.moc"
