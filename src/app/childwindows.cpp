#include "childwindows.h"

#include "mdiform1.h"

#include <findingwindows.h>
#include <frmindex.h>
#include <frmnotes.h>
#include <frmsearchresources.h>

// Each subsystem registers its windows in a block of its own.
void registerChildWindows()
{
    // Finding: the resource search and the index.
    MDIForm1::setChildWindowProvider(
        MDIForm1::ChildWindow::Index, [](bool create) -> QWidget * { return frmIndex::instance(create); });
    MDIForm1::setChildWindowProvider(MDIForm1::ChildWindow::SearchResources,
        [](bool create) -> QWidget * { return frmSearchResources::instance(create); });
    finding::registerFindingLinks();

    // Notepad.
    MDIForm1::setChildWindowProvider(
        MDIForm1::ChildWindow::Notes, [](bool create) -> QWidget * { return frmNotes::instance(create); });

    // Drawing: the drawing window, also as the viewer of a map.
}
