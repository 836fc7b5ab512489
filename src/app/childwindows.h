#pragma once

// Tells the shell, the viewers and the tiles how to reach the windows of the finding,
// notepad and drawing subsystems, which stand above them. Called once at start, before
// the first window shows.
void registerChildWindows();
