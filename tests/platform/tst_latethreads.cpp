// Threads handed over after their owner's bound: kept until they end, joined then, and
// never let go of before.

#include <latethreads.h>

#include <QElapsedTimer>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>
#include <thread>

using namespace std::chrono_literals;

namespace {

// A thread stuck until the test lets it go, as one inside a library that does not answer.
struct StuckThread
{
    std::atomic_bool open = false;
    std::shared_ptr<std::atomic_bool> ended = std::make_shared<std::atomic_bool>(false);

    std::thread start()
    {
        return std::thread([this, ended = ended] {
            while (!open)
                std::this_thread::sleep_for(2ms);
            *ended = true;
        });
    }
};

} // namespace

class tst_LateThreads : public QObject
{
    Q_OBJECT

private slots:
    void aThreadIsKeptUntilItEndsAndJoinedThen()
    {
        platform::LateThreads late;
        StuckThread stuck;
        late.keep(stuck.start(), stuck.ended);
        QCOMPARE(late.count(), 1);
        QElapsedTimer clock;
        clock.start();
        QVERIFY(!late.waitForAll(100ms));
        QVERIFY(clock.elapsed() >= 90);
        QCOMPARE(late.count(), 1);
        stuck.open = true;
        QVERIFY(late.waitForAll(5000ms));
        QCOMPARE(late.count(), 0);
    }

    void aQThreadIsKeptUntilItFinishes()
    {
        platform::LateThreads late;
        std::atomic_bool open = false;
        std::unique_ptr<QThread> thread(QThread::create([&open] {
            while (!open)
                std::this_thread::sleep_for(2ms);
        }));
        thread->start();
        late.keep(std::move(thread));
        QVERIFY(!late.waitForAll(50ms));
        open = true;
        QVERIFY(late.waitForAll(5000ms));
        QCOMPARE(late.count(), 0);
    }

    void threadsHandedOnBelongToTheNewOwner()
    {
        platform::LateThreads outer;
        StuckThread stuck;
        {
            platform::LateThreads inner;
            inner.keep(stuck.start(), stuck.ended);
            inner.moveTo(outer);
            QCOMPARE(inner.count(), 0);
        }
        QCOMPARE(outer.count(), 1);
        stuck.open = true;
        QVERIFY(outer.waitForAll(5000ms));
    }

    void theEndGivesTheCodeWhenEveryThreadHasEnded()
    {
        platform::LateThreads late;
        StuckThread stuck;
        late.keep(stuck.start(), stuck.ended);
        stuck.open = true;
        QCOMPARE(late.finish(7, 5000ms), 7);
    }
};

QTEST_GUILESS_MAIN(tst_LateThreads)
#include "tst_latethreads.moc"
