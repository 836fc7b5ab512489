#pragma once

// The entry routine: reads the selected database, opens it, works out the data folder
// and shows the start screen. Returns false after a failed start (the error box has
// been shown); the caller then ends the program.
bool Main();
