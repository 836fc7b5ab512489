#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class QWidget;

namespace speech {

class Speaker;

// Reading aloud for the whole program: the "Ήχος" key and F9 read the text of the active
// window (see Readable), a second press or Escape stops. Escape is taken from the
// windows only while something is being read; otherwise it does what it always did.
// Where the desktop has no speech engine, the first press says so and nothing fails.
class ReadAloud final : public QObject
{
    Q_OBJECT

public:
    // The one reader, made at the first use; it listens to the keys from then on.
    static ReadAloud &instance();

    // Tests give a stand-in; an empty function brings back the desktop's speaker. The
    // speaker is made anew at the next use, and the reader forgets what it was told.
    using SpeakerFactory = std::function<std::unique_ptr<Speaker>()>;
    static void setSpeakerFactory(SpeakerFactory factory);

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

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    ReadAloud();
    ~ReadAloud() override;
    void tellNoEngine();

    std::unique_ptr<Speaker> m_speaker;
    bool m_toldNoEngine = false;
    QString m_leftText; // the text of the window that last lost the activation
    QElapsedTimer m_leftAt;
};

// The text a widget or one of its parents offers to be read; empty when none does.
QString readableTextOf(QWidget *widget);

} // namespace speech
