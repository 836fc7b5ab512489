#pragma once

// Stands in for the desktop's speech engine: keeps what it is asked to say, and speaks
// until it is stopped or told that the reading has ended.

#include "../support/testsession.h"

#include <readaloud.h>
#include <speaker.h>

#include <QStringList>

#include <memory>

namespace testing {

class RecordingSpeaker final : public speech::Speaker
{
public:
    explicit RecordingSpeaker(bool engine = true)
        : m_engine(engine)
    {
    }

    bool available() override { return m_engine; }
    bool speaking() const override { return m_speaking; }
    void say(const QString &text) override
    {
        said << text;
        setSpeaking(true);
    }
    void stop() override
    {
        ++stops;
        setSpeaking(false);
    }
    void setRate(int percent) override { rates << percent; }
    // The engine has come to the end of the text.
    void finish() { setSpeaking(false); }
    // The voice reaches a word of the text last said.
    void reach(int index) { emit wordReached(index); }

    QStringList said;
    QList<int> rates; // every speed it was given, the last one in force
    int stops = 0;

private:
    void setSpeaking(bool now)
    {
        if (now == m_speaking)
            return;
        m_speaking = now;
        emit speakingChanged(now);
    }

    bool m_engine;
    bool m_speaking = false;
};

// A session whose reader speaks through a recording speaker, made at once; the reader
// owns it.
struct SpeakingSession
{
    RecordingSpeaker *speaker = nullptr;
    TestSession session;

    explicit SpeakingSession(bool engine = true)
        : session(Session::Services {[this, engine](platform::LateThreads &) {
            auto made = std::make_unique<RecordingSpeaker>(engine);
            speaker = made.get();
            return std::unique_ptr<speech::Speaker>(std::move(made));
        }})
    {
        reader().speaker();
    }

    speech::ReadAloud &reader() { return session->readAloud(); }
};

} // namespace testing
