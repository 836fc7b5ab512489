#include "../support/testsession.h"

#include <engines.h>
#include <fulltextindex.h>
#include <msgbox.h>
#include <player.h>
#include <readaloud.h>
#include <recoverystore.h>
#include <runtimeerror.h>
#include <session.h>
#include <speaker.h>
#include <speechengine.h>
#include <threadedspeaker.h>
#include <workkeeper.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;
using testing::TestSession;

namespace {

const QString SampleContent = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");
const QString Tone = QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/data/media/tone.wav");

// The process's threads of that name (media engines, speech engines), as the system
// lists them.
int threadsNamed(const QByteArray &name)
{
    int count = 0;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile comm(tasks.filePath(task + QStringLiteral("/comm")));
        if (comm.open(QIODevice::ReadOnly) && comm.readAll().trimmed() == name)
            ++count;
    }
    return count;
}

// A speech service that stopped answering: every call blocks until the test lets it go.
class HangingEngine final : public speech::SpeechEngine
{
public:
    HangingEngine(const std::atomic_bool &open, std::atomic_bool &reached)
        : m_open(open)
        , m_reached(reached)
    {
    }
    void start() override { hang(); }
    void say(const QString &) override { hang(); }
    void stop() override { hang(); }

private:
    void hang()
    {
        m_reached = true;
        while (!m_open)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }

    const std::atomic_bool &m_open;
    std::atomic_bool &m_reached;
};

} // namespace

class tst_Session : public QObject
{
    Q_OBJECT

private slots:
    void messageBoxesGoToTheSessionsHostWhileItLives();
    void windowsAreMadeByTheirFactoryOnceAndClosedAtTheEnd();
    void aBackgroundResultComesBackOnTheInterfaceThread();
    void aCancelledJobsResultIsDropped();
    void threeSessionsWithWorkUnderWayEndQuickly();
    void threeSessionsPlayingSpeakingAndIndexingEndWithinASecondAndLeaveNoEngine();
    void workOfAWindowStillOpenAtTheEndIsKeptForTheNextStart();
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

void tst_Session::threeSessionsPlayingSpeakingAndIndexingEndWithinASecondAndLeaveNoEngine()
{
    QVERIFY2(QFileInfo::exists(SampleContent), qPrintable(SampleContent));
    // Each round builds the index anew, in a cache of the test's own.
    QTemporaryDir cache;
    const QByteArray userCache = qgetenv("XDG_CACHE_HOME");
    qputenv("XDG_CACHE_HOME", QFile::encodeName(cache.path()));
    const auto restore = qScopeGuard([userCache] { qputenv("XDG_CACHE_HOME", userCache); });
    const int mediaBefore = threadsNamed("media engine");
    const int speechBefore = threadsNamed("speech");

    for (int round = 0; round < 3; ++round) {
        std::atomic_bool open = false;
        std::atomic_bool reached = false;
        auto s = std::make_unique<TestSession>(Session::Services {[&](platform::LateThreads &late) {
            return std::make_unique<speech::ThreadedSpeaker>(
                [&] { return std::make_unique<HangingEngine>(open, reached); }, late, 10000);
        }});
        // A check that fails returns early: the stuck engine is let go, or the late threads
        // would wait for it for ever.
        const auto letGo = qScopeGuard([&open] { open = true; });
        Session &session = *s;

        // A window of the session plays a sound.
        auto *window = new QWidget;
        session.adopt(window);
        auto *player = new media::Player(session.mediaEngines(), window);
        player->setSource(Tone);
        QTRY_COMPARE_WITH_TIMEOUT(player->mediaStatus(), media::Player::LoadedMedia, 10000);
        player->play();
        QTRY_VERIFY_WITH_TIMEOUT(player->position() > 0, 10000);
        QCOMPARE(player->playbackState(), media::Player::PlayingState);

        // The speech engine is stuck in the service.
        session.readAloud().speaker()->say(u"Ο Κλεισθένης μοίρασε τους Αθηναίους σε δέκα φυλές."_s);
        QTRY_VERIFY(reached);

        // The text search's index is being built.
        std::atomic_bool building = false;
        QObject context;
        session.background().run<bool>(
            &context,
            [&building](const std::atomic_bool &cancelled) {
                try {
                    fulltext::ensureIndex(SampleContent, [&](qint64, qint64) {
                        building = true;
                        std::this_thread::sleep_for(std::chrono::milliseconds(20));
                        return !cancelled;
                    });
                    return true;
                } catch (const platform::RuntimeError &) {
                    return false;
                }
            },
            [](bool) {});
        QTRY_VERIFY(building);
        QCOMPARE(session.mediaEngines().threads(), 1);
        QCOMPARE(threadsNamed("media engine"), mediaBefore + 1);
        QCOMPARE(threadsNamed("speech"), speechBefore + 1);

        QElapsedTimer clock;
        clock.start();
        s->session.reset();
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(threadsNamed("media engine"), mediaBefore);
        // The stuck speech engine went to the late threads, which join it once the
        // service lets it go.
        QCOMPARE(s->late.count(), 1);
        open = true;
        QVERIFY(s->late.waitForAll(std::chrono::milliseconds(5000)));
        QCOMPARE(threadsNamed("speech"), speechBefore);
        s.reset();
    }
}

void tst_Session::workOfAWindowStillOpenAtTheEndIsKeptForTheNextStart()
{
    QTemporaryDir state;
    const QByteArray userState = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", QFile::encodeName(state.path()));
    const auto restore = qScopeGuard([userState] { qputenv("XDG_STATE_HOME", userState); });
    QString own;
    {
        TestSession s;
        Session &session = s;
        auto *window = new QWidget;
        session.adopt(window);
        auto *keeper = new recovery::WorkKeeper(
            session.recovery(), QStringLiteral("notes"),
            [] {
                return std::optional(recovery::Work {"{\\rtf1 unsaved}", QStringLiteral("rtf"), {}});
            },
            window);
        keeper->keepNow();
        QCOMPARE(session.recovery().ownEntries().size(), 1);
        own = session.recovery().ownFolder();
    }
    // The window closed without its question, the copy stayed, and the folder is no
    // longer locked: the next start offers it.
    QVERIFY(QFileInfo::exists(own + QStringLiteral("/notes-1.rtf")));
    TestSession next;
    const QList<recovery::Entry> lost = next->recovery().lostWork();
    QCOMPARE(lost.size(), 1);
    QCOMPARE(lost.first().kind, QStringLiteral("notes"));
}

QTEST_MAIN(tst_Session)
#include "tst_session.moc"
