#pragma once

class QKeyEvent;

namespace controls {

// The key code that key events of the windows carry: the number of the key on the
// keyboard (65 for A, 13 for Enter, 37 for the left arrow), not the character it types.
int virtualKeyCode(const QKeyEvent *event);

} // namespace controls
