#include "childwindows.h"

#include "mdiform1.h"

#include <drawingwindows.h>
#include <findingwindows.h>
#include <frmnotes.h>
#include <notepadwindows.h>
#include <session.h>
#include <viewingwindows.h>

// Each subsystem registers its windows in a block of its own.
void registerChildWindows()
{
    // session: the shell hands its own session here once it is made with one.
    Session *session = Session::current();
    if (!session)
        return;

    // Viewing: the viewers of texts and photographs, the tip and the picture windows.
    registerViewingWindows(*session);

    // Finding: the resource search, the index and the text search.
    finding::registerFindingWindows(*session);

    // Notepad and drawing; the drawing window is also the viewer of a map.
    registerNotepadWindows(*session);
    registerDrawingWindows(*session);

    // session: the shell asks through its table until it asks its session by kind.
    for (const auto &[child, kind] : {std::pair {MDIForm1::ChildWindow::Index, Session::Window::Index},
             std::pair {MDIForm1::ChildWindow::SearchResources, Session::Window::SearchResources},
             std::pair {MDIForm1::ChildWindow::FullTextSearch, Session::Window::FullTextSearch}})
        MDIForm1::setChildWindowProvider(child, [session, kind](bool create) { return session->window(kind, create); });
    MDIForm1::setChildWindowProvider(MDIForm1::ChildWindow::Notes,
        [session](bool create) -> QWidget * { return frmNotes::open(*session, create); });
    MDIForm1::setChildWindowProvider(MDIForm1::ChildWindow::Drawing,
        [session](bool create) -> QWidget * { return openShellDrawing(*session, create); });
}
