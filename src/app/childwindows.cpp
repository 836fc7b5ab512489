#include "childwindows.h"

#include "mdiform1.h"

#include <findingwindows.h>
#include <frmdrawing.h>
#include <frmfulltextsearch.h>
#include <frmindex.h>
#include <frmnotes.h>
#include <frmsearchresources.h>
#include <session.h>
#include <sourceviewer.h>
#include <viewingwindows.h>

#include <QMdiSubWindow>
#include <QPointer>

// Each subsystem registers its windows in a block of its own.
void registerChildWindows()
{
    Session &session = *Session::current();

    // Viewing: the viewers of texts and photographs, the tip and the picture windows.
    registerViewingWindows(session);

    // Finding: the resource search and the index.
    MDIForm1::setChildWindowProvider(
        MDIForm1::ChildWindow::Index, [](bool create) -> QWidget * { return frmIndex::instance(create); });
    MDIForm1::setChildWindowProvider(MDIForm1::ChildWindow::SearchResources,
        [](bool create) -> QWidget * { return frmSearchResources::instance(create); });
    finding::registerFindingLinks(session);
    MDIForm1::setChildWindowProvider(MDIForm1::ChildWindow::FullTextSearch,
        [](bool create) -> QWidget * { return frmFullTextSearch::instance(create); });

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
    session.setViewerFactory(
        int(SourceViewer::Kind::Map), [](Session &) -> QWidget * { return new frmDrawing; });
}
