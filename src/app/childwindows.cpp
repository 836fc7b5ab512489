#include "childwindows.h"

#include "mdiform1.h"

#include <findingwindows.h>
#include <frmdrawing.h>
#include <frmnotes.h>
#include <session.h>
#include <sourceviewer.h>

#include <QMdiSubWindow>
#include <QPointer>

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

    // Notepad.
    MDIForm1::setChildWindowProvider(
        MDIForm1::ChildWindow::Notes, [](bool create) -> QWidget * { return frmNotes::instance(create); });

    // Drawing: the drawing window, also as the viewer of a map.
    MDIForm1::setChildWindowProvider(MDIForm1::ChildWindow::Drawing, [](bool create) -> QWidget * {
        static QPointer<frmDrawing> shellDrawing;
        if (!shellDrawing && create) {
            shellDrawing = new frmDrawing;
            // The shell's own drawing window is made afresh after it was closed.
            QObject::connect(shellDrawing, &SourceViewer::OnUnload, shellDrawing, [w = shellDrawing.data()] {
                if (auto *sub = qobject_cast<QMdiSubWindow *>(w->parentWidget()))
                    sub->deleteLater();
                else
                    w->deleteLater();
            });
            shellDrawing->Load();
        }
        return shellDrawing;
    });
    SourceViewer::setFactory(SourceViewer::Kind::Map, [] { return new frmDrawing; });
}
