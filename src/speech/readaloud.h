#pragma once

#include "wordhighlight.h"
#include "words.h"

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

class QTextEdit;
class QWidget;

namespace platform {
class LateThreads;
}

namespace speech {

class Readable;
class Speaker;

// Reading aloud for the whole program: the "Ήχος" key and F9 read the text of the active
// window (see Readable), Ctrl+F9 reads from its cursor (or its selection); a second F9
// or Escape stops. While reading, Alt+Right and Alt+Left go to the next and the previous
// sentence, Alt+Up and Alt+Down read faster and slower; these keys and Escape are taken
// from the windows only while something is being read. A window with a text box sees
// each word marked in it as the voice reaches it; one that paints its text itself is
// told the word to mark (Readable::highlightWord). The speed is the pupil's, kept in the
// user's settings. Where the desktop has no speech engine, the first press says so and
// nothing fails. The session owns the reader; it listens to the application's keys while
// it lives.
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
    // Reads the active window's selection, or its text from the cursor on.
    void readFromCursor(QWidget *pressedIn = nullptr);
    void stop();
    bool speaking() const;

    // While reading: goes on from the start of the next sentence, or of the previous one.
    void nextSentence();
    void previousSentence();

    // The reading speed, in percent of the voice's normal speed (50 to 250, in steps of
    // 10), kept in the user's settings; a change while reading goes on from the word
    // being said at the new speed.
    int rate() const { return m_rate; }
    void setRate(int percent);
    void faster();
    void slower();

    // What the active window offers: the text of the window the key was pressed in; for
    // a key pressed with the mouse, that of a window that gave up the activation a moment
    // ago (a tip closes when the pupil reaches for the toolbar's key); the focused
    // window's; inside the shell the active child's.
    QString activeText(QWidget *pressedIn = nullptr) const;

    // The text box being read and the word marked in it (its place in the box, or in the
    // text of a window that marks the word itself; -1 none).
    QTextEdit *boxBeingRead() const { return m_reading.box; }
    int markedWord() const
    {
        if (m_reading.box)
            return m_highlight.position();
        return m_reading.window ? m_reading.marked : -1;
    }

    // The message shown, once, where there is no speech engine.
    static QString noEngineMessage();

    Speaker *speaker();

    // Stops reading for good: the speaker's engine gets up to `limit` to finish, and the
    // speaker goes.
    void leave(std::chrono::milliseconds limit);

signals:
    void rateChanged(int percent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // What a window offers to be read.
    struct Source
    {
        QString text;
        QTextEdit *box = nullptr;
        // A window without a box that marks the word itself.
        QPointer<QWidget> window;
        Readable *marker = nullptr;
    };
    // The text being read and where it stands in its box.
    struct Reading
    {
        QPointer<QTextEdit> box;
        int base = 0; // where the text starts in the box
        QString text; // all that was asked for
        int from = 0; // where in it the voice was last sent from
        QList<Word> words; // the words of what was sent, from `from` on
        int word = -1; // the last one the voice reached
        // Or the window that marks the word itself (gone with it: no mark), and where the
        // mark stands in its text.
        QPointer<QWidget> window;
        Readable *marker = nullptr;
        int marked = -1;
    };
    enum class Start { Whole, FromCursor };

    Source activeSource(QWidget *pressedIn) const;
    void read(QWidget *pressedIn, Start start);
    void sayFrom(int from);
    int placeInText() const; // where the voice is, in the reading's text
    void onWord(int index);
    // Marks `length` characters from `place` in the reading's text; takes the mark away.
    void markWord(int place, int length);
    void clearMark();
    void onSpeaking(bool now);
    void endReading();
    bool handleKey(const QKeyEvent *key, bool press);
    void tellNoEngine();

    SpeakerFactory m_makeSpeaker;
    platform::LateThreads &m_late;
    std::unique_ptr<Speaker> m_speaker;
    bool m_toldNoEngine = false;
    QString m_leftText; // the text of the window that last lost the activation
    QElapsedTimer m_leftAt;
    int m_rate;
    Reading m_reading;
    WordHighlight m_highlight;
};

// The text a widget or one of its parents offers to be read; empty when none does.
QString readableTextOf(QWidget *widget);

} // namespace speech
