#include "player.h"

#include "gstreamer.h"

#include <QFile>
#include <QTimer>

#include <gst/app/gstappsink.h>
#include <gst/gst.h>
#include <gst/video/video.h>

namespace media {

namespace {

// Often enough for smooth video at the rates of the era's files (up to 30 frames a second).
constexpr int PollInterval = 15;

// playbin's flags: video, audio and software volume; no subtitles, no visualisation.
constexpr guint PlayVideo = 0x1;
constexpr guint PlayAudio = 0x2;
constexpr guint PlaySoftVolume = 0x10;

// Frames arrive as 32-bit pixels in QImage's RGB32 order, at square pixels. The sink keeps
// one frame and drops the older, so the streaming thread never waits for the reader.
constexpr char VideoSink[] = "videoconvert ! videoscale ! video/x-raw,format=BGRx,pixel-aspect-ratio=1/1 ! "
                             "appsink name=frames max-buffers=1 drop=true enable-last-sample=false";

qint64 toMs(gint64 nanoseconds)
{
    return nanoseconds < 0 ? 0 : qint64(nanoseconds / GST_MSECOND);
}

} // namespace

Player::Player(QObject *parent)
    : QObject(parent)
    , m_poll(new QTimer(this))
{
    m_poll->setInterval(PollInterval);
    connect(m_poll, &QTimer::timeout, this, [this] { poll(); });
}

Player::~Player()
{
    teardown();
}

void Player::setSource(const QString &file)
{
    teardown();
    m_source = file;
    m_error.clear();
    m_frame = QImage();
    m_hasVideo = false;
    m_pendingSeek = -1;
    if (m_position != 0) {
        m_position = 0;
        emit positionChanged(0);
    }
    if (m_duration != 0) {
        m_duration = 0;
        emit durationChanged(0);
    }
    setState(StoppedState);
    if (file.isEmpty()) {
        setStatus(NoMedia);
        return;
    }
    setStatus(LoadingMedia);
    build();
}

void Player::build()
{
    QString why;
    if (!startGStreamer(&why)) {
        fail(why);
        return;
    }
    m_playbin = gst_element_factory_make("playbin", nullptr);
    if (!m_playbin) {
        fail(QStringLiteral("GStreamer's playbin is missing (gstreamer1.0-plugins-base)"));
        return;
    }
    gst_object_ref_sink(m_playbin);

    GError *error = nullptr;
    gchar *uri = gst_filename_to_uri(QFile::encodeName(m_source).constData(), &error);
    if (!uri) {
        const QString text = errorText(error, QStringLiteral("not a file name"));
        g_clear_error(&error);
        fail(text);
        return;
    }
    g_object_set(m_playbin, "uri", uri, "flags", PlayVideo | PlayAudio | PlaySoftVolume, nullptr);
    g_free(uri);

    if (GstElement *audio = makeAudioSink(m_silent))
        g_object_set(m_playbin, "audio-sink", audio, nullptr);
    GstElement *video = gst_parse_bin_from_description(VideoSink, TRUE, &error);
    g_clear_error(&error);
    if (video) {
        m_frames = gst_bin_get_by_name(GST_BIN(video), "frames");
        g_object_set(m_playbin, "video-sink", video, nullptr);
    }
    m_bus = gst_element_get_bus(m_playbin);

    // From here the pipeline reads and prerolls on its own threads; what it says waits on
    // the bus for the next poll.
    if (gst_element_set_state(m_playbin, GST_STATE_PAUSED) == GST_STATE_CHANGE_FAILURE) {
        poll();
        if (m_status != InvalidMedia)
            fail(QStringLiteral("the file cannot be opened"));
        return;
    }
    m_poll->start();
}

void Player::teardown()
{
    m_poll->stop();
    if (!m_playbin)
        return;
    // Stopping joins the streaming threads; they never wait for this thread, so this ends.
    gst_element_set_state(m_playbin, GST_STATE_NULL);
    if (m_frames)
        gst_object_unref(m_frames);
    if (m_bus)
        gst_object_unref(m_bus);
    gst_object_unref(m_playbin);
    m_frames = nullptr;
    m_bus = nullptr;
    m_playbin = nullptr;
}

void Player::play()
{
    if (!m_playbin)
        return;
    if (m_status == EndOfMedia) {
        seek(0);
        setStatus(LoadedMedia);
    }
    gst_element_set_state(m_playbin, GST_STATE_PLAYING);
    setState(PlayingState);
}

void Player::pause()
{
    if (!m_playbin)
        return;
    gst_element_set_state(m_playbin, GST_STATE_PAUSED);
    setState(PausedState);
}

void Player::stop()
{
    if (!m_playbin) {
        setState(StoppedState);
        return;
    }
    gst_element_set_state(m_playbin, GST_STATE_PAUSED);
    setState(StoppedState);
    if (m_status == EndOfMedia)
        setStatus(LoadedMedia);
    setPosition(0);
}

void Player::setPosition(qint64 ms)
{
    ms = qMax<qint64>(0, ms);
    if (m_playbin)
        seek(ms);
    if (m_position != ms) {
        m_position = ms;
        emit positionChanged(ms);
    }
}

void Player::seek(qint64 ms)
{
    // A pipeline still finding its streams cannot seek yet: the place is taken once loaded.
    if (m_status == LoadingMedia) {
        m_pendingSeek = ms;
        return;
    }
    gst_element_seek_simple(m_playbin, GST_FORMAT_TIME,
        GstSeekFlags(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_KEY_UNIT), gint64(ms) * GST_MSECOND);
}

void Player::poll()
{
    while (m_bus) {
        GstMessage *message = gst_bus_pop(m_bus);
        if (!message)
            break;
        handle(message);
        gst_message_unref(message);
    }
    if (!m_playbin)
        return;
    if (m_hasVideo)
        pullFrame(false);
    if (m_state == PlayingState && m_status != EndOfMedia)
        readPosition();
}

void Player::handle(GstMessage *message)
{
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ERROR: {
        GError *error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        const QString text = errorText(error, QStringLiteral("the file cannot be played"));
        g_clear_error(&error);
        fail(text);
        break;
    }
    case GST_MESSAGE_ASYNC_DONE:
        if (m_status == LoadingMedia)
            loaded();
        break;
    case GST_MESSAGE_DURATION_CHANGED:
        readDuration();
        break;
    case GST_MESSAGE_EOS:
        // The piece stays ready where it ended; the owner decides where it stands next.
        gst_element_set_state(m_playbin, GST_STATE_PAUSED);
        readDuration();
        if (m_duration > 0 && m_position != m_duration) {
            m_position = m_duration;
            emit positionChanged(m_position);
        }
        setState(StoppedState);
        setStatus(EndOfMedia);
        break;
    default:
        break;
    }
}

void Player::loaded()
{
    gint videoStreams = 0;
    g_object_get(m_playbin, "n-video", &videoStreams, nullptr);
    m_hasVideo = videoStreams > 0 && m_frames;
    readDuration();
    if (m_hasVideo)
        pullFrame(true);
    setStatus(LoadedMedia);
    if (m_pendingSeek >= 0) {
        const qint64 ms = m_pendingSeek;
        m_pendingSeek = -1;
        if (ms > 0)
            seek(ms);
    }
}

void Player::pullFrame(bool preroll)
{
    GstSample *sample = nullptr;
    auto *sink = GST_APP_SINK(m_frames);
    if (preroll) {
        sample = gst_app_sink_try_pull_preroll(sink, 0);
    } else {
        while (GstSample *next = gst_app_sink_try_pull_sample(sink, 0)) {
            if (sample)
                gst_sample_unref(sample);
            sample = next;
        }
    }
    if (!sample)
        return;
    GstVideoInfo info;
    GstBuffer *buffer = gst_sample_get_buffer(sample);
    GstCaps *caps = gst_sample_get_caps(sample);
    GstMapInfo map;
    if (buffer && caps && gst_video_info_from_caps(&info, caps)
        && gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        const int width = GST_VIDEO_INFO_WIDTH(&info);
        const int height = GST_VIDEO_INFO_HEIGHT(&info);
        const int stride = GST_VIDEO_INFO_PLANE_STRIDE(&info, 0);
        if (width > 0 && height > 0 && gsize(stride) * gsize(height) <= map.size) {
            const QSize before = m_frame.size();
            m_frame = QImage(map.data, width, height, stride, QImage::Format_RGB32).copy();
            gst_buffer_unmap(buffer, &map);
            if (m_frame.size() != before)
                emit videoSizeChanged(m_frame.size());
            emit videoFrameChanged();
        } else {
            gst_buffer_unmap(buffer, &map);
        }
    }
    gst_sample_unref(sample);
}

void Player::readDuration()
{
    gint64 duration = -1;
    if (!m_playbin || !gst_element_query_duration(m_playbin, GST_FORMAT_TIME, &duration) || duration < 0)
        return;
    if (toMs(duration) != m_duration) {
        m_duration = toMs(duration);
        emit durationChanged(m_duration);
    }
}

void Player::readPosition()
{
    gint64 position = -1;
    if (!gst_element_query_position(m_playbin, GST_FORMAT_TIME, &position) || position < 0)
        return;
    if (toMs(position) != m_position) {
        m_position = toMs(position);
        emit positionChanged(m_position);
    }
    if (m_duration == 0)
        readDuration();
}

void Player::fail(const QString &error)
{
    teardown();
    m_error = error;
    setState(StoppedState);
    setStatus(InvalidMedia);
    emit errorOccurred(error);
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
