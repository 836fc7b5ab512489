#include "gstreamer.h"

#include <gst/gst.h>

namespace media {

namespace {

// GStreamer starts once for the process, whatever the number of sessions: its own state
// is process-wide, and what happened at the first start holds for every later one.
struct Start
{
    bool started = false;
    QString reason;

    Start()
    {
        GError *error = nullptr;
        started = gst_init_check(nullptr, nullptr, &error);
        if (!started)
            reason = errorText(error, QStringLiteral("GStreamer did not start"));
        if (error)
            g_error_free(error);
    }
};

} // namespace

bool startGStreamer(QString *why)
{
    // Made at the first call, on whichever engine's thread comes first (the language makes
    // that thread-safe), and never changed after.
    static const Start once;
    if (!once.started && why)
        *why = once.reason;
    return once.started;
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

Failure failureOf(const GError *error, GstObject *source)
{
    if (!error)
        return Failure::Damaged;
    if (error->domain == GST_CORE_ERROR)
        return error->code == GST_CORE_ERROR_MISSING_PLUGIN ? Failure::NoDecoder : Failure::Damaged;
    if (error->domain == GST_RESOURCE_ERROR) {
        switch (error->code) {
        case GST_RESOURCE_ERROR_NOT_FOUND:
        case GST_RESOURCE_ERROR_OPEN_READ:
        case GST_RESOURCE_ERROR_OPEN_READ_WRITE:
        case GST_RESOURCE_ERROR_NOT_AUTHORIZED:
            return Failure::NotFound;
        default:
            return Failure::Damaged;
        }
    }
    if (error->domain == GST_STREAM_ERROR) {
        switch (error->code) {
        case GST_STREAM_ERROR_CODEC_NOT_FOUND:
        case GST_STREAM_ERROR_NOT_IMPLEMENTED:
            return Failure::NoDecoder;
        case GST_STREAM_ERROR_TYPE_NOT_FOUND: {
            // The type finder knows no kind of file like it: not a sound or video at all.
            // A demuxer that read the file but not the kind of its stream names a codec
            // nothing here decodes.
            GstElementFactory *factory
                = source && GST_IS_ELEMENT(source) ? gst_element_get_factory(GST_ELEMENT(source)) : nullptr;
            const bool typeFinder = factory
                && g_strcmp0(gst_plugin_feature_get_name(GST_PLUGIN_FEATURE(factory)), "typefind") == 0;
            return typeFinder ? Failure::Damaged : Failure::NoDecoder;
        }
        default:
            // Among them WRONG_TYPE, which the WAVE parser gives a file cut short.
            return Failure::Damaged;
        }
    }
    return Failure::Damaged;
}

} // namespace media
