#pragma once

#include "speaker.h"

class QTextToSpeech;

namespace speech {

// Speaks through Qt TextToSpeech (speech-dispatcher and espeak-ng on Debian) with a Greek
// voice. The engine is made at the first question, so a program that never reads aloud
// never starts the speech service.
class QtSpeaker final : public Speaker
{
    Q_OBJECT

public:
    explicit QtSpeaker(QObject *parent = nullptr);
    ~QtSpeaker() override;
    Q_DISABLE_COPY_MOVE(QtSpeaker)

    bool available() override;
    bool speaking() const override { return m_speaking; }
    void say(const QString &text) override;
    void stop() override;

private:
    QTextToSpeech *engine();
    void chooseGreekVoice();

    QTextToSpeech *m_engine = nullptr;
    bool m_tried = false;
    bool m_speaking = false;
};

} // namespace speech
