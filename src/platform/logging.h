#pragma once

#include <QLoggingCategory>

#include <exception>
#include <source_location>

// Where the program writes what it deliberately passes over. Nothing of it reaches the
// screen; a technician sees it with QT_LOGGING_RULES="tremidia.*=true" or in the journal.
//
//   tremidia.errors    an error a routine went on past (resumeNext and its kin)
//   tremidia.content   the content database: imports, indexes, fallbacks
//   tremidia.recovery  the recovery copies of the pupil's unsaved work
//   tremidia.media     the sound and video player: what GStreamer said of a piece it refused
//   tremidia.handin    handing work in: a destination that did not take a bundle, and why
Q_DECLARE_LOGGING_CATEGORY(lcErrors)
Q_DECLARE_LOGGING_CATEGORY(lcContent)
Q_DECLARE_LOGGING_CATEGORY(lcRecovery)
Q_DECLARE_LOGGING_CATEGORY(lcMedia)
Q_DECLARE_LOGGING_CATEGORY(lcHandin)

namespace platform {

// Writes an error that is being passed over to tremidia.errors, with where it happened
// and, when it is one, the program's error number and description. `error` may be null
// for an exception of an unknown kind.
void logPassedOver(const std::exception *error, const std::source_location &where,
    const QLoggingCategory &category = lcErrors());

// The same, for the exception now being handled (call it inside a catch block).
void logCurrentPassedOver(const std::source_location &where, const QLoggingCategory &category = lcErrors());

} // namespace platform
