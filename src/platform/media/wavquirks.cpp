#include "wavquirks.h"

#include <gst/gst.h>

#include <atomic>
#include <cstdlib>

namespace media {

namespace {

// The parser's time against the sound's, once its first segment has told its length.
// Set on the streaming thread, read also on the thread that seeks.
struct Stretch
{
    GstClockTime length = 0; // the header's
    std::atomic<GstClockTime> parserLength = 0; // 0 until told; the length itself when right
};

struct Mend
{
    bool readToEnd = false;
    GstClockTime length = 0; // Microsoft ADPCM's, to stretch the parser's times to
};

bool isWaveParser(GstElement *element)
{
    GstElementFactory *factory = gst_element_get_factory(element);
    return factory && g_strcmp0(gst_plugin_feature_get_name(GST_PLUGIN_FEATURE(factory)), "wavparse") == 0;
}

GstClockTime out(const Stretch &stretch, GstClockTime time)
{
    const GstClockTime parser = stretch.parserLength.load();
    if (!GST_CLOCK_TIME_IS_VALID(time) || parser == 0)
        return time;
    return gst_util_uint64_scale(time, stretch.length, parser);
}

GstClockTime in(const Stretch &stretch, GstClockTime time)
{
    const GstClockTime parser = stretch.parserLength.load();
    if (!GST_CLOCK_TIME_IS_VALID(time) || parser == 0)
        return time;
    return gst_util_uint64_scale(time, parser, stretch.length);
}

GstEvent *stretchedSegment(Stretch &stretch, GstEvent *event)
{
    const GstSegment *segment = nullptr;
    gst_event_parse_segment(event, &segment);
    if (segment->format != GST_FORMAT_TIME)
        return nullptr;
    if (stretch.parserLength.load() == 0 && GST_CLOCK_TIME_IS_VALID(segment->duration)
        && segment->duration > 0) {
        // A parser that counts right (a later GStreamer) is left as it is.
        const auto told = GstClockTime(segment->duration);
        const bool right = std::llabs(qint64(told) - qint64(stretch.length)) * 100 < qint64(stretch.length);
        stretch.parserLength = right ? stretch.length : told;
    }
    if (stretch.parserLength.load() == stretch.length)
        return nullptr;
    GstSegment stretched;
    gst_segment_copy_into(segment, &stretched);
    stretched.start = out(stretch, segment->start);
    stretched.stop = out(stretch, segment->stop);
    stretched.time = out(stretch, segment->time);
    stretched.position = out(stretch, segment->position);
    stretched.base = out(stretch, segment->base);
    stretched.duration = out(stretch, segment->duration);
    GstEvent *replaced = gst_event_new_segment(&stretched);
    gst_event_set_seqnum(replaced, gst_event_get_seqnum(event));
    return replaced;
}

GstEvent *shrunkSeek(const Stretch &stretch, GstEvent *event)
{
    gdouble rate = 1.0;
    GstFormat format = GST_FORMAT_UNDEFINED;
    GstSeekFlags flags {};
    GstSeekType startType = GST_SEEK_TYPE_NONE;
    GstSeekType stopType = GST_SEEK_TYPE_NONE;
    gint64 start = -1;
    gint64 stop = -1;
    gst_event_parse_seek(event, &rate, &format, &flags, &startType, &start, &stopType, &stop);
    if (format != GST_FORMAT_TIME || stretch.parserLength.load() == 0
        || stretch.parserLength.load() == stretch.length)
        return nullptr;
    if (startType != GST_SEEK_TYPE_NONE && start >= 0)
        start = gint64(in(stretch, GstClockTime(start)));
    if (stopType != GST_SEEK_TYPE_NONE && stop >= 0)
        stop = gint64(in(stretch, GstClockTime(stop)));
    GstEvent *replaced = gst_event_new_seek(rate, format, flags, startType, start, stopType, stop);
    gst_event_set_seqnum(replaced, gst_event_get_seqnum(event));
    return replaced;
}

GstPadProbeReturn stretchTimes(GstPad *, GstPadProbeInfo *info, gpointer data)
{
    Stretch &stretch = *static_cast<Stretch *>(data);
    if (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) {
        const GstClockTime parser = stretch.parserLength.load();
        if (parser == 0 || parser == stretch.length)
            return GST_PAD_PROBE_OK;
        GstBuffer *buffer = gst_buffer_make_writable(GST_PAD_PROBE_INFO_BUFFER(info));
        GST_BUFFER_PTS(buffer) = out(stretch, GST_BUFFER_PTS(buffer));
        GST_BUFFER_DTS(buffer) = out(stretch, GST_BUFFER_DTS(buffer));
        GST_BUFFER_DURATION(buffer) = out(stretch, GST_BUFFER_DURATION(buffer));
        GST_PAD_PROBE_INFO_DATA(info) = buffer;
        return GST_PAD_PROBE_OK;
    }
    GstEvent *event = GST_PAD_PROBE_INFO_EVENT(info);
    GstEvent *replaced = nullptr;
    if (GST_EVENT_TYPE(event) == GST_EVENT_SEGMENT)
        replaced = stretchedSegment(stretch, event);
    else if (GST_EVENT_TYPE(event) == GST_EVENT_SEEK)
        replaced = shrunkSeek(stretch, event);
    if (replaced) {
        gst_event_unref(event);
        GST_PAD_PROBE_INFO_DATA(info) = replaced;
    }
    return GST_PAD_PROBE_OK;
}

void parserMade(GstBin *, GstBin *, GstElement *element, gpointer data)
{
    if (!isWaveParser(element))
        return;
    const Mend &mend = *static_cast<const Mend *>(data);
    if (mend.readToEnd)
        g_object_set(element, "ignore-length", TRUE, nullptr);
    if (mend.length == 0)
        return;
    // The parser's source pad is there from its making, before any data passes.
    if (GstPad *pad = gst_element_get_static_pad(element, "src")) {
        auto *stretch = new Stretch;
        stretch->length = mend.length;
        gst_pad_add_probe(pad,
            GstPadProbeType(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM
                | GST_PAD_PROBE_TYPE_EVENT_UPSTREAM),
            stretchTimes, stretch, [](gpointer data) { delete static_cast<Stretch *>(data); });
        gst_object_unref(pad);
    }
}

} // namespace

void mendWaveParser(GstElement *playbin, const wav::Layout &layout, qint64 lengthMs)
{
    auto *mend = new Mend;
    mend->readToEnd = layout.paddedToEnd;
    if (layout.format == wav::FormatMsAdpcm && lengthMs > 0)
        mend->length = GstClockTime(lengthMs) * GST_MSECOND;
    if (!mend->readToEnd && mend->length == 0) {
        delete mend;
        return;
    }
    g_signal_connect_data(
        playbin, "deep-element-added", G_CALLBACK(parserMade), mend,
        [](gpointer data, GClosure *) { delete static_cast<Mend *>(data); }, GConnectFlags(0));
}

} // namespace media
