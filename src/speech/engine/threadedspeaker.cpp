#include "threadedspeaker.h"

#include "speechengine.h"

#include <latethreads.h>

#include <QDeadlineTimer>
#include <QThread>

namespace speech {

namespace {

// Lives on the engine's thread and owns the engine; its signals reach the speaker queued.
class EngineHost final : public QObject
{
    Q_OBJECT

public:
    void start(const ThreadedSpeaker::EngineFactory &factory)
    {
        std::unique_ptr<SpeechEngine> made = factory ? factory() : nullptr;
        if (!made) {
            emit ready(false);
            return;
        }
        m_engine = made.release();
        m_engine->setParent(this);
        connect(m_engine, &SpeechEngine::ready, this, &EngineHost::ready);
        // Each answer carries the order it belongs to, so that the speaker can tell the
        // end of a text it has replaced from the end of the one it is reading.
        connect(m_engine, &SpeechEngine::speakingChanged, this,
            [this](bool speaking) { emit speakingChanged(speaking, m_order); });
        connect(m_engine, &SpeechEngine::wordReached, this,
            [this](int index) { emit wordReached(index, m_order); });
        m_engine->start();
    }
    void say(const QString &text, quint64 order)
    {
        m_order = order;
        if (m_engine)
            m_engine->say(text);
    }
    void stop(quint64 order)
    {
        m_order = order;
        if (m_engine)
            m_engine->stop();
    }
    void setRate(int percent)
    {
        if (m_engine)
            m_engine->setRate(percent);
    }

signals:
    void ready(bool available);
    void speakingChanged(bool speaking, quint64 order);
    void wordReached(int index, quint64 order);

private:
    SpeechEngine *m_engine = nullptr;
    quint64 m_order = 0;
};

} // namespace

ThreadedSpeaker::ThreadedSpeaker(
    EngineFactory factory, platform::LateThreads &late, int startLimitMs, QObject *parent)
    : Speaker(parent)
    , m_factory(std::move(factory))
    , m_late(late)
{
    m_startLimit.setSingleShot(true);
    m_startLimit.setInterval(startLimitMs);
    connect(&m_startLimit, &QTimer::timeout, this, [this] {
        if (m_state == State::Starting)
            engineReady(false);
    });
}

ThreadedSpeaker::~ThreadedSpeaker()
{
    leave(std::chrono::milliseconds(ExitWaitMs));
}

void ThreadedSpeaker::leave(std::chrono::milliseconds limit)
{
    m_startLimit.stop();
    m_waiting.clear();
    if (!m_thread)
        return;
    QObject::disconnect(m_host, nullptr, this, nullptr);
    auto *host = m_host;
    QMetaObject::invokeMethod(
        host, [host, order = ++m_order] { static_cast<EngineHost *>(host)->stop(order); },
        Qt::QueuedConnection);
    m_thread->quit();
    std::unique_ptr<QThread> thread(m_thread);
    m_thread = nullptr;
    m_host = nullptr;
    m_state = State::Missing;
    setSpeaking(false);
    // An engine stuck in the speech service must not keep the program from closing: it is
    // given a moment, then its thread goes to the late threads' owner, which joins it once
    // the service lets it go.
    if (!thread->wait(QDeadlineTimer(limit)))
        m_late.keep(std::move(thread));
}

bool ThreadedSpeaker::available()
{
    if (m_state == State::NotStarted)
        start();
    return m_state != State::Missing;
}

void ThreadedSpeaker::start()
{
    m_state = State::Starting;
    m_thread = new QThread;
    m_thread->setObjectName(QStringLiteral("speech"));
    auto *host = new EngineHost;
    host->moveToThread(m_thread);
    m_host = host;
    connect(m_thread, &QThread::finished, host, &QObject::deleteLater);
    connect(host, &EngineHost::ready, this, &ThreadedSpeaker::engineReady);
    connect(host, &EngineHost::speakingChanged, this, [this](bool now, quint64 order) {
        if (m_state == State::Ready && order == m_order)
            setSpeaking(now);
    });
    connect(host, &EngineHost::wordReached, this, [this](int index, quint64 order) {
        if (m_state == State::Ready && order == m_order && m_speaking)
            emit wordReached(index);
    });
    m_thread->start();
    QMetaObject::invokeMethod(
        host,
        [host, factory = m_factory, rate = m_rate] {
            host->start(factory);
            host->setRate(rate);
        },
        Qt::QueuedConnection);
    m_startLimit.start();
}

void ThreadedSpeaker::engineReady(bool available)
{
    m_startLimit.stop();
    if (available) {
        m_state = State::Ready;
        if (!m_waiting.isEmpty() && m_speaking)
            say(m_waiting);
        m_waiting.clear();
        return;
    }
    // Asked once: a missing engine is not looked for again at every press.
    const bool wasStarting = m_state == State::Starting;
    m_state = State::Missing;
    m_waiting.clear();
    setSpeaking(false);
    if (wasStarting)
        emit unavailable();
}

void ThreadedSpeaker::say(const QString &text)
{
    if (m_state == State::NotStarted)
        start();
    if (m_state == State::Missing || text.trimmed().isEmpty())
        return;
    // Counted as speaking from the request on: the engine tells its start a moment later,
    // and a second press in between means stop.
    setSpeaking(true);
    if (m_state == State::Starting) {
        m_waiting = text;
        return;
    }
    auto *host = static_cast<EngineHost *>(m_host);
    QMetaObject::invokeMethod(
        host, [host, text, order = ++m_order] { host->say(text, order); }, Qt::QueuedConnection);
}

void ThreadedSpeaker::setRate(int percent)
{
    m_rate = percent;
    if (!m_host)
        return;
    auto *host = static_cast<EngineHost *>(m_host);
    QMetaObject::invokeMethod(
        host, [host, percent] { host->setRate(percent); }, Qt::QueuedConnection);
}

void ThreadedSpeaker::stop()
{
    m_waiting.clear();
    if (m_host && m_state == State::Ready) {
        auto *host = static_cast<EngineHost *>(m_host);
        QMetaObject::invokeMethod(
            host, [host, order = ++m_order] { host->stop(order); }, Qt::QueuedConnection);
    }
    setSpeaking(false);
}

void ThreadedSpeaker::setSpeaking(bool now)
{
    if (now == m_speaking)
        return;
    m_speaking = now;
    emit speakingChanged(now);
}

} // namespace speech

#include "threadedspeaker.moc"
