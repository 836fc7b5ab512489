#include "engine.h"

#include "gstreamer.h"
#include "wavheader.h"
#include "wavquirks.h"

#include <logging.h>

#include <QFile>

#include <gst/app/gstappsink.h>
#include <gst/gst.h>
#include <gst/video/video.h>

#include <chrono>

namespace media::engine {

namespace {

// How often the engine looks at its orders, the bus and the newest frame: often enough
// for smooth video at the rates of the era's files (up to 30 frames a second).
constexpr auto Tick = std::chrono::milliseconds(10);

// playbin's flags: video, audio and software volume; no subtitles, no visualisation.
constexpr guint PlayVideo = 0x1;
constexpr guint PlayAudio = 0x2;
constexpr guint PlaySoftVolume = 0x10;

// Frames come as 32-bit pixels in QImage's RGB32 order, at square pixels. The sink keeps
// one frame and drops the older, so the streaming thread never waits for the engine.
constexpr char VideoSink[] = "videoconvert ! videoscale ! video/x-raw,format=BGRx,pixel-aspect-ratio=1/1 ! "
                             "appsink name=frames max-buffers=1 drop=true enable-last-sample=false";

qint64 toMs(gint64 nanoseconds)
{
    return nanoseconds < 0 ? 0 : qint64(nanoseconds / GST_MSECOND);
}

class Engine
{
public:
    Engine(std::shared_ptr<Mailbox> mailbox, QString file, bool silent)
        : m_mailbox(std::move(mailbox))
        , m_file(std::move(file))
        , m_silent(silent)
    {
    }

    void run()
    {
        if (build()) {
            while (step()) { }
        } else {
            waitUntilDropped();
        }
        teardown();
    }

private:
    void tell(News news)
    {
        std::lock_guard lock(m_mailbox->mutex);
        m_mailbox->news.push_back(std::move(news));
    }

    // The pupil is told the reason; GStreamer's words go to the log.
    void fail(Failure failure, const QString &detail)
    {
        qCWarning(lcMedia).noquote() << "cannot play" << m_file << "-" << detail;
        m_failed = true;
        tell({News::Error, 0, false, failure});
    }

    bool build()
    {
        QString why;
        if (!startGStreamer(&why)) {
            fail(Failure::NoDecoder, why);
            return false;
        }
        m_playbin = gst_element_factory_make("playbin", nullptr);
        if (!m_playbin) {
            fail(Failure::NoDecoder,
                QStringLiteral("GStreamer's playbin is missing (gstreamer1.0-plugins-base)"));
            return false;
        }
        gst_object_ref_sink(m_playbin);

        GError *error = nullptr;
        gchar *uri = gst_filename_to_uri(QFile::encodeName(m_file).constData(), &error);
        if (!uri) {
            fail(Failure::NotFound, errorText(error, QStringLiteral("not a file name")));
            g_clear_error(&error);
            return false;
        }
        g_object_set(m_playbin, "uri", uri, "flags", PlayVideo | PlayAudio | PlaySoftVolume, nullptr);
        g_free(uri);
        if (GstElement *audio = makeAudioSink(m_silent))
            g_object_set(m_playbin, "audio-sink", audio, nullptr);
        if (GstElement *video = gst_parse_bin_from_description(VideoSink, TRUE, nullptr)) {
            m_frames = gst_bin_get_by_name(GST_BIN(video), "frames");
            g_object_set(m_playbin, "video-sink", video, nullptr);
        }
        // A WAVE file's length is what its header says: GStreamer's parser loses it for
        // some files of the era (wavquirks.h), and is mended for those.
        if (const std::optional<wav::Layout> wave = wav::readFile(m_file)) {
            m_headerDuration = wav::lengthMs(*wave);
            mendWaveParser(m_playbin, *wave, m_headerDuration);
        }
        m_bus = gst_element_get_bus(m_playbin);
        if (gst_element_set_state(m_playbin, GST_STATE_PAUSED) == GST_STATE_CHANGE_FAILURE) {
            readBus();
            if (!m_failed)
                fail(Failure::Damaged, QStringLiteral("the pipeline did not start"));
            return false;
        }
        return true;
    }

    void waitUntilDropped()
    {
        std::unique_lock lock(m_mailbox->mutex);
        m_mailbox->wake.wait(lock, [this] { return m_mailbox->dropped; });
    }

    // One round: the orders, then what the pipeline said. False once dropped.
    bool step()
    {
        std::deque<Order> orders;
        {
            std::unique_lock lock(m_mailbox->mutex);
            m_mailbox->wake.wait_for(
                lock, Tick, [this] { return m_mailbox->dropped || !m_mailbox->orders.empty(); });
            if (m_mailbox->dropped)
                return false;
            orders.swap(m_mailbox->orders);
        }
        if (m_failed)
            return true;
        for (const Order &order : orders)
            obey(order);
        readBus();
        if (m_failed)
            return true;
        if (m_loaded && m_video)
            pullFrame(false);
        if (m_loaded && m_playing && !m_ended)
            readPosition();
        return true;
    }

    void obey(const Order &order)
    {
        switch (order.kind) {
        case Order::Play:
            m_playing = true;
            m_ended = false;
            gst_element_set_state(m_playbin, GST_STATE_PLAYING);
            break;
        case Order::Pause:
            m_playing = false;
            gst_element_set_state(m_playbin, GST_STATE_PAUSED);
            break;
        case Order::Seek:
            m_ended = false;
            // A pipeline still finding its streams cannot seek yet: the place is taken
            // once it is loaded.
            if (!m_loaded)
                m_pendingSeek = order.ms;
            else
                gst_element_seek_simple(m_playbin, GST_FORMAT_TIME,
                    GstSeekFlags(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_KEY_UNIT),
                    gint64(order.ms) * GST_MSECOND);
            break;
        }
    }

    void readBus()
    {
        while (GstMessage *message = gst_bus_pop(m_bus)) {
            handle(message);
            gst_message_unref(message);
            if (m_failed)
                return;
        }
    }

    void handle(GstMessage *message)
    {
        switch (GST_MESSAGE_TYPE(message)) {
        case GST_MESSAGE_ERROR: {
            GError *error = nullptr;
            gchar *debug = nullptr;
            gst_message_parse_error(message, &error, &debug);
            const Failure failure = failureOf(error, GST_MESSAGE_SRC(message));
            QString text = errorText(error, QStringLiteral("an error without a message"));
            if (debug)
                text += QStringLiteral(" (%1)").arg(QString::fromUtf8(debug));
            g_clear_error(&error);
            g_free(debug);
            gst_element_set_state(m_playbin, GST_STATE_NULL);
            fail(failure, text);
            break;
        }
        case GST_MESSAGE_ASYNC_DONE:
            if (!m_loaded)
                loaded();
            break;
        case GST_MESSAGE_DURATION_CHANGED:
            readDuration(true);
            break;
        case GST_MESSAGE_EOS:
            // The piece stays ready where it ended; the owner decides where it stands next.
            m_ended = true;
            m_playing = false;
            gst_element_set_state(m_playbin, GST_STATE_PAUSED);
            readDuration(false);
            tell({News::EndOfStream, m_duration, false, {}});
            break;
        default:
            break;
        }
    }

    void loaded()
    {
        m_loaded = true;
        gint videoStreams = 0;
        g_object_get(m_playbin, "n-video", &videoStreams, nullptr);
        m_video = videoStreams > 0 && m_frames;
        readDuration(false);
        if (m_video)
            pullFrame(true);
        tell({News::Loaded, m_duration, m_video, {}});
        if (m_pendingSeek > 0)
            gst_element_seek_simple(m_playbin, GST_FORMAT_TIME,
                GstSeekFlags(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_KEY_UNIT),
                gint64(m_pendingSeek) * GST_MSECOND);
        m_pendingSeek = -1;
    }

    void readDuration(bool tellChange)
    {
        gint64 duration = -1;
        if (m_headerDuration > 0)
            duration = m_headerDuration * GST_MSECOND;
        else if (!gst_element_query_duration(m_playbin, GST_FORMAT_TIME, &duration) || duration < 0)
            return;
        if (toMs(duration) == m_duration)
            return;
        m_duration = toMs(duration);
        if (tellChange || m_loaded)
            tell({News::Duration, m_duration, false, {}});
    }

    void readPosition()
    {
        gint64 position = -1;
        if (!gst_element_query_position(m_playbin, GST_FORMAT_TIME, &position) || position < 0)
            return;
        if (toMs(position) != m_position) {
            m_position = toMs(position);
            tell({News::Position, m_position, false, {}});
        }
        if (m_duration == 0)
            readDuration(true);
    }

    void pullFrame(bool preroll)
    {
        auto *sink = GST_APP_SINK(m_frames);
        GstSample *sample = nullptr;
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
        QImage frame;
        GstVideoInfo info;
        GstBuffer *buffer = gst_sample_get_buffer(sample);
        GstCaps *caps = gst_sample_get_caps(sample);
        GstMapInfo map;
        if (buffer && caps && gst_video_info_from_caps(&info, caps)
            && gst_buffer_map(buffer, &map, GST_MAP_READ)) {
            const int width = GST_VIDEO_INFO_WIDTH(&info);
            const int height = GST_VIDEO_INFO_HEIGHT(&info);
            const int stride = GST_VIDEO_INFO_PLANE_STRIDE(&info, 0);
            if (width > 0 && height > 0 && stride > 0 && gsize(stride) * gsize(height) <= map.size)
                frame = QImage(map.data, width, height, stride, QImage::Format_RGB32).copy();
            gst_buffer_unmap(buffer, &map);
        }
        gst_sample_unref(sample);
        if (frame.isNull())
            return;
        std::lock_guard lock(m_mailbox->mutex);
        m_mailbox->frame = std::move(frame);
        m_mailbox->newFrame = true;
    }

    void teardown()
    {
        if (m_playbin)
            gst_element_set_state(m_playbin, GST_STATE_NULL);
        if (m_frames)
            gst_object_unref(m_frames);
        if (m_bus)
            gst_object_unref(m_bus);
        if (m_playbin)
            gst_object_unref(m_playbin);
    }

    std::shared_ptr<Mailbox> m_mailbox;
    QString m_file;
    bool m_silent;
    GstElement *m_playbin = nullptr;
    GstElement *m_frames = nullptr;
    GstBus *m_bus = nullptr;
    qint64 m_headerDuration = 0; // a WAVE file's, from its header
    qint64 m_duration = 0;
    qint64 m_position = 0;
    qint64 m_pendingSeek = -1;
    bool m_loaded = false;
    bool m_video = false;
    bool m_playing = false;
    bool m_ended = false;
    bool m_failed = false;
};

} // namespace

void run(const std::shared_ptr<Mailbox> &mailbox, const QString &file, bool silent)
{
    Engine(mailbox, file, silent).run();
}

void drop(std::shared_ptr<Mailbox> &mailbox)
{
    if (!mailbox)
        return;
    {
        std::lock_guard lock(mailbox->mutex);
        mailbox->dropped = true;
    }
    mailbox->wake.notify_all();
    mailbox.reset();
}

} // namespace media::engine
