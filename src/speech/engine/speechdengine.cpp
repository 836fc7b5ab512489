#include "speechdengine.h"

#include "rate.h"

#include <QHash>
#include <QLoggingCategory>

#include <libspeechd.h>

#include <cstdlib>
#include <mutex>

Q_LOGGING_CATEGORY(lcSpeech, "tremidia.speech")

namespace speech {

namespace {

// libspeechd calls back on a thread of its own with the connection's client number and no
// pointer of ours, so the engines are found by that number. One table for the process,
// since the library's callbacks are plain functions; an engine leaves it before it closes
// its connection, under the lock the callbacks take.
struct Engines
{
    std::mutex mutex;
    QHash<std::size_t, SpeechdEngine *> byClient;
};

Engines &engines()
{
    static Engines table;
    return table;
}

void hand(std::size_t client, SpeechdEngine::Event event, std::size_t message, int mark)
{
    Engines &table = engines();
    std::lock_guard lock(table.mutex);
    SpeechdEngine *engine = table.byClient.value(client);
    if (!engine)
        return;
    QMetaObject::invokeMethod(
        engine, [engine, event, message, mark] { engine->onEvent(event, message, mark); },
        Qt::QueuedConnection);
}

void onBegin(std::size_t message, std::size_t client, SPDNotificationType)
{
    hand(client, SpeechdEngine::Event::Begin, message, -1);
}

void onEnd(std::size_t message, std::size_t client, SPDNotificationType)
{
    hand(client, SpeechdEngine::Event::End, message, -1);
}

void onCancel(std::size_t message, std::size_t client, SPDNotificationType)
{
    hand(client, SpeechdEngine::Event::Cancel, message, -1);
}

void onMark(std::size_t message, std::size_t client, SPDNotificationType, char *name)
{
    bool ok = false;
    const int mark = name ? QByteArray(name).toInt(&ok) : -1;
    if (ok)
        hand(client, SpeechdEngine::Event::Mark, message, mark);
}

SPDConnection *spd(void *connection)
{
    return static_cast<SPDConnection *>(connection);
}

} // namespace

SpeechdEngine::~SpeechdEngine()
{
    close();
}

void SpeechdEngine::close()
{
    if (!m_connection)
        return;
    {
        Engines &table = engines();
        std::lock_guard lock(table.mutex);
        table.byClient.remove(m_clientId);
    }
    spd_close(spd(m_connection));
    m_connection = nullptr;
}

void SpeechdEngine::start()
{
    char *error = nullptr;
    SPDConnectionAddress *address = spd_get_default_address(&error);
    if (!address) {
        qCWarning(lcSpeech) << "no address for the speech service:" << (error ? error : "");
        std::free(error);
        emit ready(false);
        return;
    }
    error = nullptr;
    SPDConnection *connection
        = spd_open2("tremidia", "reading", nullptr, SPD_MODE_THREADED, address, 1, &error);
    SPDConnectionAddress__free(address);
    if (!connection) {
        qCWarning(lcSpeech) << "the speech service did not answer:" << (error ? error : "");
        std::free(error);
        emit ready(false);
        return;
    }
    std::free(error);
    const int client = spd_get_client_id(connection);
    if (client < 0) {
        spd_close(connection);
        emit ready(false);
        return;
    }
    m_connection = connection;
    m_clientId = std::size_t(client);
    {
        Engines &table = engines();
        std::lock_guard lock(table.mutex);
        table.byClient.insert(m_clientId, this);
    }
    connection->callback_begin = onBegin;
    connection->callback_end = onEnd;
    connection->callback_cancel = onCancel;
    connection->callback_im = onMark;
    spd_set_notification_on(connection, SPD_BEGIN);
    spd_set_notification_on(connection, SPD_END);
    spd_set_notification_on(connection, SPD_CANCEL);
    spd_set_notification_on(connection, SPD_INDEX_MARKS);
    // The marks ride in SSML; the texts are Greek, and a voice of another language would
    // spell them letter by letter.
    if (spd_set_data_mode(connection, SPD_DATA_SSML) != 0 || spd_set_language(connection, "el") != 0) {
        qCWarning(lcSpeech) << "the speech service refused SSML or Greek";
        close();
        emit ready(false);
        return;
    }
    emit ready(true);
}

void SpeechdEngine::say(const QString &text)
{
    if (!m_connection)
        return;
    if (m_message >= 0) {
        spd_cancel(spd(m_connection));
        m_message = -1;
    }
    const QList<Word> words = findWords(text);
    if (words.isEmpty()) {
        emit speakingChanged(false);
        return;
    }
    // The rate is the connection's and holds for the messages that follow.
    spd_set_voice_rate(spd(m_connection), voiceRate(m_rate));
    const int message = spd_say(spd(m_connection), SPD_TEXT, ssmlWithMarks(text, words).constData());
    if (message < 0) {
        qCWarning(lcSpeech) << "the speech service refused a text";
        emit speakingChanged(false);
        return;
    }
    m_message = message;
    m_words = int(words.size());
}

void SpeechdEngine::stop()
{
    if (m_connection && m_message >= 0)
        spd_cancel(spd(m_connection));
    m_message = -1;
    emit speakingChanged(false);
}

void SpeechdEngine::setRate(int percent)
{
    m_rate = clampedRate(percent);
}

void SpeechdEngine::onEvent(Event event, std::size_t message, int mark)
{
    // The events come after the order that made the message has returned (they queue up
    // behind it on this thread), so an event of another message is an old one's.
    if (m_message < 0 || message != std::size_t(m_message))
        return;
    switch (event) {
    case Event::Begin:
        emit speakingChanged(true);
        break;
    case Event::Mark:
        if (mark >= 0 && mark < m_words)
            emit wordReached(mark);
        break;
    case Event::End:
    case Event::Cancel:
        m_message = -1;
        emit speakingChanged(false);
        break;
    }
}

} // namespace speech
