#include "childwindows.h"

#include "frmnewfirst.h"
#include "frmploigisi.h"
#include "mdiform1.h"

#include <drawingwindows.h>
#include <findingwindows.h>
#include <frmdrawing.h>
#include <frmhandin.h>
#include <notepadwindows.h>
#include <session.h>
#include <viewingwindows.h>

#include <QMdiSubWindow>

void registerShellWindows(Session &session)
{
    // The shell, the start screen, and the tree that floats above the shell and goes with it.
    session.setWindowFactory(Session::Window::Shell, [](Session &s) -> QWidget * { return new MDIForm1(s); });
    session.setWindowFactory(
        Session::Window::StartScreen, [](Session &s) -> QWidget * { return new frmNewFirst(s); });
    session.setWindowFactory(Session::Window::Navigation, [](Session &s) -> QWidget * {
        ShellWindow *shell = s.shell(false);
        return new frmPloigisi(s, shell ? shell->window() : nullptr);
    });
}

// Each subsystem registers its windows in a block of its own.
void registerChildWindows(Session &session)
{
    registerShellWindows(session);

    // Viewing: the viewers of texts and photographs, the tip and the picture windows.
    registerViewingWindows(session);

    // Finding: the resource search, the index and the text search.
    finding::registerFindingWindows(session);

    // Notepad and drawing; the drawing window is also the viewer of a map.
    registerNotepadWindows(session);
    registerDrawingWindows(session);

    // Handing work in: the pupil's hand-in window.
    registerHandInWindows(session);
}

frmDrawing *newDrawingWindow(Session &session)
{
    auto *drawing = new frmDrawing(session);
    QObject::connect(drawing, &SourceViewer::OnUnload, drawing, [drawing] {
        if (auto *sub = qobject_cast<QMdiSubWindow *>(drawing->parentWidget()))
            sub->deleteLater();
        else
            drawing->deleteLater();
    });
    drawing->Load();
    return drawing;
}
