#pragma once

// The entry routine: reads which content database this machine presents, opens it,
// works out the data folder and shows the start screen. Any failure on the way (no
// selected database, a missing or broken file, a start screen that cannot load) shows
// the error box "Λάθος # ..." and returns false; the caller then ends the program.
bool Main();
