#include "../support/testsession.h"

#include <msgbox.h>
#include <session.h>

#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

#include <atomic>
#include <thread>

using testing::TestSession;

class tst_Session : public QObject
{
    Q_OBJECT

private slots:
    void messageBoxesGoToTheSessionsHostWhileItLives();
    void windowsAreMadeByTheirFactoryOnceAndClosedAtTheEnd();
    void aBackgroundResultComesBackOnTheInterfaceThread();
    void aCancelledJobsResultIsDropped();
    void threeSessionsWithWorkUnderWayEndQuickly();
};

void tst_Session::messageBoxesGoToTheSessionsHostWhileItLives()
{
    QVERIFY(!platform::Host::active());
    {
        TestSession first;
        first.host->answers = {platform::vbNo};
        QCOMPARE(platform::MsgBox(QStringLiteral("Ερώτηση;"), platform::vbYesNoCancel), int(platform::vbNo));
        QCOMPARE(first.host->boxes.size(), 1);
        QCOMPARE(first.host->boxes.first().text, QStringLiteral("Ερώτηση;"));
        QCOMPARE(first.host->boxes.first().title, QStringLiteral("Τρεμίδια"));
        QCOMPARE(platform::Host::active(), first.host);
    }
    QVERIFY(!platform::Host::active());
}

void tst_Session::windowsAreMadeByTheirFactoryOnceAndClosedAtTheEnd()
{
    QPointer<QWidget> made;
    QPointer<QWidget> adopted;
    int calls = 0;
    {
        TestSession s;
        s->setWindowFactory(Session::Window::Index, [&](Session &) {
            ++calls;
            return new QWidget;
        });
        QVERIFY(!s->window(Session::Window::Index, false));
        made = s->window(Session::Window::Index);
        QVERIFY(made);
        QCOMPARE(s->window(Session::Window::Index), made.data());
        QCOMPARE(calls, 1);
        adopted = new QWidget;
        s->adopt(adopted);
    }
    QVERIFY(!made);
    QVERIFY(!adopted);
}

void tst_Session::aBackgroundResultComesBackOnTheInterfaceThread()
{
    TestSession s;
    QObject context;
    std::thread::id ranOn;
    std::thread::id cameBackOn;
    int result = 0;
    s->background().run<int>(
        &context,
        [&](const std::atomic_bool &) {
            ranOn = std::this_thread::get_id();
            return 42;
        },
        [&](int value) {
            cameBackOn = std::this_thread::get_id();
            result = value;
        });
    QTRY_COMPARE(result, 42);
    QVERIFY(ranOn != std::this_thread::get_id());
    QCOMPARE(cameBackOn, std::this_thread::get_id());
}

void tst_Session::aCancelledJobsResultIsDropped()
{
    TestSession s;
    QObject context;
    std::atomic_bool started = false;
    bool delivered = false;
    const auto flag = s->background().run<int>(
        &context,
        [&](const std::atomic_bool &cancelled) {
            started = true;
            while (!cancelled)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            return 1;
        },
        [&](int) { delivered = true; });
    QTRY_VERIFY(started);
    Background::cancel(flag);
    QVERIFY(s->background().waitForDone(5000));
    QTest::qWait(50);
    QVERIFY(!delivered);
}

void tst_Session::threeSessionsWithWorkUnderWayEndQuickly()
{
    for (int round = 0; round < 3; ++round) {
        auto s = std::make_unique<TestSession>();
        std::atomic_bool started = false;
        (*s)->background().run<int>(
            nullptr,
            [&](const std::atomic_bool &cancelled) {
                started = true;
                while (!cancelled)
                    std::this_thread::sleep_for(std::chrono::milliseconds(5));
                return 0;
            },
            [](int) {});
        QTRY_VERIFY(started);
        QElapsedTimer clock;
        clock.start();
        s.reset();
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    }
}

QTEST_MAIN(tst_Session)
#include "tst_session.moc"
