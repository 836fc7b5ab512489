#pragma once

#include "logging.h"
#include "runtimeerror.h"

#include <exception>
#include <source_location>
#include <utility>

// What happens to an error that a routine does not trap: the event handler stops where
// it is, the error box shows, and the program goes on. Exceptions never leave a Qt event
// handler: every handler that can meet one runs its body through guarded().
namespace platform {

// "Λάθος # " + number + CR LF + description, critical icon, title "Τρεμίδια".
QString runtimeErrorText(int number, const QString &description);
void showRuntimeError(int number, const QString &description);

namespace detail {
void reportUnexpected(const std::exception &e);
void reportUnknown();
} // namespace detail

// Runs an event handler's body; an untrapped error ends the handler with the error box.
// Returns false when the body did not finish.
template<typename F> bool guarded(F &&body) noexcept
{
    try {
        std::forward<F>(body)();
        return true;
    } catch (const RuntimeError &e) {
        showRuntimeError(e.number(), e.description());
    } catch (const std::exception &e) {
        detail::reportUnexpected(e);
    } catch (...) {
        detail::reportUnknown();
    }
    return false;
}

// One statement of a routine that goes on past every failing statement.
// Returns false when the statement failed; the error goes no further than the log
// (tremidia.errors, with the caller's place).
template<typename F>
bool resumeNext(F &&statement, const std::source_location &where = std::source_location::current()) noexcept
{
    try {
        std::forward<F>(statement)();
        return true;
    } catch (...) {
        logCurrentPassedOver(where);
        return false;
    }
}

} // namespace platform
