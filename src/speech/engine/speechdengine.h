#pragma once

#include "speechengine.h"
#include "words.h"

#include <QList>

#include <cstddef>

namespace speech {

// Speaks through speech-dispatcher's own library with a Greek voice (espeak-ng's on
// Debian). The text goes as SSML with a mark before each word; the service names each
// mark as the voice reaches it, and wordReached() passes it on. Made, used and deleted
// only on the speaker's own thread: opening the connection and every order can wait on
// a service that stopped answering. The address is the desktop's (SPEECHD_ADDRESS, or
// the user's own socket, which the library starts the service on when it is not there).
class SpeechdEngine final : public SpeechEngine
{
    Q_OBJECT

public:
    using SpeechEngine::SpeechEngine;
    ~SpeechdEngine() override;
    Q_DISABLE_COPY_MOVE(SpeechdEngine)

    void start() override;
    void say(const QString &text) override;
    void stop() override;
    void setRate(int percent) override;

    // What the library's own thread reports, handed over to this engine's thread.
    enum class Event { Begin, End, Cancel, Mark };
    void onEvent(Event event, std::size_t message, int mark);

private:
    void close();

    // libspeechd's SPDConnection, a typedef of an unnamed struct that cannot be declared
    // ahead; only speechdengine.cpp, which includes the library's header, looks inside.
    void *m_connection = nullptr;
    std::size_t m_clientId = 0;
    int m_message = -1; // the message being said, -1 none
    int m_words = 0; // the words in it
    int m_rate = 100;
};

} // namespace speech
