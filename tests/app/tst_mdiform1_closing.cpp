#include "../support/deferreddeletes.h"
#include "../support/testsession.h"
#include "../viewing/fakeviewers.h"
#include "shellcontent.h"

#include <childwindows.h>
#include <frmsmallbutton.h>
#include <mdiform1.h>
#include <session.h>
#include <tlb.h>

#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

using testing::FakeViewer;
using testing::flushDeletes;

namespace {

// What happened while the shell went, in order.
QStringList &journal()
{
    static QStringList entries;
    return entries;
}

// Stands in for the notepad: a child of the shell's area that keeps its own menu mark
// and writes down its closing, and may refuse to close as a window with a question could.
class NotesStandIn final : public QWidget
{
public:
    explicit NotesStandIn(Session &session)
        : m_session(session)
    {
        setAttribute(Qt::WA_DeleteOnClose);
        resize(240, 160);
    }
    bool refuse = false;
    int closings = 0;

protected:
    void showEvent(QShowEvent *event) override
    {
        QWidget::showEvent(event);
        m_session.shell(false)->setToggleChecked(ShellWindow::Toggle::StudNotes, true);
    }
    void closeEvent(QCloseEvent *event) override
    {
        ++closings;
        if (refuse) {
            journal() << QStringLiteral("notes refused");
            event->ignore();
            return;
        }
        // The shell must still stand when its child closes: the mark is cleared on it.
        ShellWindow *shell = m_session.shell(false);
        journal() << (shell ? QStringLiteral("notes closed in the shell")
                            : QStringLiteral("notes closed alone"));
        if (shell)
            shell->setToggleChecked(ShellWindow::Toggle::StudNotes, false);
        QWidget::closeEvent(event);
    }

private:
    Session &m_session;
};

class StartScreen final : public QWidget
{
public:
    StartScreen()
    {
        setAttribute(Qt::WA_DeleteOnClose);
        journal() << QStringLiteral("start screen");
    }
};

} // namespace

class tst_MDIForm1Closing : public QObject
{
    Q_OBJECT

    std::unique_ptr<testing::TestSession> m_s;
    Session &session() { return *m_s; }
    testing::ShellContent *m_content = nullptr;
    QPointer<NotesStandIn> m_notes;

    MDIForm1 *openShellWithNotesAndAViewer()
    {
        auto *shell = qobject_cast<MDIForm1 *>(session().window(Session::Window::Shell));
        shell->setSelectedActivity(106);
        shell->show();
        shell->mnuStudNotes->trigger();
        shell->Tiles().at(0)->Image1_Click();
        journal().clear();
        return shell;
    }

    // Each way out of the shell, as the pupil takes it.
    static void leave(MDIForm1 *shell, const QString &way)
    {
        if (way == u"menu exit")
            shell->mnuExit->trigger();
        else if (way == u"menu back")
            shell->mnuPrev->trigger();
        else if (way == u"window close")
            shell->close();
        else
            emit shell->TlbMain->ButtonClick(way);
    }

private slots:
    void initTestCase() { m_content = new testing::ShellContent; }

    void cleanupTestCase() { delete m_content; }

    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        QVERIFY(m_content->open(session()));
        registerShellWindows(session());
        session().setWindowFactory(
            Session::Window::StartScreen, [](Session &) -> QWidget * { return new StartScreen; });
        session().setWindowFactory(Session::Window::Notes, [this](Session &s) -> QWidget * {
            m_notes = new NotesStandIn(s);
            return m_notes;
        });
        FakeViewer::registerAll(session());
    }

    void cleanup()
    {
        if (m_notes)
            m_notes->refuse = false;
        for (QWidget *w : QApplication::topLevelWidgets())
            w->close();
        flushDeletes();
        for (QWidget *w : QApplication::topLevelWidgets())
            delete w;
        flushDeletes();
        QCOMPARE(session().shell(false), nullptr);
        m_s.reset();
    }

    void everyWayOutClosesTheChildrenThroughTheirOwnClosing_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<int>("ends");
        QTest::newRow("menu Έξοδος") << QStringLiteral("menu exit") << 0;
        QTest::newRow("menu Επιστροφή") << QStringLiteral("menu back") << 0;
        QTest::newRow("toolbar first") << QStringLiteral("first") << 0;
        QTest::newRow("toolbar prev") << QStringLiteral("prev") << 0;
        QTest::newRow("toolbar exit") << QStringLiteral("exit") << 1;
        QTest::newRow("the window's close") << QStringLiteral("window close") << 0;
    }

    void everyWayOutClosesTheChildrenThroughTheirOwnClosing()
    {
        QFETCH(QString, way);
        QFETCH(int, ends);
        MDIForm1 *shell = openShellWithNotesAndAViewer();
        QPointer<MDIForm1> guard(shell);
        QVERIFY(m_notes && m_notes->isVisible());
        QVERIFY(shell->mnuStudNotes->isChecked());
        QPointer<SourceViewer> viewer = shell->Tiles().at(0)->SourceForm();
        QVERIFY(viewer && viewer->isVisible());
        int viewerUnloads = 0;
        connect(viewer, &SourceViewer::OnUnload, this, [&viewerUnloads] { ++viewerUnloads; });
        QPointer<NotesStandIn> notes = m_notes;

        leave(shell, way);
        flushDeletes();

        QVERIFY(!guard);
        QVERIFY(!notes);
        QVERIFY(!viewer);
        QCOMPARE(viewerUnloads, 1);
        QCOMPARE(journal().count(QStringLiteral("notes closed in the shell")), 1);
        QCOMPARE(journal().count(QStringLiteral("notes closed alone")), 0);
        QCOMPARE(journal().count(QStringLiteral("start screen")), 1);
        QCOMPARE(m_s->host->ends, ends);
    }

    void theMarkIsClearedBeforeTheShellGoes()
    {
        MDIForm1 *shell = openShellWithNotesAndAViewer();
        bool markSeenCleared = false;
        connect(shell->mnuStudNotes, &QAction::toggled, this,
            [&markSeenCleared](bool checked) { markSeenCleared = !checked; });
        shell->mnuExit->trigger();
        QVERIFY(markSeenCleared);
    }

    void aChildThatStaysOpenKeepsTheShellOpen()
    {
        MDIForm1 *shell = openShellWithNotesAndAViewer();
        QPointer<MDIForm1> guard(shell);
        m_notes->refuse = true;
        shell->close();
        flushDeletes();
        QVERIFY(guard);
        QVERIFY(shell->isVisible());
        QCOMPARE(journal(), QStringList {QStringLiteral("notes refused")});
        // The board stays whole: the tiles close only after every other window has.
        for (const QPointer<frmSmallButton> &tile : shell->Tiles())
            QVERIFY(tile && tile->isVisible());
        QVERIFY(shell->Tiles().at(0)->SourceForm()->isVisible());

        // Once the child lets go, the shell closes as usual.
        m_notes->refuse = false;
        shell->close();
        flushDeletes();
        QVERIFY(!guard);
        QCOMPARE(journal().count(QStringLiteral("start screen")), 1);
    }

    void theTilesCloseBeforeTheShellUnloadsThem()
    {
        MDIForm1 *shell = openShellWithNotesAndAViewer();
        QList<QPointer<frmSmallButton>> tiles;
        for (const QPointer<frmSmallButton> &tile : shell->Tiles())
            tiles.append(tile);
        shell->close();
        flushDeletes();
        for (const QPointer<frmSmallButton> &tile : std::as_const(tiles))
            QVERIFY(!tile);
        QCOMPARE(m_s->host->boxes.count(), 0);
    }
};

QTEST_MAIN(tst_MDIForm1Closing)
#include "tst_mdiform1_closing.moc"
