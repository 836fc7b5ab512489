#include "../support/testsession.h"

#include "shellcontent.h"

#include <btn.h>
#include <childwindows.h>
#include <frmploigisi.h>
#include <main_routine.h>
#include <msgbox.h>
#include <session.h>
#include <shellwindow.h>

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMdiArea>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace {

// Records what the tree asks of the shell, in order.
class RecordingShell final : public QMainWindow, public ShellWindow
{
public:
    RecordingShell()
        : m_area(new QMdiArea)
    {
        setCentralWidget(m_area);
    }
    QWidget *window() override { return this; }
    QMdiArea *mdiArea() override { return m_area; }
    int mnuListUBound() const override { return 1; }
    QAction *mnuList(int) override { return nullptr; }
    QAction *windowListSeparator() override { return nullptr; }
    void setSelectedActivity(qint32 id) override { calls << QStringLiteral("SelectedActivity=%1").arg(id); }
    void LoadResources() override { calls << QStringLiteral("LoadResources"); }
    void UnloadResources() override { calls << QStringLiteral("UnloadResources"); }
    void setToggleChecked(Toggle, bool) override { }

    QStringList calls;

private:
    QMdiArea *m_area;
};

} // namespace

class tst_frmPloigisi : public QObject
{
    Q_OBJECT

    std::unique_ptr<testing::TestSession> m_s;
    Session &session() { return *m_s; }
    testing::ShellContent *m_content = nullptr;
    RecordingShell *m_shell = nullptr;

    frmPloigisi *openTree(qint32 activityID, qint32 scenarioID)
    {
        session().content().activityID = activityID;
        session().content().scenarioID = scenarioID;
        auto *tree = session().window<frmPloigisi>(Session::Window::Navigation);
        tree->show();
        return tree;
    }

    void clickNode(frmPloigisi *tree, const QString &key)
    {
        QTreeWidgetItem *item = tree->node(key);
        QVERIFY2(item, qPrintable(key));
        tree->TreeView1->setCurrentItem(item);
        emit tree->TreeView1->itemClicked(item, 0);
    }

private slots:
    void initTestCase() { m_content = new testing::ShellContent; }

    void cleanupTestCase() { delete m_content; }

    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        QVERIFY(m_content->open(session()));
        registerShellWindows(session());
        m_shell = new RecordingShell;
        session().setWindow(Session::Window::Shell, m_shell);
        m_shell->show();
    }

    void cleanup()
    {
        delete m_shell;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_s.reset();
    }

    void captionAndColour()
    {
        frmPloigisi *tree = openTree(101, 10);
        QCOMPARE(tree->windowTitle(), QStringLiteral("Θέματα - Σενάρια - Δραστηριότητες"));
        QCOMPARE(tree->palette().color(QPalette::Window), QColor(254, 238, 193));
        QVERIFY(!tree->TreeView2->isVisible());
    }

    void nodesCarryTheirKeysTextsAndTags()
    {
        frmPloigisi *tree = openTree(101, 10);
        QTreeWidgetItem *theme = tree->node(QStringLiteral("Th2"));
        QVERIFY(theme);
        QCOMPARE(theme->text(0), QStringLiteral("Θέμα: Η αθηναϊκή δημοκρατία"));
        QCOMPARE(frmPloigisi::nodeTag(theme), 2);
        QVERIFY(!theme->parent());
        QVERIFY(!theme->icon(0).isNull());

        QTreeWidgetItem *scenario = tree->node(QStringLiteral("Sc10"));
        QCOMPARE(scenario->text(0), QStringLiteral("Σενάριο: Ο Κλεισθένης"));
        QCOMPARE(scenario->parent(), theme);
        QCOMPARE(frmPloigisi::nodeTag(scenario), 10);

        QTreeWidgetItem *activity = tree->node(QStringLiteral("Ac101Sc10"));
        QCOMPARE(activity->text(0), QStringLiteral("Δραστηριότητα: Μία πηγή"));
        QCOMPARE(activity->parent(), scenario);
        QCOMPARE(frmPloigisi::nodeTag(activity), 101);
        QCOMPARE(frmPloigisi::nodeKey(activity), QStringLiteral("Ac101Sc10"));

        QCOMPARE(tree->TreeView1->topLevelItemCount(), 2);
        QCOMPARE(tree->TreeView1->topLevelItem(0), theme);
    }

    void activityBelowTwoScenariosIsTwoNodes()
    {
        frmPloigisi *tree = openTree(101, 10);
        QVERIFY(tree->node(QStringLiteral("Ac120Sc10")));
        QVERIFY(tree->node(QStringLiteral("Ac120Sc12")));
        QCOMPARE(tree->node(QStringLiteral("Ac120Sc12"))->parent(), tree->node(QStringLiteral("Sc12")));
    }

    void scenarioWithoutThemeOrWithAMissingThemeIsLeftOut()
    {
        frmPloigisi *tree = openTree(101, 10);
        QVERIFY(!tree->node(QStringLiteral("Sc31")));
        QVERIFY(!tree->node(QStringLiteral("Sc44")));
        QVERIFY(!tree->node(QStringLiteral("Ac140Sc44")));
        QVERIFY(m_s->host->boxes.isEmpty());
    }

    void theShownActivitySelectedAndGoOff()
    {
        frmPloigisi *tree = openTree(120, 12);
        QCOMPARE(tree->TreeView1->currentItem(), tree->node(QStringLiteral("Ac120Sc12")));
        QVERIFY(tree->node(QStringLiteral("Sc12"))->isExpanded());
        QVERIFY(tree->node(QStringLiteral("Th5"))->isExpanded());
        QCOMPARE(tree->PendingScenarioID(), 12);
        QVERIFY(!tree->cmdGo->isEnabled());
    }

    void activityInNoNodeLeavesNothingSelected()
    {
        frmPloigisi *tree = openTree(999, 10);
        QVERIFY(!tree->TreeView1->currentItem());
        QCOMPARE(tree->PendingScenarioID(), 0);
        QVERIFY(!tree->cmdGo->isEnabled());
        QVERIFY(m_s->host->boxes.isEmpty());
    }

    void anotherActivityTurnsGoOn()
    {
        frmPloigisi *tree = openTree(101, 10);
        clickNode(tree, QStringLiteral("Ac106Sc10"));
        QCOMPARE(tree->PendingActivityID(), 106);
        QVERIFY(tree->cmdGo->isEnabled());
        clickNode(tree, QStringLiteral("Th5"));
        QVERIFY(!tree->cmdGo->isEnabled());
        clickNode(tree, QStringLiteral("Ac106Sc10"));
        clickNode(tree, QStringLiteral("Sc12"));
        QVERIFY(!tree->cmdGo->isEnabled());
    }

    void theSameActivityBelowAnotherScenarioLeavesGoOff()
    {
        frmPloigisi *tree = openTree(120, 10);
        clickNode(tree, QStringLiteral("Ac120Sc12"));
        QCOMPARE(tree->PendingActivityID(), 120);
        QVERIFY(!tree->cmdGo->isEnabled());
    }

    void arrowKeysMoveTheNodeClickAlong()
    {
        frmPloigisi *tree = openTree(101, 10);
        QVERIFY(QTest::qWaitForWindowExposed(tree));
        QTreeWidgetItem *other = tree->node(QStringLiteral("Ac106Sc10"));
        QTreeWidget *view = tree->TreeView1;
        view->scrollToItem(other);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualItemRect(other).center());
        QCOMPARE(view->currentItem(), other);
        QVERIFY(tree->cmdGo->isEnabled());

        // Left from an activity goes up to its scenario: Go must follow and go off.
        QTest::keyClick(view, Qt::Key_Left);
        QCOMPARE(view->currentItem(), tree->node(QStringLiteral("Sc10")));
        QVERIFY(!tree->cmdGo->isEnabled());
        QTest::mouseClick(tree->cmdGo, Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(m_shell->calls.isEmpty());
        QVERIFY(tree->isVisible());

        // Down again onto an activity other than the shown one turns Go on.
        QTest::keyClick(view, Qt::Key_Down);
        QCOMPARE(view->currentItem(), tree->node(QStringLiteral("Ac101Sc10")));
        QVERIFY(!tree->cmdGo->isEnabled());
        QTest::keyClick(view, Qt::Key_Down);
        QCOMPARE(view->currentItem(), other);
        QCOMPARE(tree->PendingActivityID(), 106);
        QVERIFY(tree->cmdGo->isEnabled());
    }

    void homeEndAndATypedLetterRunTheNodeClick()
    {
        frmPloigisi *tree = openTree(101, 10);
        QTreeWidget *view = tree->TreeView1;
        QTest::keyClick(view, Qt::Key_Down);
        QVERIFY(view->currentItem() != tree->node(QStringLiteral("Ac101Sc10")));
        QTest::keyClick(view, Qt::Key_Home);
        QCOMPARE(view->currentItem(), view->topLevelItem(0));
        QVERIFY(!tree->cmdGo->isEnabled());

        // A typed letter goes to the next node whose text starts with it.
        view->setCurrentItem(tree->node(QStringLiteral("Sc10")));
        QKeyEvent typed(QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("Δ"));
        QApplication::sendEvent(view, &typed);
        QTreeWidgetItem *reached = view->currentItem();
        QVERIFY(frmPloigisi::nodeKey(reached).startsWith(QStringLiteral("Ac")));
        QCOMPARE(qint32(tree->PendingActivityID()), frmPloigisi::nodeTag(reached));
        QCOMPARE(tree->cmdGo->isEnabled(), frmPloigisi::nodeTag(reached) != 101);

        QTest::keyClick(view, Qt::Key_End);
        QTreeWidgetItem *last = view->currentItem();
        QVERIFY(last);
        QCOMPARE(tree->cmdGo->isEnabled(),
            frmPloigisi::nodeKey(last).startsWith(QStringLiteral("Ac")) && frmPloigisi::nodeTag(last) != 101);
    }

    void goTakesTheActivityReachedByKeyboard()
    {
        frmPloigisi *tree = openTree(101, 10);
        QTreeWidget *view = tree->TreeView1;
        QTest::keyClick(view, Qt::Key_Down);
        QCOMPARE(view->currentItem(), tree->node(QStringLiteral("Ac106Sc10")));
        QVERIFY(tree->cmdGo->isEnabled());
        QTest::mouseClick(tree->cmdGo, Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(m_shell->calls,
            (QStringList {QStringLiteral("UnloadResources"), QStringLiteral("SelectedActivity=106"),
                QStringLiteral("LoadResources")}));
    }

    void everyNodeShowsItsWholeNameAsItsTooltip()
    {
        frmPloigisi *tree = openTree(101, 10);
        int seen = 0;
        for (QTreeWidgetItemIterator it(tree->TreeView1); *it; ++it) {
            QCOMPARE((*it)->toolTip(0), (*it)->text(0));
            ++seen;
        }
        QVERIFY(seen > 5);
    }

    void activityIdAbove32767OverflowsAtTheClick()
    {
        frmPloigisi *tree = openTree(101, 10);
        clickNode(tree, QStringLiteral("Ac40000Sc12"));
        QCOMPARE(m_s->host->boxes.size(), 1);
        QCOMPARE(m_s->host->boxes[0].text, QStringLiteral("Λάθος # 6\r\nΥπερχείλιση"));
        QCOMPARE(m_s->host->boxes[0].style, 16);
        QCOMPARE(m_s->host->boxes[0].title, QStringLiteral("Τρεμίδια"));
        QVERIFY(!tree->cmdGo->isEnabled());
    }

    void goChangesTheActivityInTheShell()
    {
        QPointer<frmPloigisi> tree = openTree(101, 10);
        clickNode(tree, QStringLiteral("Ac120Sc12"));
        QVERIFY(tree->cmdGo->isEnabled());
        QTest::mouseClick(tree->cmdGo, Qt::LeftButton, {}, tree->cmdGo->rect().center());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!tree);
        QCOMPARE(m_shell->calls,
            (QStringList {QStringLiteral("UnloadResources"), QStringLiteral("SelectedActivity=120"),
                QStringLiteral("LoadResources")}));
        QCOMPARE(session().content().activityID, 120);
        QCOMPARE(session().content().scenarioID, 12);
        QVERIFY(m_s->host->boxes.isEmpty());
    }

    void theTreeIsMadeAfreshAfterItClosed()
    {
        QPointer<frmPloigisi> first = openTree(101, 10);
        QCOMPARE(session().window(Session::Window::Navigation), first.data());
        first->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!first);
        frmPloigisi *second = openTree(106, 10);
        QCOMPARE(second->TreeView1->currentItem(), second->node(QStringLiteral("Ac106Sc10")));
    }

    void theSchoolFileGivesTheWholePath()
    {
        const QString path = QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb");
        QVERIFY2(QFileInfo::exists(path), qPrintable(QStringLiteral("missing test data file: ") + path));
        std::unique_ptr<content::Database> course
            = std::exchange(session().content().database, content::Database::OpenDatabase(path));

        frmPloigisi *tree = openTree(120, 12);
        QCOMPARE(tree->TreeView1->topLevelItemCount(), 3);
        QCOMPARE(tree->node(QStringLiteral("Th17"))->childCount(), 0);
        QCOMPARE(tree->node(QStringLiteral("Sc31"))->parent(), tree->node(QStringLiteral("Th5")));
        QCOMPARE(tree->node(QStringLiteral("Sc31"))->childCount(), 0);
        QCOMPARE(tree->node(QStringLiteral("Sc10"))->childCount(), 3);
        QCOMPARE(tree->node(QStringLiteral("Sc12"))->childCount(), 3);
        QCOMPARE(tree->TreeView1->currentItem(), tree->node(QStringLiteral("Ac120Sc12")));
        QCOMPARE(tree->node(QStringLiteral("Ac101Sc10"))->text(0),
            QStringLiteral("Δραστηριότητα: Εντοπίστε στον χάρτη τους δήμους και τις τριττύες της Αττικής"));
        tree->close();
        session().content().database = std::move(course);
    }

    void treeFillsTheWindowAboveTheCentredGoButton()
    {
        frmPloigisi *tree = openTree(101, 10);
        tree->resize(300, 420);
        const int goHeight = tree->cmdGo->height();
        QCOMPARE(tree->TreeView1->geometry(), QRect(0, 0, 300, 420 - goHeight));
        QCOMPARE(tree->cmdGo->pos(), QPoint((300 - tree->cmdGo->width()) / 2, 420 - goHeight));
        tree->resize(20, 20);
        QCOMPARE(tree->TreeView1->height(), 0);
        QVERIFY(m_s->host->boxes.isEmpty());
    }
};

QTEST_MAIN(tst_frmPloigisi)
#include "tst_frmploigisi.moc"
