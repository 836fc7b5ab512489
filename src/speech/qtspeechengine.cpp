#include "qtspeechengine.h"

#include <QLocale>
#include <QTextToSpeech>
#include <QVoice>

namespace speech {

void QtSpeechEngine::start()
{
    // Without a plugin there is nothing to make; a plugin whose service cannot be
    // reached gives an engine in the error state, which counts as none.
    if (QTextToSpeech::availableEngines().isEmpty()) {
        emit ready(false);
        return;
    }
    auto *engine = new QTextToSpeech(this);
    if (engine->state() == QTextToSpeech::Error) {
        delete engine;
        emit ready(false);
        return;
    }
    m_engine = engine;
    connect(m_engine, &QTextToSpeech::stateChanged, this,
        [this](QTextToSpeech::State state) { emit speakingChanged(state == QTextToSpeech::Speaking); });
    chooseGreekVoice();
    emit ready(true);
}

void QtSpeechEngine::chooseGreekVoice()
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

void QtSpeechEngine::say(const QString &text)
{
    if (m_engine)
        m_engine->say(text);
}

void QtSpeechEngine::stop()
{
    if (m_engine)
        m_engine->stop();
}

} // namespace speech
