#include "childwindows.h"

// Each subsystem registers its windows in a block of its own.
void registerChildWindows()
{
    // Finding: the resource search and the index.

    // Notepad.

    // Drawing: the drawing window, also as the viewer of a map.
}
