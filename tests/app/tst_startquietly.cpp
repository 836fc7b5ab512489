// A normal start passes over no error: the program starts on the sample course as the run
// command starts it, and the pupil walks the start screen by mouse and by keys through
// every theme, scenario and activity, then goes on into the shell. Nothing may reach the
// program's logging categories on the way, since each line there is an error some routine
// went past.

#include "../support/testsession.h"

#include <checklistview.h>
#include <childwindows.h>
#include <database.h>
#include <frmnewfirst.h>
#include <main_routine.h>
#include <mdiform1.h>
#include <session.h>
#include <sourceviewer.h>
#include <viewingwindows.h>

#include <btn.h>

#include <QApplication>
#include <QFileInfo>
#include <QMutex>
#include <QPointer>
#include <QTest>

namespace {

QMutex logLock;
QStringList logged;
QtMessageHandler previousHandler = nullptr;

void recordProgramMessages(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const QLatin1StringView category(context.category ? context.category : "");
    if (type != QtDebugMsg && type != QtInfoMsg && category.startsWith(QLatin1StringView("tremidia."))) {
        const QMutexLocker lock(&logLock);
        logged << category + QStringLiteral(": ") + message;
    }
    if (previousHandler)
        previousHandler(type, context, message);
}

void clickBox(CheckListView *list, int index)
{
    QTreeWidgetItem *item = list->ListItems(index);
    list->scrollToItem(item);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->checkBoxRect(item).center());
}

void clickRow(CheckListView *list, int index)
{
    QTreeWidgetItem *item = list->ListItems(index);
    list->scrollToItem(item);
    const QRect row = list->visualItemRect(item);
    QTest::mouseClick(
        list->viewport(), Qt::LeftButton, {}, QPoint(row.left() + row.width() / 2, row.center().y()));
}

} // namespace

class tst_StartQuietly : public QObject
{
    Q_OBJECT

    std::unique_ptr<testing::TestSession> m_s;
    Session &session() { return *m_s; }
    QPointer<frmNewFirst> m_screen;

    static QStringList takeLogged()
    {
        const QMutexLocker lock(&logLock);
        return std::exchange(logged, {});
    }

    static frmNewFirst *startScreen()
    {
        for (QWidget *w : QApplication::topLevelWidgets())
            if (auto *screen = qobject_cast<frmNewFirst *>(w); screen && screen->isVisible())
                return screen;
        return nullptr;
    }

private slots:
    void initTestCase()
    {
        const QString config = QStringLiteral(TREMIDIA_BINARY_DIR "/sample-config");
        if (!QFileInfo::exists(config + QStringLiteral("/tremidia/tremidia.conf")))
            QSKIP("the sample course is not built");
        qputenv("XDG_CONFIG_HOME", config.toUtf8());
        previousHandler = qInstallMessageHandler(recordProgramMessages);
    }

    void cleanupTestCase() { qInstallMessageHandler(previousHandler); }

    // Each story starts the program afresh, as a pupil does.
    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        registerChildWindows(session());
        QVERIFY(Main(session()));
        m_screen = startScreen();
        QVERIFY(m_screen);
        QVERIFY(QTest::qWaitForWindowExposed(m_screen));
    }

    void cleanup()
    {
        const QStringList lines = takeLogged();
        QStringList boxes;
        for (const testing::ShownBox &box : std::as_const(m_s->host->boxes))
            boxes << box.text;
        for (QWidget *w : QApplication::topLevelWidgets())
            w->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_s.reset();
        QVERIFY2(lines.isEmpty(), qPrintable(lines.join(u'\n')));
        QVERIFY2(boxes.isEmpty(), qPrintable(boxes.join(u'\n')));
    }

    void theProgramStartsOnTheSample() { QVERIFY(m_screen->List2->count() > 0); }

    void everyThemeScenarioAndActivityIsPickedByMouse()
    {
        QVERIFY(m_screen);
        CheckListView *themes = m_screen->List2;
        CheckListView *scenarios = m_screen->List1;
        CheckListView *activities = m_screen->lvwActivities;
        for (int t = 1; t <= themes->count(); ++t) {
            clickBox(themes, t);
            QVERIFY(themes->isChecked(themes->ListItems(t)));
            for (int s = 1; s <= scenarios->count(); ++s) {
                clickBox(scenarios, s);
                QCOMPARE(m_screen->lastScenarioIndex(), s);
                for (int a = 1; a <= activities->count(); ++a) {
                    clickRow(activities, a);
                    clickBox(activities, a);
                }
                // The checked activity's box cleared again, and the next one picked.
                if (activities->count() > 1) {
                    clickBox(activities, activities->count());
                    clickBox(activities, 1);
                }
            }
            // The scenarios again by their rows, last to first.
            for (int s = scenarios->count(); s >= 1; --s)
                clickRow(scenarios, s);
        }
        // The themes by their rows, and the checked theme's box cleared and checked again.
        for (int t = themes->count(); t >= 1; --t)
            clickRow(themes, t);
        clickBox(themes, 1);
        clickBox(themes, 1);
    }

    void everyListIsWalkedByKeys()
    {
        QVERIFY(m_screen);
        m_screen->activateWindow();
        CheckListView *themes = m_screen->List2;
        themes->setFocus();
        QTRY_VERIFY(themes->hasFocus());
        for (int t = 1; t <= themes->count(); ++t) {
            themes->setCurrentItem(themes->ListItems(t));
            QTest::keyClick(themes, Qt::Key_Space);
            QTest::keyClick(themes, Qt::Key_Tab);
            CheckListView *scenarios = m_screen->List1;
            for (int s = 1; s <= scenarios->count(); ++s) {
                scenarios->setFocus();
                scenarios->setCurrentItem(scenarios->ListItems(s));
                QTest::keyClick(scenarios, Qt::Key_Space);
                CheckListView *activities = m_screen->lvwActivities;
                activities->setFocus();
                for (int a = 1; a < activities->count(); ++a)
                    QTest::keyClick(activities, Qt::Key_Down);
                QTest::keyClick(activities, Qt::Key_Space);
                QTest::keyClick(activities, Qt::Key_Home);
                QTest::keyClick(activities, Qt::Key_Space);
            }
            themes->setFocus();
        }
    }

    void goOpensTheShell()
    {
        QVERIFY(m_screen);
        CheckListView *themes = m_screen->List2;
        clickBox(themes, 1);
        clickBox(m_screen->List1, 1);
        QVERIFY(m_screen->cmdGo->isEnabled());
        QTest::keyClick(m_screen, Qt::Key_Return);
        QTRY_VERIFY(session().shell()->window()->isVisible());
        QTRY_VERIFY(!m_screen);
    }
};

QTEST_MAIN(tst_StartQuietly)
#include "tst_startquietly.moc"
