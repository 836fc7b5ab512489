#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

class QWidget;

namespace platform {
class LateThreads;
}

namespace speech {

class Speaker;

// Reading aloud for the whole program: the "Ήχος" key and F9 read the text of the active
// window (see Readable), a second press or Escape stops. Escape is taken from the
// windows only while something is being read; otherwise it does what it always did.
// Where the desktop has no speech engine, the first press says so and nothing fails.
// The session owns the reader; it listens to the application's keys while it lives.
class ReadAloud final : public QObject
{
    Q_OBJECT

public:
    // Makes the speaker at its first use, handing it the late threads' owner; tests give
    // a stand-in. Empty: the desktop's speech engine, on a thread of its own.
    using SpeakerFactory = std::function<std::unique_ptr<Speaker>(platform::LateThreads &late)>;

    ReadAloud(SpeakerFactory speaker, platform::LateThreads &late);
    ~ReadAloud() override;
    Q_DISABLE_COPY_MOVE(ReadAloud)

    // Reads the active window's text, or stops when something is being read. A key
    // brings the widget it was pressed in, whose window is asked first.
    void toggle(QWidget *pressedIn = nullptr);
    void stop();
    bool speaking() const;

    // What the active window offers: the text of the window the key was pressed in; for
    // a key pressed with the mouse, that of a window that gave up the activation a moment
    // ago (a tip closes when the pupil reaches for the toolbar's key); the focused
    // window's; inside the shell the active child's.
    QString activeText(QWidget *pressedIn = nullptr) const;

    // The message shown, once, where there is no speech engine.
    static QString noEngineMessage();

    Speaker *speaker();

    // Stops reading for good: the speaker's engine gets up to `limit` to finish, and the
    // speaker goes.
    void leave(std::chrono::milliseconds limit);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void tellNoEngine();

    SpeakerFactory m_makeSpeaker;
    platform::LateThreads &m_late;
    std::unique_ptr<Speaker> m_speaker;
    bool m_toldNoEngine = false;
    QString m_leftText; // the text of the window that last lost the activation
    QElapsedTimer m_leftAt;
};

// The text a widget or one of its parents offers to be read; empty when none does.
QString readableTextOf(QWidget *widget);

} // namespace speech
