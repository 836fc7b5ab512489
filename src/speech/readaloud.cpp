#include "readaloud.h"

#include "rate.h"
#include "readable.h"
#include "speaker.h"
#include "speechdengine.h"
#include "threadedspeaker.h"

#include <msgbox.h>
#include <settings.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QSettings>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

namespace speech {

namespace {

// A window that closed as the pupil reached for the toolbar's key still counts as the
// one being read for this long.
constexpr qint64 LeftWindowGraceMs = 1500;

// Where the pupil's reading speed is kept, in the user's settings.
const QString RateKey = QStringLiteral("Reading/Rate");

Qt::KeyboardModifiers modifiersOf(const QKeyEvent *key)
{
    return key->modifiers() & ~Qt::KeypadModifier;
}

// The widget that offers a widget's text: itself or a parent within its window.
QWidget *readableWidgetOf(QWidget *widget)
{
    for (QWidget *w = widget; w; w = w->parentWidget()) {
        if (dynamic_cast<Readable *>(w))
            return w;
        if (w->isWindow())
            break;
    }
    return nullptr;
}

Readable *readableOf(QWidget *widget)
{
    return dynamic_cast<Readable *>(readableWidgetOf(widget));
}

int steppedRate(int percent)
{
    const int clamped = clampedRate(percent);
    return SlowestRate + (clamped - SlowestRate + RateStep / 2) / RateStep * RateStep;
}

} // namespace

QString readableTextOf(QWidget *widget)
{
    const Readable *readable = readableOf(widget);
    return readable ? readable->textToRead() : QString();
}

ReadAloud::ReadAloud(SpeakerFactory speaker, platform::LateThreads &late)
    : m_makeSpeaker(std::move(speaker))
    , m_late(late)
{
    const QSettings settings(platform::userSettingsPath(), QSettings::IniFormat);
    m_rate = steppedRate(settings.value(RateKey, NormalRate).toInt());
    if (qApp)
        qApp->installEventFilter(this);
}

ReadAloud::~ReadAloud()
{
    leave(std::chrono::milliseconds(ThreadedSpeaker::ExitWaitMs));
}

void ReadAloud::leave(std::chrono::milliseconds limit)
{
    endReading();
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
            m_speaker
                = std::make_unique<ThreadedSpeaker>([] { return std::make_unique<SpeechdEngine>(); }, m_late);
        m_speaker->setRate(m_rate);
        connect(m_speaker.get(), &Speaker::unavailable, this, &ReadAloud::tellNoEngine);
        connect(m_speaker.get(), &Speaker::speakingChanged, this, &ReadAloud::onSpeaking);
        connect(m_speaker.get(), &Speaker::wordReached, this, &ReadAloud::onWord);
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
    endReading();
}

void ReadAloud::toggle(QWidget *pressedIn)
{
    if (speaking()) {
        stop();
        return;
    }
    read(pressedIn, Start::Whole);
}

void ReadAloud::readFromCursor(QWidget *pressedIn)
{
    read(pressedIn, Start::FromCursor);
}

void ReadAloud::read(QWidget *pressedIn, Start start)
{
    const Source source = activeSource(pressedIn);
    Reading reading;
    if (source.box) {
        // The box's own characters, one for one, so that a word's place in what is said
        // is its place in the box.
        const QString all = sayableText(source.box->document()->toRawText());
        // A box may put a selection it was given in place a moment later (RichTextBox
        // does, by a queued call): it is the pupil's selection all the same.
        QCoreApplication::sendPostedEvents(source.box, QEvent::MetaCall);
        const QTextCursor cursor = source.box->textCursor();
        int from = 0;
        int to = int(all.size());
        if (cursor.hasSelection()) {
            from = cursor.selectionStart();
            to = cursor.selectionEnd();
        } else if (start == Start::FromCursor) {
            from = cursor.position();
        }
        from = qBound(0, from, int(all.size()));
        to = qBound(from, to, int(all.size()));
        while (from < to && all.at(from).isSpace())
            ++from;
        while (to > from && all.at(to - 1).isSpace())
            --to;
        reading.box = source.box;
        reading.base = from;
        reading.text = all.mid(from, to - from);
    } else {
        reading.text = source.text.trimmed();
        if (source.window && source.marker && !reading.text.isEmpty()) {
            reading.window = source.window;
            reading.marker = source.marker;
            reading.base = int(source.text.indexOf(reading.text.front()));
        }
    }
    if (reading.text.isEmpty())
        return;
    Speaker *voice = speaker();
    if (!voice->available()) {
        tellNoEngine();
        return;
    }
    clearMark();
    m_reading = reading;
    sayFrom(0);
}

void ReadAloud::sayFrom(int from)
{
    m_reading.from = from;
    const QString said = m_reading.text.mid(from);
    m_reading.words = findWords(said);
    m_reading.word = -1;
    // The first word is marked at once: the pupil sees where the voice begins.
    if (!m_reading.words.isEmpty()) {
        const Word &first = m_reading.words.first();
        markWord(from + first.start, first.length);
    }
    m_speaker->say(said);
}

int ReadAloud::placeInText() const
{
    if (m_reading.word >= 0 && m_reading.word < m_reading.words.size())
        return m_reading.from + m_reading.words.at(m_reading.word).start;
    return m_reading.from;
}

void ReadAloud::onWord(int index)
{
    if (index < 0 || index >= m_reading.words.size())
        return;
    m_reading.word = index;
    const Word &word = m_reading.words.at(index);
    markWord(m_reading.from + word.start, word.length);
}

void ReadAloud::markWord(int place, int length)
{
    if (m_reading.box) {
        m_highlight.show(m_reading.box, m_reading.base + place, length);
    } else if (m_reading.window && m_reading.marker) {
        m_reading.marked = m_reading.base + place;
        m_reading.marker->highlightWord(m_reading.marked, length);
    }
}

void ReadAloud::clearMark()
{
    m_highlight.clear();
    if (m_reading.window && m_reading.marker)
        m_reading.marker->clearWordHighlight();
    m_reading.marked = -1;
}

void ReadAloud::onSpeaking(bool now)
{
    if (!now)
        endReading();
}

void ReadAloud::endReading()
{
    clearMark();
    m_reading = Reading();
}

void ReadAloud::nextSentence()
{
    if (!speaking() || m_reading.text.isEmpty())
        return;
    const int here = placeInText();
    for (const int start : sentenceStarts(m_reading.text)) {
        if (start > here && !findWords(m_reading.text.mid(start)).isEmpty()) {
            sayFrom(start);
            return;
        }
    }
}

void ReadAloud::previousSentence()
{
    if (!speaking() || m_reading.text.isEmpty())
        return;
    const int here = placeInText();
    const QList<int> starts = sentenceStarts(m_reading.text);
    int current = 0;
    for (int i = 0; i < starts.size() && starts.at(i) <= here; ++i)
        current = i;
    sayFrom(starts.at(qMax(current - 1, 0)));
}

void ReadAloud::setRate(int percent)
{
    const int rate = steppedRate(percent);
    if (rate == m_rate)
        return;
    m_rate = rate;
    QSettings settings(platform::userSettingsPath(), QSettings::IniFormat);
    settings.setValue(RateKey, rate);
    if (m_speaker) {
        m_speaker->setRate(rate);
        // The voice takes a new speed with its next text: go on from the word being said.
        if (speaking() && !m_reading.text.isEmpty())
            sayFrom(placeInText());
    }
    emit rateChanged(rate);
}

void ReadAloud::faster()
{
    setRate(m_rate + RateStep);
}

void ReadAloud::slower()
{
    setRate(m_rate - RateStep);
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
    return activeSource(pressedIn).text;
}

ReadAloud::Source ReadAloud::activeSource(QWidget *pressedIn) const
{
    const auto sourceOf = [](QWidget *widget) {
        Source source;
        QWidget *offering = readableWidgetOf(widget);
        if (Readable *readable = dynamic_cast<Readable *>(offering)) {
            source.text = readable->textToRead();
            source.box = readable->textBoxToRead();
            if (!source.box) {
                source.window = offering;
                source.marker = readable;
            }
        }
        return source;
    };
    const auto offers = [](const Source &source) { return source.box || !source.text.isEmpty(); };

    QWidget *window = QApplication::activePopupWidget();
    if (!window)
        window = QApplication::activeWindow();

    Source source = sourceOf(pressedIn);
    // The toolbar's key is pressed with the mouse, and the click has just closed the tip
    // the pupil was reading.
    // It is heard only: the window is closing, and shows no mark.
    if (!offers(source) && !pressedIn && m_leftAt.isValid() && m_leftAt.elapsed() <= LeftWindowGraceMs) {
        source = Source();
        source.text = m_leftText;
    }
    if (!offers(source))
        source = sourceOf(QApplication::focusWidget());
    if (!offers(source) && window) {
        // Inside the shell the active child window speaks for it.
        if (auto *area = window->findChild<QMdiArea *>()) {
            if (QMdiSubWindow *sub = area->activeSubWindow())
                source = sourceOf(sub->widget());
        }
    }
    if (!offers(source))
        source = sourceOf(window);
    return source;
}

bool ReadAloud::handleKey(const QKeyEvent *key, bool press)
{
    const Qt::KeyboardModifiers modifiers = modifiersOf(key);
    // F9 itself is read where it was pressed (eventFilter); here it is only claimed.
    if (key->key() == Qt::Key_F9 && (modifiers == Qt::NoModifier || modifiers == Qt::ControlModifier))
        return true;
    if (!speaking())
        return false;
    if (key->key() == Qt::Key_Escape && modifiers == Qt::NoModifier) {
        if (press)
            stop();
        return true;
    }
    if (modifiers != Qt::AltModifier)
        return false;
    switch (key->key()) {
    case Qt::Key_Right:
        if (press)
            nextSentence();
        return true;
    case Qt::Key_Left:
        if (press)
            previousSentence();
        return true;
    case Qt::Key_Up:
        if (press)
            faster();
        return true;
    case Qt::Key_Down:
        if (press)
            slower();
        return true;
    default:
        return false;
    }
}

bool ReadAloud::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride: {
        // Taken before any shortcut of the windows, so Escape stops the reading rather
        // than closing the window that is being read.
        if (handleKey(static_cast<QKeyEvent *>(event), false)) {
            event->accept();
            return true;
        }
        break;
    }
    case QEvent::KeyPress: {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_F9) {
            const Qt::KeyboardModifiers modifiers = modifiersOf(key);
            if (modifiers == Qt::NoModifier || modifiers == Qt::ControlModifier) {
                if (!key->isAutoRepeat()) {
                    auto *pressedIn = qobject_cast<QWidget *>(watched);
                    if (modifiers == Qt::ControlModifier)
                        readFromCursor(pressedIn);
                    else
                        toggle(pressedIn);
                }
                return true;
            }
        }
        if (handleKey(key, true))
            return true;
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
