#pragma once

#include "speechengine.h"

class QTextToSpeech;

namespace speech {

// Speaks through Qt TextToSpeech (speech-dispatcher and espeak-ng on Debian) with a Greek
// voice. Made and used only on the speaker's own thread.
class QtSpeechEngine final : public SpeechEngine
{
    Q_OBJECT

public:
    using SpeechEngine::SpeechEngine;

    void start() override;
    void say(const QString &text) override;
    void stop() override;

private:
    void chooseGreekVoice();

    QTextToSpeech *m_engine = nullptr;
};

} // namespace speech
