#pragma once

class Session;

// Makes the notepad's windows the session's: the notes window, its find window and its
// paragraph and bullet dialogs (Session::Window::Notes, Find, Format, Bullets).
void registerNotepadWindows(Session &session);
