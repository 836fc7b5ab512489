#include "viewingwindows.h"

#include "frmfoto.h"
#include "frmmaxphoto.h"
#include "frmresphoto.h"
#include "frmtextresource.h"
#include "frmtooltips.h"

#include <session.h>

void registerViewingWindows(Session &session)
{
    session.setViewerFactory(
        int(SourceViewer::Kind::Text), [](Session &s) -> QWidget * { return new frmTextResource(s); });
    session.setViewerFactory(
        int(SourceViewer::Kind::Photo), [](Session &s) -> QWidget * { return new frmResPhoto(s); });
    session.setWindowFactory(
        Session::Window::Tip, [](Session &s) -> QWidget * { return new frmToolTips(s); });
    session.setWindowFactory(Session::Window::Photo, [](Session &s) -> QWidget * { return new frmFoto(s); });
    session.setWindowFactory(
        Session::Window::MaxPhoto, [](Session &s) -> QWidget * { return new frmMaxPhoto(s); });
}
