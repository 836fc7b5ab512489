#include "notepadwindows.h"

#include "frmbullets.h"
#include "frmfind.h"
#include "frmformat.h"
#include "frmnotes.h"

#include <session.h>

void registerNotepadWindows(Session &session)
{
    session.setWindowFactory(
        Session::Window::Notes, [](Session &s) -> QWidget * { return frmNotes::open(s); });
    session.setWindowFactory(Session::Window::Find, [](Session &s) -> QWidget * { return frmFind::open(s); });
    session.setWindowFactory(
        Session::Window::Format, [](Session &s) -> QWidget * { return frmFormat::open(s); });
    session.setWindowFactory(
        Session::Window::Bullets, [](Session &s) -> QWidget * { return frmBullets::open(s); });
}
