#pragma once

#include <QObject>
#include <QString>

#include <chrono>

namespace speech {

// What reads a text aloud. The program's own speaks through the desktop's speech engine;
// tests put a stand-in in its place that keeps what it was asked to say.
class Speaker : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Whether there is an engine that can speak at all.
    virtual bool available() = 0;
    virtual bool speaking() const = 0;
    // Says the text, in place of anything being said: still speaking, no stop between.
    virtual void say(const QString &text) = 0;
    virtual void stop() = 0;
    // The speed of what is said from now on, in percent of the voice's normal speed.
    virtual void setRate(int /*percent*/) { }
    // Stops for good as its owner ends: an engine on a thread of its own is given up to
    // `limit` to finish.
    virtual void leave(std::chrono::milliseconds /*limit*/) { stop(); }

signals:
    void speakingChanged(bool speaking);
    // The voice reached the word of that number (findWords) of the text last said.
    void wordReached(int index);
    // An engine that looked present did not come after all (it did not start in time).
    void unavailable();
};

} // namespace speech
