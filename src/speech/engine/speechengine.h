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
    // Says the text, in place of anything it was saying.
    virtual void say(const QString &text) = 0;
    virtual void stop() = 0;
    // The speed of what is said from now on, in percent of the normal speed.
    virtual void setRate(int /*percent*/) { }

signals:
    void ready(bool available);
    void speakingChanged(bool speaking);
    // The voice has reached the word of that number in the text it was given (see
    // findWords); an engine that cannot tell never says it.
    void wordReached(int index);
};

} // namespace speech
