#pragma once

class Session;

// The entry routine: reads which content database this machine presents, opens it into
// the session's content, works out the data folder and shows the session's start screen.
// Any failure on the way (no selected database, a missing or broken file, a start screen
// that cannot load) shows the error box "Λάθος # ..." and returns false; the caller then
// ends the program.
bool Main(Session &session);
