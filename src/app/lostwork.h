#pragma once

#include <recoverystore.h>

#include <QList>

class MDIForm1;
class Session;

// Work that the last run left unsaved (killed, crashed, a power cut) comes back: the
// pupil is asked at start, and what is taken back opens in the shell, changed and
// unsaved, as soon as the shell is up.
namespace lostwork {

// Asks about the work left by programs that are no longer running, if there is any. A
// yes takes it over into this program's recovery folder and reopens it when the shell
// shows; a no removes it; Escape or closing the question keeps it for the next start.
// A drawing whose copy does not decode is set aside and told of once, not asked about.
void offer(Session &session);

// Opens taken-over work in the shell, among its session's windows: the note in the
// notepad, each drawing in a drawing window of its own.
void reopen(MDIForm1 &shell, const QList<recovery::Entry> &work);

// The question's text for the work found.
QString question(const QList<recovery::Entry> &work);

} // namespace lostwork
