#include "../outside/recorder.h"
#include "../support/deferreddeletes.h"
#include "../support/testsession.h"
#include "../viewing/fakeviewers.h"
#include "shellcontent.h"

#include <btn.h>
#include <childwindows.h>
#include <frmsmallbutton.h>
#include <mdiform1.h>
#include <session.h>
#include <tlb.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMdiSubWindow>
#include <QTemporaryDir>
#include <QTest>

using testing::FakeViewer;
using testing::flushDeletes;

namespace {

// A real double click: two presses through the window system, which makes the second
// one a double click, as a pupil's hand does.
void doubleClick(QWidget *target, QPoint pos)
{
    QWidget *top = target->window();
    QVERIFY(QTest::qWaitForWindowExposed(top));
    QTest::mouseDClick(top->windowHandle(), Qt::LeftButton, {}, target->mapTo(top, pos));
}

} // namespace

class tst_DoubleClicks : public QObject
{
    Q_OBJECT

    std::unique_ptr<testing::TestSession> m_s;
    Session &session() { return *m_s; }
    testing::ShellContent *m_content = nullptr;

    MDIForm1 *openShell(qint32 activityID)
    {
        auto *shell = qobject_cast<MDIForm1 *>(session().window(Session::Window::Shell));
        shell->setSelectedActivity(activityID);
        shell->show();
        return shell;
    }

private slots:
    void initTestCase()
    {
        m_content = new testing::ShellContent;
    }

    void cleanupTestCase()
    {
        delete m_content;
    }

    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        QVERIFY(m_content->open(session()));
        registerShellWindows(session());
        session().setWindowFactory(Session::Window::StartScreen, [](Session &) { return new QWidget; });
        FakeViewer::registerAll(session());
    }

    void cleanup()
    {
        for (QWidget *w : QApplication::topLevelWidgets())
            w->close();
        flushDeletes();
        for (QWidget *w : QApplication::topLevelWidgets())
            delete w;
        flushDeletes();
        m_s.reset();
    }

    void aDoubleClickOnAButtonIsOneClickThenOneDblClick()
    {
        QWidget window;
        auto *btn = new Btn(&window);
        QPixmap face(40, 30);
        face.fill(Qt::darkRed);
        btn->setPicture(face);
        window.resize(100, 80);
        btn->move(20, 20);
        window.show();
        QStringList order;
        connect(btn, &Btn::MouseDown, this, [&] { order << QStringLiteral("down"); });
        connect(btn, &Btn::MouseUp, this, [&] { order << QStringLiteral("up"); });
        connect(btn, &Btn::Click, this, [&] { order << QStringLiteral("click"); });
        connect(btn, &Btn::DblClick, this, [&] { order << QStringLiteral("dblclick"); });
        doubleClick(btn, QPoint(10, 10));
        QCOMPARE(order,
            (QStringList {QStringLiteral("down"), QStringLiteral("up"), QStringLiteral("click"),
                QStringLiteral("dblclick"), QStringLiteral("up")}));
        QCOMPARE(btn->currentFace(), Btn::Face::Normal);

        // The next single click is an ordinary one again.
        order.clear();
        QTest::mouseClick(btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(
            order, (QStringList {QStringLiteral("down"), QStringLiteral("up"), QStringLiteral("click")}));
    }

    void aDoubleClickOnTheMailKeyStartsOneMailProgram()
    {
        QTemporaryDir home;
        const QString client = home.filePath(QStringLiteral("mail client"));
        QVERIFY(testing::registerMailClient(home.path(), client, home.filePath(QStringLiteral("argv.txt"))));

        MDIForm1 *shell = openShell(101);
        Btn *mailKey = nullptr;
        for (Btn *key : shell->TlbMain->Btn1) {
            if (key->Tag() == u"e-mail")
                mailKey = key;
        }
        QVERIFY(mailKey);
        doubleClick(mailKey, QPoint(5, 5));
        QCOMPARE(m_s->host->launches.size(), 1);
        QCOMPARE(m_s->host->launches.at(0).program, client);
        QVERIFY(m_s->host->boxes.isEmpty());
    }

    void aDoubleClickOnATileRunsItsClickOnce()
    {
        // The second tile of this activity names a text whose file is gone: every click
        // on it says so, and a double click must say it once.
        MDIForm1 *shell = openShell(150);
        frmSmallButton *tile = shell->Tiles().at(1);
        QVERIFY(tile);
        doubleClick(tile->Image1, QPoint(10, 10));
        QCOMPARE(m_s->host->boxes.size(), 1);
        QCOMPARE(m_s->host->boxes.at(0).text, QStringLiteral("Η πηγή δεν είναι δυνατό να βρεθεί!!!"));

        // And a single click after it is a click again.
        QTest::mouseClick(tile->Image1, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(m_s->host->boxes.size(), 2);
    }

    void aDoubleClickOnATileOpensItsSource()
    {
        MDIForm1 *shell = openShell(106);
        frmSmallButton *tile = shell->Tiles().at(0);
        doubleClick(tile->Image1, QPoint(10, 10));
        auto *fake = qobject_cast<FakeViewer *>(tile->SourceForm());
        QVERIFY(fake);
        QCOMPARE(fake->loads, 1);
        QVERIFY(fake->isVisible());
        QVERIFY(tile->SourceOpen());
    }
};

QTEST_MAIN(tst_DoubleClicks)
#include "tst_doubleclicks.moc"
