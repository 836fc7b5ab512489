#pragma once

#include "failure.h"

#include <QString>

typedef struct _GstElement GstElement;
typedef struct _GError GError;
typedef struct _GstObject GstObject;

// The few GStreamer services the player and the probe share.
namespace media {

// Starts GStreamer once for the process; false (with the reason) when it cannot start.
bool startGStreamer(QString *why = nullptr);

// The sink the sound goes to. TREMIDIA_AUDIO_SINK may name another pipeline description
// (the tests play into "fakesink sync=true", as a computer without a sound card does);
// otherwise the system's choice, which itself falls back to playing into nothing.
// `silent` plays into nothing as fast as the data comes, for a probe.
GstElement *makeAudioSink(bool silent);

// GStreamer's own text for an error (English, for the log), or `fallback` when it has none.
QString errorText(const GError *error, const QString &fallback);

// Which of the reasons a pupil is told an error that `source` posted comes to.
Failure failureOf(const GError *error, GstObject *source);

} // namespace media
