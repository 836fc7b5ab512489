#include "readaloud.h"

#include "qtspeechengine.h"
#include "readable.h"
#include "threadedspeaker.h"

#include <msgbox.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>

namespace speech {

namespace {

// A window that closed as the pupil reached for the toolbar's key still counts as the
// one being read for this long.
constexpr qint64 LeftWindowGraceMs = 1500;

bool isReadKey(const QKeyEvent *key)
{
    return key->key() == Qt::Key_F9 && (key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace

QString readableTextOf(QWidget *widget)
{
    for (QWidget *w = widget; w; w = w->parentWidget()) {
        if (const auto *readable = dynamic_cast<const Readable *>(w))
            return readable->textToRead();
        if (w->isWindow())
            break;
    }
    return {};
}

ReadAloud::ReadAloud(SpeakerFactory speaker, platform::LateThreads &late)
    : m_makeSpeaker(std::move(speaker))
    , m_late(late)
{
    if (qApp)
        qApp->installEventFilter(this);
}

ReadAloud::~ReadAloud()
{
    leave(std::chrono::milliseconds(ThreadedSpeaker::ExitWaitMs));
}

void ReadAloud::leave(std::chrono::milliseconds limit)
{
    if (!m_speaker)
        return;
    m_speaker->disconnect(this);
    m_speaker->leave(limit);
    m_speaker.reset();
}

Speaker *ReadAloud::speaker()
{
    if (!m_speaker) {
        if (m_makeSpeaker)
            m_speaker = m_makeSpeaker(m_late);
        else
            m_speaker = std::make_unique<ThreadedSpeaker>(
                [] { return std::make_unique<QtSpeechEngine>(); }, m_late);
        connect(m_speaker.get(), &Speaker::unavailable, this, &ReadAloud::tellNoEngine);
    }
    return m_speaker.get();
}

bool ReadAloud::speaking() const
{
    return m_speaker && m_speaker->speaking();
}

QString ReadAloud::noEngineMessage()
{
    return QStringLiteral("Δεν υπάρχει πρόγραμμα φωνής στον υπολογιστή σας:") + QStringLiteral("\r\n")
        + QStringLiteral("τα κείμενα δεν μπορούν να διαβαστούν φωναχτά.");
}

void ReadAloud::stop()
{
    if (m_speaker)
        m_speaker->stop();
}

void ReadAloud::toggle(QWidget *pressedIn)
{
    if (speaking()) {
        stop();
        return;
    }
    const QString text = activeText(pressedIn).trimmed();
    if (text.isEmpty())
        return;
    Speaker *voice = speaker();
    if (!voice->available()) {
        tellNoEngine();
        return;
    }
    voice->say(text);
}

void ReadAloud::tellNoEngine()
{
    if (m_toldNoEngine)
        return;
    m_toldNoEngine = true;
    platform::MsgBox(noEngineMessage(), platform::vbInformation);
}

QString ReadAloud::activeText(QWidget *pressedIn) const
{
    QWidget *window = QApplication::activePopupWidget();
    if (!window)
        window = QApplication::activeWindow();

    QString text = readableTextOf(pressedIn);
    // The toolbar's key is pressed with the mouse, and the click has just closed the tip
    // the pupil was reading.
    if (text.isEmpty() && !pressedIn && m_leftAt.isValid() && m_leftAt.elapsed() <= LeftWindowGraceMs)
        text = m_leftText;
    if (text.isEmpty())
        text = readableTextOf(QApplication::focusWidget());
    if (text.isEmpty() && window) {
        // Inside the shell the active child window speaks for it.
        if (auto *area = window->findChild<QMdiArea *>()) {
            if (QMdiSubWindow *sub = area->activeSubWindow())
                text = readableTextOf(sub->widget());
        }
    }
    if (text.isEmpty())
        text = readableTextOf(window);
    return text;
}

bool ReadAloud::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride: {
        // Taken before any shortcut of the windows, so Escape stops the reading rather
        // than closing the window that is being read.
        auto *key = static_cast<QKeyEvent *>(event);
        if (isReadKey(key) || (key->key() == Qt::Key_Escape && speaking())) {
            event->accept();
            return true;
        }
        break;
    }
    case QEvent::KeyPress: {
        auto *key = static_cast<QKeyEvent *>(event);
        if (isReadKey(key)) {
            if (!key->isAutoRepeat())
                toggle(qobject_cast<QWidget *>(watched));
            return true;
        }
        if (key->key() == Qt::Key_Escape && speaking()) {
            stop();
            return true;
        }
        break;
    }
    case QEvent::WindowDeactivate: {
        auto *w = qobject_cast<QWidget *>(watched);
        if (w && w->isWindow() && dynamic_cast<Readable *>(w)) {
            m_leftText = readableTextOf(w);
            m_leftAt.start();
        }
        break;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace speech
