#pragma once

#include <QObject>
#include <QString>

namespace speech {

// The speech engine itself, living on a thread of its own (see ThreadedSpeaker): the
// desktop's speech service can stop answering, and a call into it then never returns.
// Every call comes on the engine's thread; the answers go back as signals.
class SpeechEngine : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Reaches the service; tells through ready() whether there is one that can speak.
    virtual void start() = 0;
    virtual void say(const QString &text) = 0;
    virtual void stop() = 0;

signals:
    void ready(bool available);
    void speakingChanged(bool speaking);
};

} // namespace speech
