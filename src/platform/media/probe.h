#pragma once

#include <QString>

// What a sound or video file holds, found by the player itself reading it silently: what
// plays here plays in the window, and what fails here fails there.
namespace media {

class Engines;

struct MediaInfo
{
    qint64 durationMs = 0; // 0 when the file does not tell
    bool video = false;
};

// Needs a running Qt event loop's application object. Raises platform::RuntimeError
// (53 when the file is not there, UnplayableMedia when it cannot be played, naming it and
// giving the reason in the player's words). A file that does not open within the player's
// own limit is given up as the player gives it up; `playMs` bounds the silent playing that
// some files need before they tell their length. The player's engine runs on a thread of
// `engines`.
MediaInfo probe(Engines &engines, const QString &file, int playMs = 30000);

// The error raised for a sound or video that cannot be played.
inline constexpr int UnplayableMedia = 5;

// The program's text for a piece that cannot be played, naming the file; `why` is one of
// the player's reasons (failureText).
QString unplayableText(const QString &file, const QString &why);

} // namespace media
