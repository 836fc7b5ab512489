#pragma once

#include "failure.h"

#include <QImage>
#include <QObject>
#include <QString>

#include <memory>

class QTimer;

namespace media {

class Engines;
namespace engine {
struct Mailbox;
}

// One piece of sound or video, played through GStreamer's playbin. The pipeline lives on
// an engine thread of its own (engine.h): the player leaves it orders and picks up its
// news on a timer, and never calls GStreamer itself, so nothing GStreamer does can hold
// up the thread the player lives on; the engines' threads belong to `engines`, which
// outlives the player. Sound goes to the system's sink (or
// TREMIDIA_AUDIO_SINK); video frames come as QImages for the owner to draw. A file that
// has not opened within the load limit (a pipe nobody writes to, a file that never gives
// its first frames) is given up as damaged.
class Player final : public QObject
{
    Q_OBJECT

public:
    enum PlaybackState { StoppedState, PlayingState, PausedState };
    Q_ENUM(PlaybackState)
    enum MediaStatus { NoMedia, LoadingMedia, LoadedMedia, EndOfMedia, InvalidMedia };
    Q_ENUM(MediaStatus)

    static constexpr int LoadLimitMs = 5000;
    // LoadLimitMs, unless TREMIDIA_MEDIA_LOAD_LIMIT_MS says otherwise: the sanitizers'
    // builds trace every allocation, and a sound font then takes longer than that to load.
    static int loadLimitMs();

    explicit Player(Engines &engines, QObject *parent = nullptr);
    ~Player() override;
    Q_DISABLE_COPY_MOVE(Player)

    // Plays into nothing as fast as the file reads: for finding out what a file holds.
    void setSilent(bool silent) { m_silent = silent; }

    // Opens the file (an empty name closes what was open); it is read at once, and
    // mediaStatus tells when it is ready or could not be read.
    void setSource(const QString &file);
    QString source() const { return m_source; }

    void play();
    void pause();
    // Stops and stands at the beginning.
    void stop();
    void setPosition(qint64 ms);

    PlaybackState playbackState() const { return m_state; }
    MediaStatus mediaStatus() const { return m_status; }
    qint64 position() const { return m_position; }
    // 0 until known.
    qint64 duration() const { return m_duration; }
    bool hasVideo() const { return m_hasVideo; }
    QSize videoSize() const { return m_frame.size(); }
    // The latest picture of a video; null before the first.
    const QImage &videoFrame() const { return m_frame; }
    // Why the piece could not be played, once mediaStatus is InvalidMedia: the reason, and
    // the program's words for it.
    Failure failure() const { return m_failure; }
    QString errorString() const { return failureText(m_failure); }

signals:
    void playbackStateChanged(media::Player::PlaybackState state);
    void mediaStatusChanged(media::Player::MediaStatus status);
    void durationChanged(qint64 ms);
    void positionChanged(qint64 ms);
    void videoFrameChanged();
    void videoSizeChanged(QSize size);
    void errorOccurred(const QString &error);

private:
    void order(int kind, qint64 ms = 0);
    void poll();
    void fail(Failure failure);
    void setDuration(qint64 ms);
    void setState(PlaybackState state);
    void setStatus(MediaStatus status);

    Engines &m_engines;
    QTimer *const m_poll;
    QTimer *const m_loadLimit;
    std::shared_ptr<engine::Mailbox> m_engine;
    QString m_source;
    Failure m_failure = Failure::None;
    QImage m_frame;
    qint64 m_position = 0;
    qint64 m_duration = 0;
    PlaybackState m_state = StoppedState;
    MediaStatus m_status = NoMedia;
    bool m_hasVideo = false;
    bool m_silent = false;
};

} // namespace media
