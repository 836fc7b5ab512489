#pragma once

class Session;
class frmDrawing;

// Makes the painter the session's: the shell's own drawing window
// (Session::Window::Drawing), made afresh after it was closed, and a drawing window as
// the viewer of a map.
void registerDrawingWindows(Session &session);

// The shell's own drawing window: loaded when `create` is set and there is none.
frmDrawing *openShellDrawing(Session &session, bool create = true);
