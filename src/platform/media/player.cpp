#include "player.h"

#include "engine.h"
#include "engines.h"

#include <logging.h>

#include <QTimer>

namespace media {

namespace {

// Often enough for smooth video at the rates of the era's files (up to 30 frames a second).
constexpr int PollInterval = 15;

} // namespace

Player::Player(Engines &engines, QObject *parent)
    : QObject(parent)
    , m_engines(engines)
    , m_poll(new QTimer(this))
    , m_loadLimit(new QTimer(this))
{
    m_poll->setInterval(PollInterval);
    connect(m_poll, &QTimer::timeout, this, [this] { poll(); });
    // The engine may be stuck inside GStreamer, opening a file that never answers: it is
    // dropped and left to come back by itself, or to its owner's end (engines.h).
    m_loadLimit->setSingleShot(true);
    m_loadLimit->setInterval(loadLimitMs());
    connect(m_loadLimit, &QTimer::timeout, this, [this] {
        qCWarning(lcMedia).noquote() << "cannot play" << m_source << "- it did not open within"
                                     << m_loadLimit->interval() << "ms";
        fail(Failure::Damaged);
    });
}

Player::~Player()
{
    engine::drop(m_engine);
}

int Player::loadLimitMs()
{
    bool given = false;
    const int ms = qEnvironmentVariableIntValue("TREMIDIA_MEDIA_LOAD_LIMIT_MS", &given);
    return given && ms > 0 ? ms : LoadLimitMs;
}

void Player::setSource(const QString &file)
{
    engine::drop(m_engine);
    m_poll->stop();
    m_loadLimit->stop();
    m_source = file;
    m_failure = Failure::None;
    m_frame = QImage();
    m_hasVideo = false;
    if (m_position != 0) {
        m_position = 0;
        emit positionChanged(0);
    }
    setDuration(0);
    setState(StoppedState);
    if (file.isEmpty()) {
        setStatus(NoMedia);
        return;
    }
    setStatus(LoadingMedia);
    m_engine = m_engines.start(file, m_silent);
    m_poll->start();
    m_loadLimit->start();
}

void Player::order(int kind, qint64 ms)
{
    if (!m_engine)
        return;
    {
        std::lock_guard lock(m_engine->mutex);
        m_engine->orders.push_back({engine::Order::Kind(kind), ms});
    }
    m_engine->wake.notify_all();
}

void Player::play()
{
    if (!m_engine)
        return;
    if (m_status == EndOfMedia) {
        setPosition(0);
        setStatus(LoadedMedia);
    }
    order(engine::Order::Play);
    setState(PlayingState);
}

void Player::pause()
{
    if (!m_engine)
        return;
    order(engine::Order::Pause);
    setState(PausedState);
}

void Player::stop()
{
    if (m_engine)
        order(engine::Order::Pause);
    setState(StoppedState);
    if (m_status == EndOfMedia)
        setStatus(LoadedMedia);
    setPosition(0);
}

void Player::setPosition(qint64 ms)
{
    ms = qMax<qint64>(0, ms);
    order(engine::Order::Seek, ms);
    if (m_position != ms) {
        m_position = ms;
        emit positionChanged(ms);
    }
}

void Player::poll()
{
    if (!m_engine)
        return;
    std::vector<engine::News> news;
    QImage frame;
    bool newFrame = false;
    {
        std::lock_guard lock(m_engine->mutex);
        news.swap(m_engine->news);
        if (m_engine->newFrame) {
            frame = std::move(m_engine->frame);
            m_engine->frame = QImage();
            m_engine->newFrame = false;
            newFrame = true;
        }
    }
    for (const engine::News &item : news) {
        switch (item.kind) {
        case engine::News::Loaded:
            m_loadLimit->stop();
            m_hasVideo = item.video;
            setDuration(item.ms);
            if (m_status == LoadingMedia)
                setStatus(LoadedMedia);
            break;
        case engine::News::Duration:
            setDuration(item.ms);
            break;
        case engine::News::Position:
            // What the engine saw before a later order of place is out of date.
            if (m_state == PlayingState && m_position != item.ms) {
                m_position = item.ms;
                emit positionChanged(m_position);
            }
            break;
        case engine::News::EndOfStream:
            setDuration(item.ms);
            if (m_duration > 0 && m_position != m_duration) {
                m_position = m_duration;
                emit positionChanged(m_position);
            }
            setState(StoppedState);
            setStatus(EndOfMedia);
            break;
        case engine::News::Error:
            fail(item.failure);
            return;
        }
        if (!m_engine)
            return; // the owner closed it on the way
    }
    if (newFrame && !frame.isNull()) {
        const QSize before = m_frame.size();
        m_frame = std::move(frame);
        if (m_frame.size() != before)
            emit videoSizeChanged(m_frame.size());
        emit videoFrameChanged();
    }
}

void Player::fail(Failure failure)
{
    engine::drop(m_engine);
    m_poll->stop();
    m_loadLimit->stop();
    m_failure = failure;
    setState(StoppedState);
    setStatus(InvalidMedia);
    emit errorOccurred(errorString());
}

void Player::setDuration(qint64 ms)
{
    if (m_duration == ms)
        return;
    m_duration = ms;
    emit durationChanged(ms);
}

void Player::setState(PlaybackState state)
{
    if (m_state == state)
        return;
    m_state = state;
    emit playbackStateChanged(state);
}

void Player::setStatus(MediaStatus status)
{
    if (m_status == status)
        return;
    m_status = status;
    emit mediaStatusChanged(status);
}

} // namespace media
