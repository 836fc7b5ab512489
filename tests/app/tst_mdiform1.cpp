#include "../support/deferreddeletes.h"
#include "../support/testsession.h"

#include "../outside/recorder.h"
#include "../viewing/fakeviewers.h"
#include "shellcontent.h"

#include <btn.h>
#include <childwindows.h>
#include <frmnewfirst.h>
#include <frmploigisi.h>
#include <frmsmallbutton.h>
#include <launch.h>
#include <main_routine.h>
#include <mdiform1.h>
#include <msgbox.h>
#include <runtimeerror.h>
#include <session.h>
#include <tlb.h>
#include <twips.h>

#include <QApplication>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QTest>

using testing::FakeViewer;
using testing::flushDeletes;

namespace {

// Stands in for the start screen: what the shell shows when it unloads.
class StartScreen final : public QWidget
{
public:
    explicit StartScreen(Session &session)
        : m_session(session)
    {
        setAttribute(Qt::WA_DeleteOnClose);
        ++created;
    }
    // What the start screen's go button does.
    void go(qint32 activityID)
    {
        m_session.shell()->setSelectedActivity(activityID);
        m_session.shell()->window()->show();
        close();
    }
    static inline int created = 0;

private:
    Session &m_session;
};

QList<QWidget *> visibleTopLevels()
{
    QList<QWidget *> shown;
    for (QWidget *w : QApplication::topLevelWidgets()) {
        if (w->isVisible() && !qobject_cast<QMenu *>(w))
            shown.append(w);
    }
    return shown;
}

int aliveTiles()
{
    int count = 0;
    for (QWidget *w : QApplication::allWidgets())
        count += qobject_cast<frmSmallButton *>(w) ? 1 : 0;
    return count;
}

} // namespace

class tst_MDIForm1 : public QObject
{
    Q_OBJECT

    std::unique_ptr<testing::TestSession> m_s;
    Session &session() { return *m_s; }
    testing::ShellContent *m_content = nullptr;
    QByteArray m_path;

    MDIForm1 *openShell(qint32 activityID)
    {
        auto *shell = qobject_cast<MDIForm1 *>(session().window(Session::Window::Shell));
        shell->setSelectedActivity(activityID);
        shell->show();
        return shell;
    }

    static QMdiSubWindow *frameOf(frmSmallButton *tile)
    {
        return qobject_cast<QMdiSubWindow *>(tile->parentWidget());
    }

    QAction *menuAction(QMenu *menu, int index) { return menu->actions().at(index); }

    // The programs the host is asked to start really start, so the test reads what they got.
    void startProgramsForReal()
    {
        m_s->host->onLaunch = [](const testing::Launch &launch) {
            return platform::launchDetached(launch.program, launch.arguments, launch.workingDirectory);
        };
    }

private slots:
    void initTestCase()
    {
        m_content = new testing::ShellContent;
        m_path = qgetenv("PATH");
        // The mail tests bring a desktop of their own; the machine's plays no part.
        for (const char *name : {"XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION",
                 "GNOME_DESKTOP_SESSION_ID", "MATE_DESKTOP_SESSION_ID", "XDG_MENU_PREFIX"})
            qunsetenv(name);
    }

    void cleanupTestCase() { delete m_content; }

    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        QVERIFY(m_content->open(session()));
        registerShellWindows(session());
        session().setWindowFactory(
            Session::Window::StartScreen, [](Session &s) -> QWidget * { return new StartScreen(s); });
        FakeViewer::registerAll(session());
        StartScreen::created = 0;
    }

    void cleanup()
    {
        qputenv("PATH", m_path);
        for (QWidget *w : QApplication::topLevelWidgets())
            w->close();
        flushDeletes();
        for (QWidget *w : QApplication::topLevelWidgets())
            delete w;
        flushDeletes();
        QCOMPARE(session().shell(false), nullptr);
        m_s.reset();
    }

    void captionSizeAndNoMaximise()
    {
        MDIForm1 *shell = openShell(101);
        QCOMPARE(shell->windowTitle(), QStringLiteral("ΤΡΕΜΙΔΙΑ"));
        QCOMPARE(shell->size(), QSize(800, 600));
        QCOMPARE(shell->minimumSize(), QSize(800, 600));
        QCOMPARE(shell->maximumSize(), QSize(800, 600));
        QVERIFY(!(shell->windowFlags() & Qt::WindowMaximizeButtonHint));
        QVERIFY(shell->windowFlags() & Qt::WindowMinimizeButtonHint);
        QCOMPARE(session().shell(false), static_cast<ShellWindow *>(shell));
    }

    void menuCaptionsAsTheProgramHasThem()
    {
        MDIForm1 *shell = openShell(101);
        QStringList top;
        for (QAction *a : shell->menuBar()->actions())
            top << a->text();
        QCOMPARE(top,
            (QStringList {QStringLiteral("Πλοήγηση"), QStringLiteral("Μουσεία"), QStringLiteral("Επιλογές"),
                QStringLiteral("Προβολή"), QStringLiteral("Παράθυρα"), QStringLiteral("Βοήθεια")}));
        QCOMPARE(shell->mnuPrev->text(), QStringLiteral("Επιστροφή"));
        QVERIFY(menuAction(shell->mnuFile, 1)->isSeparator());
        QCOMPARE(shell->mnuExit->text(), QStringLiteral("&Έξοδος"));
        QCOMPARE(shell->mnuMoys1->text(), QStringLiteral("Εικονικό μουσείο"));
        QCOMPARE(shell->mnuMous2->text(), QStringLiteral("Συλλογές ευρημάτων στο διαδίκτυο"));
        QCOMPARE(shell->mnufacilities->text(), QStringLiteral("Αναζήτηση στη βάση δεδομένων"));
        QCOMPARE(shell->mnuStudNotes->text(), QStringLiteral("Σημειωματάριο"));
        QCOMPARE(shell->mnuCatalogue->text(), QStringLiteral("Ευρετήριο"));
        QCOMPARE(shell->mnuDraw->text(), QStringLiteral("Χώρος σχεδίασης"));
        QCOMPARE(shell->mnuNotes->text(), QStringLiteral("Εργασίες"));
        QCOMPARE(shell->mnuCascade->text(), QStringLiteral("&Επικάλυψη"));
        QCOMPARE(shell->mnuTileHorizontal->text(), QStringLiteral("&Ορίζοντια Παράθεση"));
        QCOMPARE(shell->mnuTileVertical->text(), QStringLiteral("&Κάθετη Παράθεση"));
        QCOMPARE(shell->mnuArrangeIcons->text(), QStringLiteral("&Τακτοποίηση Παραθύρων"));
        QVERIFY(shell->WindowListSeparator->isSeparator());
        QVERIFY(!shell->WindowListSeparator->isVisible());
    }

    void windowListHasTheHiddenDesignEntryAndOneReadyForTheTexts()
    {
        MDIForm1 *shell = openShell(101);
        QCOMPARE(shell->mnuListUBound(), 1);
        QCOMPARE(shell->mnuList(0)->text(), QStringLiteral("List"));
        QVERIFY(!shell->mnuList(0)->isVisible());
        QVERIFY(!shell->mnuList(1)->isVisible());
        QCOMPARE(shell->windowListSeparator(), shell->WindowListSeparator);
        // What a text window does with it.
        shell->windowListSeparator()->setVisible(true);
        shell->mnuList(1)->setVisible(true);
        shell->mnuList(1)->setText(QStringLiteral("Βιβλίο 301"));
        // The menu shows the open windows by title, never the bookkeeping entries.
        QVERIFY(!shell->mnuWndAlign->actions().contains(shell->mnuList(0)));
        QVERIFY(!shell->mnuWndAlign->actions().contains(shell->mnuList(1)));
        bool raised = false;
        try {
            shell->mnuList(2);
        } catch (const platform::RuntimeError &e) {
            raised = e.number() == 9;
        }
        QVERIFY(raised);
    }

    void selectedActivityBuildsTheQueryAndLoadsNothing()
    {
        auto *shell = qobject_cast<MDIForm1 *>(session().window(Session::Window::Shell));
        QVERIFY(shell->ResourceSQL().isEmpty());
        shell->setSelectedActivity(113);
        QCOMPARE(shell->ActivityID(), 113);
        QCOMPARE(session().content().activityID, 113);
        QCOMPARE(shell->ResourceSQL(),
            QStringLiteral(
                "SELECT Activities.ActivityID, Resources.ResourceID, Resources.ResTypeID, Resources.PlaceID, "
                "Resources.ChronologicalID, Resources.Author, Resources.Book, Resources.TextRTF, "
                "Resources.TextPath, Resources.PicturePath, Resources.Caption, Resources.Lezanda, "
                "Resources.Kind, "
                "Resources.Museum FROM Resources INNER JOIN (Activities INNER JOIN RelActivityResource ON "
                "(Activities.ActivityID = RelActivityResource.ActivityID) AND (Activities.ActivityID = "
                "RelActivityResource.ActivityID) AND (Activities.ActivityID = "
                "RelActivityResource.ActivityID)) ON "
                "(Resources.ResourceID = RelActivityResource.ResourceID) AND (Resources.ResourceID = "
                "RelActivityResource.ResourceID)WHERE Activities.ActivityID = 113"));
        QCOMPARE(shell->ResourceCount(), 0);
        QVERIFY(shell->mdiArea()->subWindowList().isEmpty());
    }

    void tilesStandSixToARow_data()
    {
        QTest::addColumn<int>("activityID");
        QTest::addColumn<int>("count");
        QTest::newRow("1") << 101 << 1;
        QTest::newRow("6") << 106 << 6;
        QTest::newRow("7") << 107 << 7;
        QTest::newRow("13") << 113 << 13;
    }

    void tilesStandSixToARow()
    {
        QFETCH(int, activityID);
        QFETCH(int, count);
        MDIForm1 *shell = openShell(activityID);
        QCOMPARE(int(shell->ResourceCount()), count);
        QCOMPARE(shell->Tiles().size(), count);
        QCOMPARE(shell->mdiArea()->subWindowList().size(), count);
        QList<int> rowLengths;
        for (int i = 1; i <= count; ++i) {
            frmSmallButton *tile = shell->Tiles().at(i - 1);
            QVERIFY(tile);
            QMdiSubWindow *frame = frameOf(tile);
            QVERIFY(frame->isVisible());
            QCOMPARE(tile->Label1->text(), QString::number(i));
            QCOMPARE(frame->size(), tile->Image1->size());
            const int w = platform::twipsFromPixelsX(frame->width());
            const int h = platform::twipsFromPixelsY(frame->height());
            const int c = (i - 1) % 6;
            const int r = (i - 1) / 6;
            QCOMPARE(frame->pos(),
                QPoint(platform::pixelsFromTwipsX(c * w + (c + 1) * 100),
                    platform::pixelsFromTwipsY(r * h + (r + 1) * 100)));
            if (c == 0)
                rowLengths.append(0);
            ++rowLengths.last();
        }
        if (count == 13)
            QCOMPARE(rowLengths, (QList<int> {6, 6, 1}));
        if (count == 7)
            QCOMPARE(rowLengths, (QList<int> {6, 1}));
        // Tile 7 begins the second row 100 twips under the first.
        if (count >= 7)
            QCOMPARE(frameOf(shell->Tiles().at(6))->pos(),
                QPoint(platform::pixelsFromTwipsX(100), platform::pixelsFromTwipsY(705 + 2 * 100)));
    }

    void tilesComeInTheOrderOfTheQuery()
    {
        MDIForm1 *shell = openShell(106);
        QList<int> ids;
        for (const auto &tile : shell->Tiles())
            ids << tile->ResourceID();
        std::sort(ids.begin(), ids.end());
        QCOMPARE(ids, (QList<int> {301, 302, 303, 304, 305, 306}));
    }

    void activityWithoutResourcesGivesAnEmptyShell()
    {
        MDIForm1 *shell = openShell(120);
        QCOMPARE(shell->ResourceCount(), 0);
        QVERIFY(shell->mdiArea()->subWindowList().isEmpty());
        shell->UnloadResources();
        QVERIFY(m_s->host->boxes.isEmpty());
    }

    void emptyActivityAfterAnotherKeepsTheCountAndUnloadsHarmlessly()
    {
        MDIForm1 *shell = openShell(106);
        shell->UnloadResources();
        shell->setSelectedActivity(120);
        shell->LoadResources();
        flushDeletes();
        QCOMPARE(shell->ResourceCount(), 6);
        QCOMPARE(aliveTiles(), 0);
        shell->UnloadResources(); // the tiles of 106 are gone: nothing fails
        shell->setSelectedActivity(101);
        shell->LoadResources();
        QCOMPARE(shell->ResourceCount(), 1);
        flushDeletes();
        QCOMPARE(aliveTiles(), 1);
    }

    void resourceLinkedTwiceGivesTwoTiles()
    {
        MDIForm1 *shell = openShell(130);
        QCOMPARE(shell->ResourceCount(), 2);
        QCOMPARE(shell->Tiles().at(0)->ResourceID(), 303);
        QCOMPARE(shell->Tiles().at(1)->ResourceID(), 303);
    }

    void schoolFilesGiveOneTilePerLink_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("jet4") << QStringLiteral("content-jet4.mdb");
        QTest::newRow("jet3") << QStringLiteral("content-jet3.mdb");
    }

    void schoolFilesGiveOneTilePerLink()
    {
        QFETCH(QString, file);
        const QString path = QStringLiteral(TREMIDIA_FIXTURES_DIR "/") + file;
        QVERIFY2(QFileInfo::exists(path), qPrintable(QStringLiteral("missing test data file: ") + path));
        std::unique_ptr<content::Database> course
            = std::exchange(session().content().database, content::Database::OpenDatabase(path));

        const QList<QPair<qint32, QList<int>>> expected = {{101, {205, 250}}, {102, {201, 204, 204}},
            {103, {202, 208, 212, 221}}, {107, {211, 233}}, {120, {}}};
        auto *shell = qobject_cast<MDIForm1 *>(session().window(Session::Window::Shell));
        shell->show();
        for (const auto &[activity, resources] : expected) {
            shell->UnloadResources();
            shell->setSelectedActivity(activity);
            shell->LoadResources();
            flushDeletes();
            QList<int> ids;
            for (QWidget *w : QApplication::allWidgets())
                if (auto *tile = qobject_cast<frmSmallButton *>(w))
                    ids << tile->ResourceID();
            std::sort(ids.begin(), ids.end());
            QCOMPARE(ids, resources);
        }
        QVERIFY(m_s->host->boxes.isEmpty());
        shell->close();
        flushDeletes();
        session().content().database = std::move(course);
    }

    void menuExitReturnsToTheStartScreen()
    {
        MDIForm1 *shell = openShell(106);
        QPointer<MDIForm1> guard(shell);
        shell->mnuExit->trigger();
        flushDeletes();
        QVERIFY(!guard);
        QCOMPARE(StartScreen::created, 1);
        QCOMPARE(m_s->host->ends, 0);
        QCOMPARE(aliveTiles(), 0);
        QCOMPARE(visibleTopLevels().size(), 1);
        QVERIFY(dynamic_cast<StartScreen *>(visibleTopLevels().first()));
    }

    void toolbarExitEndsTheProgram()
    {
        MDIForm1 *shell = openShell(106);
        emit shell->TlbMain->ButtonClick(QStringLiteral("exit"));
        QCOMPARE(m_s->host->ends, 1);
        QCOMPARE(StartScreen::created, 1);
        flushDeletes();
        QCOMPARE(session().shell(false), nullptr);
    }

    void goingBackShowsOneStartScreen()
    {
        for (const QString &way : {QStringLiteral("menu"), QStringLiteral("first"), QStringLiteral("prev")}) {
            MDIForm1 *shell = openShell(101);
            StartScreen::created = 0;
            if (way == u"menu")
                shell->mnuPrev->trigger();
            else
                emit shell->TlbMain->ButtonClick(way);
            flushDeletes();
            QCOMPARE(StartScreen::created, 1);
            QCOMPARE(visibleTopLevels().size(), 1);
            QCOMPARE(session().shell(false), nullptr);
            for (QWidget *w : visibleTopLevels())
                w->close();
            flushDeletes();
        }
        QCOMPARE(m_s->host->ends, 0);
    }

    void forwardAndBackTenTimesLeavesOneWindow()
    {
        auto *start = new StartScreen(session());
        start->show();
        for (int round = 0; round < 10; ++round) {
            const qint32 activity = round % 2 ? 113 : 107;
            static_cast<StartScreen *>(visibleTopLevels().first())->go(activity);
            flushDeletes();
            QCOMPARE(visibleTopLevels().size(), 1);
            auto *shell = qobject_cast<MDIForm1 *>(visibleTopLevels().first());
            QVERIFY(shell);
            QCOMPARE(aliveTiles(), int(shell->ResourceCount()));
            QCOMPARE(shell->mdiArea()->subWindowList().size(), int(shell->ResourceCount()));
            if (round % 2)
                shell->mnuPrev->trigger();
            else
                shell->mnuExit->trigger();
            flushDeletes();
            QCOMPARE(visibleTopLevels().size(), 1);
            QVERIFY(dynamic_cast<StartScreen *>(visibleTopLevels().first()));
            QCOMPARE(aliveTiles(), 0);
            QCOMPARE(session().shell(false), nullptr);
        }
        QCOMPARE(QApplication::topLevelWidgets().size() <= 2, true);
    }

    void closingTheShellUnloadsOpenViewersWithTheirTiles()
    {
        MDIForm1 *shell = openShell(106);
        shell->Tiles().at(0)->Image1_Click();
        shell->Tiles().at(1)->Image1_Click();
        QList<QPointer<SourceViewer>> viewers {
            shell->Tiles().at(0)->SourceForm(), shell->Tiles().at(1)->SourceForm()};
        QVERIFY(viewers[0]->isVisible());
        QVERIFY(viewers[1]->isVisible());
        shell->close();
        flushDeletes();
        QVERIFY(!viewers[0]);
        QVERIFY(!viewers[1]);
        QCOMPARE(aliveTiles(), 0);
    }

    void actionsDocumentEmptyOrNullDoesNothing()
    {
        qputenv("PATH", "/nonexistent");
        for (qint32 activity : {106, 107}) {
            MDIForm1 *shell = openShell(activity);
            shell->mnuNotes->trigger();
            QVERIFY(m_s->host->boxes.isEmpty());
            shell->close();
            flushDeletes();
        }
    }

    void actionsDocumentOpensACopyAsANewDocument()
    {
        QTemporaryDir bin;
        const QString argvFile = bin.filePath(QStringLiteral("argv.txt"));
        QVERIFY(testing::writeRecorder(bin.filePath(QStringLiteral("soffice")), argvFile));
        qputenv("PATH", (bin.path() + QStringLiteral(":/usr/bin:/bin")).toUtf8());

        startProgramsForReal(); // the word processor is the recorder in PATH
        MDIForm1 *shell = openShell(101);
        shell->mnuNotes->trigger();
        QCOMPARE(m_s->host->launches.size(), 1);
        QVERIFY2(m_s->host->boxes.isEmpty(),
            m_s->host->boxes.isEmpty() ? "" : qPrintable(m_s->host->boxes[0].text));
        QTRY_VERIFY(QFileInfo::exists(argvFile));
        const QStringList argv = testing::readRecorded(argvFile);
        QCOMPARE(argv.size(), 2);
        QCOMPARE(argv[0], QStringLiteral("-n"));
        const QString original = m_content->folder() + QStringLiteral("/Actions/Εργασία 1.odt");
        QVERIFY(argv[1] != original);
        QCOMPARE(QFileInfo(argv[1]).fileName(), QStringLiteral("Εργασία 1.odt"));
        QFile copy(argv[1]);
        QVERIFY(copy.open(QIODevice::ReadOnly));
        QCOMPARE(copy.readAll(), QByteArray("assignment body"));
        QDir(QFileInfo(argv[1]).absolutePath()).removeRecursively();
    }

    void actionsDocumentWithoutWordProcessorGivesTheBox()
    {
        qputenv("PATH", "/nonexistent");
        MDIForm1 *shell = openShell(101);
        shell->mnuNotes->trigger();
        QCOMPARE(m_s->host->boxes.size(), 1);
        QCOMPARE(m_s->host->boxes[0].style, 16);
        QCOMPARE(m_s->host->boxes[0].title, QStringLiteral("Τρεμίδια"));
        QVERIFY(m_s->host->boxes[0].text.contains(QStringLiteral("επεξεργαστής κειμένου")));
    }

    void actionsDocumentThatIsMissingGivesTheBox()
    {
        QTemporaryDir bin;
        QVERIFY(testing::writeRecorder(
            bin.filePath(QStringLiteral("soffice")), bin.filePath(QStringLiteral("a"))));
        qputenv("PATH", (bin.path() + QStringLiteral(":/usr/bin:/bin")).toUtf8());
        MDIForm1 *shell = openShell(113);
        shell->mnuNotes->trigger();
        QCOMPARE(m_s->host->boxes.size(), 1);
        QCOMPARE(m_s->host->boxes[0].style, 16);
        QVERIFY(m_s->host->boxes[0].text.contains(QStringLiteral("Λείπει.odt")));
        QVERIFY(m_s->host->launches.isEmpty());
    }

    void mailWithoutAClientGivesTheBox()
    {
        QTemporaryDir home;
        for (const char *name : {"XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "XDG_DATA_HOME", "XDG_DATA_DIRS"})
            qputenv(name, home.path().toUtf8());
        qunsetenv("XDG_CURRENT_DESKTOP");
        MDIForm1 *shell = openShell(101);
        emit shell->TlbMain->ButtonClick(QStringLiteral("e-mail"));
        QCOMPARE(m_s->host->boxes.size(), 1);
        QCOMPARE(m_s->host->boxes[0].text,
            QStringLiteral("Δεν μπορώ να βρώ κάποιο πρόγραμμα αποστολής e-mail\r\n"
                           "εγκατεστημένο στον υπολογιστή σας"));
        QCOMPARE(m_s->host->boxes[0].style, 16);
        QCOMPARE(m_s->host->boxes[0].title, QStringLiteral("Τρεμίδια"));
    }

    void mailStartsTheRegisteredClient()
    {
        QTemporaryDir home;
        const QString argvFile = home.filePath(QStringLiteral("argv.txt"));
        QVERIFY(
            testing::registerMailClient(home.path(), home.filePath(QStringLiteral("mail client")), argvFile));

        startProgramsForReal();
        MDIForm1 *shell = openShell(101);
        emit shell->TlbMain->ButtonClick(QStringLiteral("e-mail"));
        QVERIFY(m_s->host->boxes.isEmpty());
        QCOMPARE(m_s->host->launches.size(), 1);
        QTRY_VERIFY(QFileInfo::exists(argvFile));
        QCOMPARE(testing::readRecorded(argvFile), QStringList());
    }

    void networkWithoutTheProgramGivesTheRunTimeError()
    {
        QDir(platform::applicationFolder() + QStringLiteral("/Network")).removeRecursively();
        MDIForm1 *shell = openShell(101);
        emit shell->TlbMain->ButtonClick(QStringLiteral("Network"));
        QCOMPARE(m_s->host->boxes.size(), 1);
        QVERIFY(m_s->host->boxes[0].text.startsWith(QStringLiteral("Λάθος # 53\r\n")));
        QCOMPARE(m_s->host->boxes[0].style, 16);
        QCOMPARE(m_s->host->boxes[0].title, QStringLiteral("Τρεμίδια"));
    }

    void networkStartsTheConferenceProgram()
    {
        const QString folder = platform::applicationFolder() + QStringLiteral("/Network");
        QTemporaryDir out;
        const QString argvFile = out.filePath(QStringLiteral("argv.txt"));
        QVERIFY(testing::writeRecorder(folder + QStringLiteral("/conference.exe"), argvFile));
        startProgramsForReal();
        MDIForm1 *shell = openShell(101);
        emit shell->TlbMain->ButtonClick(QStringLiteral("Network"));
        QVERIFY(m_s->host->boxes.isEmpty());
        QCOMPARE(m_s->host->launches.size(), 1);
        QTRY_VERIFY(QFileInfo::exists(argvFile));
        QCOMPARE(testing::readRecorded(argvFile), QStringList());
        QDir(folder).removeRecursively();
    }

    void keysWithoutActionDoNothing()
    {
        MDIForm1 *shell = openShell(106);
        for (const QString &key :
            {QStringLiteral("Sound"), QStringLiteral("nonsense"), QString(), QStringLiteral("Search"),
                QStringLiteral("Notes"), QStringLiteral("drawing"), QStringLiteral("SearchResources")})
            emit shell->TlbMain->ButtonClick(key);
        for (QAction *a : {shell->mnuMoys1, shell->mnuMous2, shell->mnufacilities, shell->mnuHelp})
            a->trigger();
        QVERIFY(m_s->host->boxes.isEmpty());
        QVERIFY(shell->isVisible());
        QCOMPARE(shell->mdiArea()->subWindowList().size(), 6);
        QCOMPARE(m_s->host->ends, 0);
    }

    void navigationKeyOpensTheTree()
    {
        MDIForm1 *shell = openShell(106);
        emit shell->TlbMain->ButtonClick(QStringLiteral("Ploigisi"));
        frmPloigisi *tree = shell->findChild<frmPloigisi *>();
        QVERIFY(tree);
        QVERIFY(tree->isVisible());
        emit shell->TlbMain->ButtonClick(QStringLiteral("Ploigisi"));
        QCOMPARE(shell->findChildren<frmPloigisi *>().size(), 1);
    }

    void theBarStandsOnTopAndItsButtonsReachTheShell()
    {
        MDIForm1 *shell = openShell(106);
        QVERIFY(QTest::qWaitForWindowExposed(shell));
        QCOMPARE(shell->TlbMain->width(), shell->centralWidget()->width());
        QCOMPARE(shell->TlbMain->y(), 0);
        QVERIFY(shell->mdiArea()->y() >= shell->TlbMain->height());
        // The bar keeps the height of its buttons, whatever the shell's layout offers.
        QCOMPARE(shell->TlbMain->Height(), shell->TlbMain->Btn1[0]->Height() + 90);
        Btn *ploigisi = nullptr;
        for (Btn *b : shell->TlbMain->Btn1)
            if (b->Tag() == u"Ploigisi")
                ploigisi = b;
        QVERIFY(ploigisi);
        QTest::mouseClick(ploigisi, Qt::LeftButton, {}, ploigisi->rect().center());
        QVERIFY(shell->findChild<frmPloigisi *>());
    }

    void unloadShowsTheRealStartScreen()
    {
        registerShellWindows(session());
        MDIForm1 *shell = openShell(101);
        shell->mnuExit->trigger();
        flushDeletes();
        QCOMPARE(visibleTopLevels().size(), 1);
        QVERIFY(qobject_cast<frmNewFirst *>(visibleTopLevels().first()));
    }

    void togglesOpenAndCloseTheirWindowAndTheWindowKeepsTheMark()
    {
        QPointer<QWidget> notes;
        session().setWindowFactory(Session::Window::Notes, [&notes](Session &) -> QWidget * {
            notes = new QWidget;
            notes->setWindowTitle(QStringLiteral("Σημειώσεις"));
            notes->resize(200, 150);
            return notes;
        });
        MDIForm1 *shell = openShell(101);
        QVERIFY(shell->mnuStudNotes->isCheckable());
        shell->mnuStudNotes->trigger();
        QVERIFY(notes && notes->isVisible());
        // The mark is the window's to set, not the click's.
        QVERIFY(!shell->mnuStudNotes->isChecked());
        shell->setToggleChecked(ShellWindow::Toggle::StudNotes, true);
        QVERIFY(shell->mnuStudNotes->isChecked());
        shell->mnuStudNotes->trigger();
        QVERIFY(shell->mnuStudNotes->isChecked());
        flushDeletes();
        QVERIFY(!notes || !notes->isVisible());
        session().setWindowFactory(Session::Window::Notes, {});

        // Without the window's part in the program, a toggle does nothing.
        shell->mnuCatalogue->trigger();
        QVERIFY(!shell->mnuCatalogue->isChecked());
        shell->mnuDraw->trigger();
        QVERIFY(!shell->mnuDraw->isChecked());
    }

    void tilingItemsDoWhatTheOtherOnesNameSays()
    {
        MDIForm1 *shell = openShell(101);
        QMdiArea *area = shell->mdiArea();
        QList<QMdiSubWindow *> windows;
        for (int i = 0; i < 2; ++i) {
            auto *w = new QWidget;
            w->resize(120, 80);
            windows << area->addSubWindow(w);
            windows.last()->show();
        }
        const QPoint tilePos = frameOf(shell->Tiles().at(0))->pos();
        const QRect client = area->viewport()->rect();

        shell->mnuTileHorizontal->trigger(); // side by side
        QCOMPARE(windows[0]->y(), 0);
        QCOMPARE(windows[1]->y(), 0);
        QCOMPARE(windows[0]->x(), 0);
        QCOMPARE(windows[1]->x(), client.width() / 2);
        QCOMPARE(windows[0]->height(), client.height());

        shell->mnuTileVertical->trigger(); // one above the other
        QCOMPARE(windows[0]->x(), 0);
        QCOMPARE(windows[1]->x(), 0);
        QCOMPARE(windows[1]->y(), client.height() / 2);
        QCOMPARE(windows[0]->width(), client.width());

        shell->mnuCascade->trigger();
        QVERIFY(windows[1]->x() > windows[0]->x());
        QVERIFY(windows[1]->y() > windows[0]->y());

        windows[0]->showMinimized();
        windows[1]->showMinimized();
        shell->mnuArrangeIcons->trigger();
        QCOMPARE(windows[0]->geometry().bottom(), client.height() - 1);
        QCOMPARE(windows[0]->x(), 0);
        QCOMPARE(windows[1]->x(), windows[0]->width());

        QCOMPARE(frameOf(shell->Tiles().at(0))->pos(), tilePos);
    }
};

QTEST_MAIN(tst_MDIForm1)
#include "tst_mdiform1.moc"
