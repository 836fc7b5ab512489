#include "childwindows.h"

#include "mdiform1.h"

#include <drawingwindows.h>
#include <findingwindows.h>
#include <frmdrawing.h>
#include <frmnotes.h>
#include <notepadwindows.h>
#include <session.h>
#include <sourceviewer.h>

// Each subsystem registers its windows in a block of its own.
void registerChildWindows()
{
    // Finding: the resource search, the index and the text search, the session's windows.
    // session: the shell hands its own session here once it is made with one.
    if (Session *session = Session::current()) {
        finding::registerFindingWindows(*session);
        for (const auto &[child, kind] : {std::pair {MDIForm1::ChildWindow::Index, Session::Window::Index},
                 std::pair {MDIForm1::ChildWindow::SearchResources, Session::Window::SearchResources},
                 std::pair {MDIForm1::ChildWindow::FullTextSearch, Session::Window::FullTextSearch}})
            MDIForm1::setChildWindowProvider(
                child, [session, kind](bool create) { return session->window(kind, create); });
    }

    // Notepad and drawing: their windows are the session's.
    // session: the shell and the tiles still ask through these tables, for the running
    // session; they ask their own session once they have one.
    if (Session *session = Session::current()) {
        registerNotepadWindows(*session);
        registerDrawingWindows(*session);
    }
    MDIForm1::setChildWindowProvider(MDIForm1::ChildWindow::Notes, [](bool create) -> QWidget * {
        Session *session = Session::current();
        return session ? frmNotes::open(*session, create) : nullptr;
    });
    MDIForm1::setChildWindowProvider(MDIForm1::ChildWindow::Drawing, [](bool create) -> QWidget * {
        Session *session = Session::current();
        return session ? openShellDrawing(*session, create) : nullptr;
    });
    SourceViewer::setFactory(SourceViewer::Kind::Map, []() -> SourceViewer * {
        Session *session = Session::current();
        if (!session)
            return nullptr;
        auto *viewer = new frmDrawing(*session);
        session->adopt(viewer);
        return viewer;
    });
}
