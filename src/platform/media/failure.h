#pragma once

#include <QString>

namespace media {

// Why a piece cannot be played, in the three cases a pupil is told apart; what GStreamer
// said goes to the log (tremidia.media), in its own words.
enum class Failure {
    None,
    NoDecoder, // no decoder here for this kind of file
    Damaged, // the file is damaged, or never gives what it holds
    NotFound, // the file is not there, or cannot be opened
};

// The reason in the program's words, to follow "cannot play the file …: ".
QString failureText(Failure failure);

} // namespace media
