#include "../support/testsession.h"
#include "textwindow.h"

#include <readable.h>
#include <readaloud.h>
#include <speechengine.h>
#include <threadedspeaker.h>

#include <QElapsedTimer>
#include <QMutex>
#include <QPlainTextEdit>
#include <QPointer>
#include <QSemaphore>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>

#include <atomic>
#include <memory>

using namespace Qt::StringLiterals;

using testing::TextWindow;

namespace {

// What the engines below saw, written on the engine's thread and read by the test.
struct EngineLog
{
    QMutex mutex;
    QStringList said;
    int stops = 0;
    QThread *thread = nullptr;
    std::atomic<int> made {0};

    QStringList saidSoFar()
    {
        QMutexLocker lock(&mutex);
        return said;
    }
    int stopsSoFar()
    {
        QMutexLocker lock(&mutex);
        return stops;
    }
};

// Speaks at once and until it is stopped.
class WorkingEngine final : public speech::SpeechEngine
{
public:
    explicit WorkingEngine(EngineLog &log)
        : m_log(log)
    {
        ++m_log.made;
    }
    void start() override
    {
        {
            QMutexLocker lock(&m_log.mutex);
            m_log.thread = QThread::currentThread();
        }
        emit ready(true);
    }
    void say(const QString &text) override
    {
        {
            QMutexLocker lock(&m_log.mutex);
            m_log.said << text;
        }
        emit speakingChanged(true);
    }
    void stop() override
    {
        {
            QMutexLocker lock(&m_log.mutex);
            ++m_log.stops;
        }
        emit speakingChanged(false);
    }

private:
    EngineLog &m_log;
};

// A speech service that stopped answering: starting does not return until the test opens
// the gate, long after the speaker has gone.
class HangingEngine final : public speech::SpeechEngine
{
public:
    explicit HangingEngine(EngineLog &log, QSemaphore *gate)
        : m_gate(gate)
    {
        ++log.made;
    }
    void start() override { m_gate->acquire(); }
    void say(const QString &) override { }
    void stop() override { }

private:
    QSemaphore *m_gate;
};

// An engine that answers at once that there is no service.
class MissingEngine final : public speech::SpeechEngine
{
public:
    void start() override { emit ready(false); }
    void say(const QString &) override { }
    void stop() override { }
};

} // namespace

class tst_ReadAloudThread : public QObject
{
    Q_OBJECT

    // Outlives the speaker, which cleanup() lets go of: the engine writes to it to the end.
    std::unique_ptr<EngineLog> m_log;
    std::unique_ptr<testing::TestSession> m_session;
    QPointer<TextWindow> m_window;

    speech::ReadAloud &reader() { return m_session->session->readAloud(); }
    QList<testing::ShownBox> &boxes() { return m_session->host->boxes; }

    TextWindow *showWindow(const QString &text)
    {
        m_window = testing::showTextWindow(text);
        return m_window;
    }

    void useEngine(speech::ThreadedSpeaker::EngineFactory factory, int startLimitMs)
    {
        m_session.reset();
        m_session = std::make_unique<testing::TestSession>(
            Session::Services {[factory, startLimitMs](platform::LateThreads &late) {
                return std::make_unique<speech::ThreadedSpeaker>(factory, late, startLimitMs);
            }});
    }

private slots:
    void init()
    {
        m_log = std::make_unique<EngineLog>();
    }

    void cleanup()
    {
        delete m_window;
        m_session.reset();
    }

    void aWorkingEngineSpeaksOnItsOwnThreadAndStops()
    {
        EngineLog &log = *m_log;
        useEngine([&log] { return std::make_unique<WorkingEngine>(log); }, 10000);
        TextWindow *w = showWindow(u"Ο Περικλής μίλησε στην Πνύκα."_s);

        QTest::keyClick(w->box, Qt::Key_F9);
        QVERIFY(reader().speaking());
        QTRY_COMPARE(log.saidSoFar(), QStringList {u"Ο Περικλής μίλησε στην Πνύκα."_s});
        {
            QMutexLocker lock(&log.mutex);
            QVERIFY(log.thread);
            QVERIFY(log.thread != QThread::currentThread());
        }

        QTest::keyClick(w->box, Qt::Key_Escape);
        QVERIFY(!reader().speaking());
        QTRY_COMPARE(log.stopsSoFar(), 1);
        // The engine's own word that it has stopped changes nothing.
        QTest::qWait(50);
        QVERIFY(!reader().speaking());

        // And reads again at the next press.
        QTest::keyClick(w->box, Qt::Key_F9);
        QTRY_COMPARE(log.saidSoFar().size(), 2);
        QCOMPARE(log.made.load(), 1);
        QVERIFY(boxes().isEmpty());
    }

    void anEngineThatNeverAnswersFreezesNothing()
    {
        EngineLog &log = *m_log;
        QSemaphore gate;
        useEngine([&log, &gate] { return std::make_unique<HangingEngine>(log, &gate); }, 300);
        TextWindow *w = showWindow(u"κείμενο"_s);

        int ticks = 0;
        QTimer clock;
        connect(&clock, &QTimer::timeout, this, [&ticks] { ++ticks; });
        clock.start(10);

        QTest::keyClick(w->box, Qt::Key_F9);
        // The press came back at once: the windows go on while the engine is asked.
        QVERIFY(ticks < 5);
        QTRY_COMPARE(boxes().size(), 1);
        QCOMPARE(boxes().first().text, speech::ReadAloud::noEngineMessage());
        QVERIFY2(ticks >= 10, qPrintable(u"the clock ticked %1 times"_s.arg(ticks)));
        QVERIFY(!reader().speaking());

        // Later presses neither ask again nor tell again.
        QTest::keyClick(w->box, Qt::Key_F9);
        QTest::keyClick(w->box, Qt::Key_F9);
        QTest::qWait(400);
        QCOMPARE(boxes().size(), 1);
        QCOMPARE(log.made.load(), 1);
        QVERIFY(!reader().speaking());

        // Letting the speaker go does not wait for the stuck engine: the thread goes to
        // the late threads, and is joined once the service lets it go.
        QElapsedTimer leaving;
        leaving.start();
        m_session->session.reset();
        QVERIFY2(leaving.elapsed() < 5000, "leaving waited for the stuck engine");
        const int before = ticks;
        QTRY_VERIFY(ticks > before);
        QCOMPARE(m_session->late.count(), 1);
        gate.release();
        QVERIFY(m_session->late.waitForAll(std::chrono::milliseconds(5000)));
    }

    void aMissingServiceIsToldOnce()
    {
        useEngine([] { return std::make_unique<MissingEngine>(); }, 10000);
        TextWindow *w = showWindow(u"κείμενο"_s);
        QTest::keyClick(w->box, Qt::Key_F9);
        QTRY_COMPARE(boxes().size(), 1);
        QTest::keyClick(w->box, Qt::Key_F9);
        QTest::qWait(50);
        QCOMPARE(boxes().size(), 1);
        QVERIFY(!reader().speaking());
    }
};

QTEST_MAIN(tst_ReadAloudThread)
#include "tst_readaloudthread.moc"
