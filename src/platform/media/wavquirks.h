#pragma once

#include "wavheader.h"

typedef struct _GstElement GstElement;

namespace media {

// Mends, inside `playbin`, what GStreamer's WAVE parser gets wrong about a file whose
// header we have read:
// - data of an odd size that ends the file with its padding byte: the parser takes the
//   missing chunk after it for a broken file and plays nothing, unless it reads the data
//   to the end of the file;
// - Microsoft ADPCM: the parser counts each block at about half its samples, so its times
//   run at about half the sound's (it is cut off at half its length, and a seek lands at
//   twice the place asked). Its times are stretched to the header's length on their way
//   out of it, and the places asked shrunk on their way in.
// Runs on GStreamer's threads, where the parser is made; it touches nothing of ours but
// a copy of what the header says. Call before the pipeline starts.
void mendWaveParser(GstElement *playbin, const wav::Layout &layout, qint64 lengthMs);

} // namespace media
