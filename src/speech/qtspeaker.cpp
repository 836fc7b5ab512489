#include "qtspeaker.h"

#include <QLocale>
#include <QTextToSpeech>
#include <QVoice>

namespace speech {

QtSpeaker::QtSpeaker(QObject *parent)
    : Speaker(parent)
{
}

QtSpeaker::~QtSpeaker() = default;

QTextToSpeech *QtSpeaker::engine()
{
    if (m_tried)
        return m_engine;
    m_tried = true;
    // Without a plugin there is nothing to make; a plugin whose service cannot be
    // reached gives an engine in the error state, which counts as none.
    if (QTextToSpeech::availableEngines().isEmpty())
        return nullptr;
    auto *engine = new QTextToSpeech(this);
    if (engine->state() == QTextToSpeech::Error) {
        delete engine;
        return nullptr;
    }
    m_engine = engine;
    connect(m_engine, &QTextToSpeech::stateChanged, this, [this](QTextToSpeech::State state) {
        const bool now = state == QTextToSpeech::Speaking;
        if (now != m_speaking) {
            m_speaking = now;
            emit speakingChanged(now);
        }
    });
    chooseGreekVoice();
    return m_engine;
}

void QtSpeaker::chooseGreekVoice()
{
    // The texts are Greek: a voice of another language spells them letter by letter.
    // The engine names its voices by locale, so the locale picks the voice.
    QLocale greek(QLocale::Greek, QLocale::Greece);
    const QList<QLocale> locales = m_engine->availableLocales();
    for (const QLocale &locale : locales) {
        if (locale.language() == QLocale::Greek) {
            greek = locale;
            break;
        }
    }
    m_engine->setLocale(greek);
    const QList<QVoice> voices = m_engine->availableVoices();
    if (!voices.isEmpty())
        m_engine->setVoice(voices.first());
}

bool QtSpeaker::available()
{
    return engine() != nullptr;
}

void QtSpeaker::say(const QString &text)
{
    QTextToSpeech *tts = engine();
    if (!tts || text.trimmed().isEmpty())
        return;
    // Counted as speaking from the request on: the engine tells its start a moment later,
    // and a second press in between means stop.
    if (!m_speaking) {
        m_speaking = true;
        emit speakingChanged(true);
    }
    tts->say(text);
}

void QtSpeaker::stop()
{
    if (m_engine)
        m_engine->stop();
    if (m_speaking) {
        m_speaking = false;
        emit speakingChanged(false);
    }
}

} // namespace speech
