#include "../support/testsession.h"
#include "shownboxes.h"
#include "shellcontent.h"

#include <btn.h>
#include <checklistview.h>
#include <childwindows.h>
#include <frmnewfirst.h>
#include <frmploigisi.h>
#include <frmsmallbutton.h>
#include <mdiform1.h>
#include <msgbox.h>
#include <session.h>
#include <tlb.h>

#include <QApplication>
#include <QMdiArea>
#include <QTest>
#include <QTreeWidget>

// The pupil's road with the real windows: start screen, shell, tree, and back, many
// times over. At every stop exactly one of the two main windows is up, and no tile of
// an earlier activity is left behind.
class tst_MDIForm1RoundTrip : public QObject
{
    Q_OBJECT

    testing::ShellContent m_content;
    std::unique_ptr<testing::TestSession> m_s = std::make_unique<testing::TestSession>();
    Session &session() { return *m_s; }

    QStringList boxes() const { return testing::boxTexts(*m_s->host); }

    static QList<QWidget *> visibleTopLevels()
    {
        QList<QWidget *> shown;
        for (QWidget *w : QApplication::topLevelWidgets())
            if (w->isVisible() && (qobject_cast<frmNewFirst *>(w) || qobject_cast<MDIForm1 *>(w)))
                shown.append(w);
        return shown;
    }

    static int aliveTiles()
    {
        int count = 0;
        for (QWidget *w : QApplication::allWidgets())
            count += qobject_cast<frmSmallButton *>(w) ? 1 : 0;
        return count;
    }

    static void settle()
    {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents();
        }
    }

    static void checkItem(CheckListView *list, bool byKey, const QString &value)
    {
        for (int i = 1; i <= list->count(); ++i) {
            QTreeWidgetItem *item = list->ListItems(i);
            if ((byKey ? CheckListView::key(item) : CheckListView::tag(item)) == value) {
                QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->checkBoxRect(item).center());
                return;
            }
        }
        QFAIL(qPrintable(QStringLiteral("no item %1").arg(value)));
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_content.open(session()));
        registerShellWindows(session());
    }

    void cleanupTestCase() { m_s.reset(); }

    void startShellTreeAndBackTenTimes()
    {
        auto *first = new frmNewFirst(session());
        session().adopt(first);
        first->show();
        for (int round = 0; round < 10; ++round) {
            QCOMPARE(visibleTopLevels().size(), 1);
            auto *start = qobject_cast<frmNewFirst *>(visibleTopLevels().first());
            QVERIFY(start);
            checkItem(start->List2, true, QStringLiteral("T2"));
            checkItem(start->List1, true, QStringLiteral("Sc10"));
            checkItem(start->lvwActivities, false, QStringLiteral("113"));
            QVERIFY(start->cmdGo->isEnabled());
            QTest::mouseClick(start->cmdGo, Qt::LeftButton, {}, start->cmdGo->rect().center());
            settle();

            QCOMPARE(visibleTopLevels().size(), 1);
            auto *shell = qobject_cast<MDIForm1 *>(visibleTopLevels().first());
            QVERIFY(shell);
            QCOMPARE(shell->ResourceCount(), 13);
            QCOMPARE(aliveTiles(), 13);
            QCOMPARE(session().content().scenarioID, 10);

            emit shell->TlbMain->ButtonClick(QStringLiteral("Ploigisi"));
            frmPloigisi *tree = shell->findChild<frmPloigisi *>();
            QVERIFY(tree);
            QCOMPARE(tree->TreeView1->currentItem(), tree->node(QStringLiteral("Ac113Sc10")));
            QTreeWidgetItem *next = tree->node(QStringLiteral("Ac107Sc10"));
            tree->TreeView1->setCurrentItem(next);
            emit tree->TreeView1->itemClicked(next, 0);
            QTest::mouseClick(tree->cmdGo, Qt::LeftButton, {}, tree->cmdGo->rect().center());
            settle();
            QCOMPARE(shell->ResourceCount(), 7);
            QCOMPARE(aliveTiles(), 7);
            QCOMPARE(session().content().activityID, 107);

            if (round % 2)
                shell->mnuPrev->trigger();
            else
                shell->mnuExit->trigger();
            settle();
            QCOMPARE(aliveTiles(), 0);
            QCOMPARE(session().shell(false), nullptr);
        }
        QCOMPARE(visibleTopLevels().size(), 1);
        QVERIFY(qobject_cast<frmNewFirst *>(visibleTopLevels().first()));
        QVERIFY2(boxes().isEmpty(), qPrintable(boxes().join(u'|')));
    }
};

QTEST_MAIN(tst_MDIForm1RoundTrip)
#include "tst_mdiform1_roundtrip.moc"
