#include "drawingwindows.h"

#include "frmdrawing.h"

#include <session.h>

#include <QMdiSubWindow>

frmDrawing *openShellDrawing(Session &session, bool create)
{
    auto *drawing = session.window<frmDrawing>(Session::Window::Drawing, false);
    if (drawing || !create)
        return drawing;
    drawing = new frmDrawing(session);
    // Closed, it goes with its child frame; the next call makes a new one.
    QObject::connect(drawing, &SourceViewer::OnUnload, drawing, [drawing] {
        if (auto *sub = qobject_cast<QMdiSubWindow *>(drawing->parentWidget()))
            sub->deleteLater();
        else
            drawing->deleteLater();
    });
    session.setWindow(Session::Window::Drawing, drawing);
    drawing->Load();
    return drawing;
}

void registerDrawingWindows(Session &session)
{
    session.setWindowFactory(
        Session::Window::Drawing, [](Session &s) -> QWidget * { return openShellDrawing(s); });
    session.setViewerFactory(
        int(SourceViewer::Kind::Map), [](Session &s) -> QWidget * { return new frmDrawing(s); });
}
