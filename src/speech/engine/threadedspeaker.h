#pragma once

#include "speaker.h"

#include <QString>
#include <QTimer>

#include <functional>
#include <memory>

class QThread;

namespace platform {
class LateThreads;
}

namespace speech {

class SpeechEngine;

// A speaker whose engine lives on a thread of its own, so a speech service that stops
// answering can never freeze the windows: orders go to the engine queued, its answers
// come back as queued signals, and nothing here ever waits for it. The engine is started
// at the first question (a program that never reads aloud never starts the service); if
// it has not said it is ready within the time limit it counts as none, and unavailable()
// is emitted. An engine that answers after all is used from then on.
class ThreadedSpeaker final : public Speaker
{
    Q_OBJECT

public:
    // Called on the engine's thread, so the engine is made there.
    using EngineFactory = std::function<std::unique_ptr<SpeechEngine>()>;

    static constexpr int DefaultStartLimitMs = 3000;
    // How long leaving waits for an engine to finish what it is doing before the program
    // goes on without it.
    static constexpr int ExitWaitMs = 300;

    // An engine stuck in the speech service when the speaker goes: its thread is handed
    // to `late`, which outlives the speaker.
    ThreadedSpeaker(EngineFactory factory, platform::LateThreads &late,
        int startLimitMs = DefaultStartLimitMs, QObject *parent = nullptr);
    ~ThreadedSpeaker() override;
    Q_DISABLE_COPY_MOVE(ThreadedSpeaker)

    // True until the engine is known to be missing: an engine still starting is given the
    // benefit of the doubt, and what it is asked to say meanwhile is said once it is ready.
    bool available() override;
    bool speaking() const override { return m_speaking; }
    void say(const QString &text) override;
    void stop() override;
    void setRate(int percent) override;
    // Stops the engine and ends its thread, waiting up to `limit`; a thread that has not
    // ended by then goes to the late threads. Nothing can be said afterwards.
    void leave(std::chrono::milliseconds limit) override;

    // Whether the engine has said it is ready.
    bool ready() const { return m_state == State::Ready; }

private:
    enum class State { NotStarted, Starting, Ready, Missing };

    void start();
    void engineReady(bool available);
    void setSpeaking(bool now);

    EngineFactory m_factory;
    platform::LateThreads &m_late;
    QThread *m_thread = nullptr;
    QObject *m_host = nullptr; // lives on m_thread and owns the engine
    QTimer m_startLimit;
    State m_state = State::NotStarted;
    QString m_waiting; // asked for before the engine was ready
    bool m_speaking = false;
    int m_rate = 100;
    // The number of the last order sent; the engine's answers to earlier ones are old news.
    quint64 m_order = 0;
};

} // namespace speech
