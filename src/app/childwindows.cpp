#include "childwindows.h"

#include "mdiform1.h"

#include <frmnotes.h>

// Each subsystem registers its windows in a block of its own.
void registerChildWindows()
{
    // Finding: the resource search and the index.

    // Notepad.
    MDIForm1::setChildWindowProvider(
        MDIForm1::ChildWindow::Notes, [](bool create) -> QWidget * { return frmNotes::instance(create); });

    // Drawing: the drawing window, also as the viewer of a map.
}
