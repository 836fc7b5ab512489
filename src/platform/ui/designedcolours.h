#pragma once

#include <QPalette>

class QWidget;

// The colours the windows were designed in: black text on white boxes and light grey
// window faces, whatever palette the desktop hands to Qt (a dark or high-contrast theme
// would otherwise put light text on the program's cream and parchment backgrounds).
// Each of the program's windows takes them at its making; Qt's own dialogs keep the
// desktop's.
namespace platform {

// Every role of every colour group set, so that nothing falls through to the desktop.
QPalette designedPalette();

// Gives a window (and so its children) the designed colours. Colours a window sets on
// its own controls afterwards stand on top of them.
void useDesignedColours(QWidget *window);

} // namespace platform
