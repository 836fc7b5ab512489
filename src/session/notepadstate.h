#pragma once

#include <QString>

// What the notepad remembers between its windows and dialogs for as long as the session
// runs: the file, the last find and replace, the paragraph and bullet dialogs' answers.
struct NotepadState
{
};
