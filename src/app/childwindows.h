#pragma once

class Session;
class frmDrawing;

// Registers on the session how the shell, the start screen and the navigation tree are made.
void registerShellWindows(Session &session);

// Registers on the session how each of its windows is made: the shell's own, and the
// windows of the finding, notepad and drawing subsystems, which stand above the shell,
// the viewers and the tiles. Called once for each session, before its first window shows.
void registerChildWindows(Session &session);

// A drawing window of its own, not a tile's: loaded, and gone when it is closed.
frmDrawing *newDrawingWindow(Session &session);
