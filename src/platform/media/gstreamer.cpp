#include "gstreamer.h"

#include <gst/gst.h>

#include <mutex>

namespace media {

bool startGStreamer(QString *why)
{
    static std::once_flag once;
    static bool started = false;
    static QString reason;
    std::call_once(once, [] {
        GError *error = nullptr;
        started = gst_init_check(nullptr, nullptr, &error);
        if (!started)
            reason = errorText(error, QStringLiteral("GStreamer did not start"));
        if (error)
            g_error_free(error);
    });
    if (!started && why)
        *why = reason;
    return started;
}

GstElement *makeAudioSink(bool silent)
{
    GstElement *sink = nullptr;
    if (silent) {
        sink = gst_element_factory_make("fakesink", nullptr);
        if (sink)
            g_object_set(sink, "sync", FALSE, nullptr);
        return sink;
    }
    const QByteArray chosen = qgetenv("TREMIDIA_AUDIO_SINK");
    if (!chosen.isEmpty())
        sink = gst_parse_bin_from_description(chosen.constData(), TRUE, nullptr);
    if (!sink)
        sink = gst_element_factory_make("autoaudiosink", nullptr);
    if (!sink) {
        // Without the good plugins' automatic sink the piece still runs in time, unheard.
        sink = gst_element_factory_make("fakesink", nullptr);
        if (sink)
            g_object_set(sink, "sync", TRUE, nullptr);
    }
    return sink;
}

QString errorText(const GError *error, const QString &fallback)
{
    if (!error || !error->message || !*error->message)
        return fallback;
    return QString::fromUtf8(error->message);
}

} // namespace media
