#pragma once

#include <QByteArray>

// The program places its own windows: the tip at the pointer, the palettes under their
// buttons, windows centred in the shell. A Wayland compositor does not let a client place
// its top-level windows, so under a Wayland session the program runs through XWayland,
// unless the user has chosen Qt's platform himself. Called before the application object
// is made, since that is when Qt reads the choice.

// The value for QT_QPA_PLATFORM given the session's WAYLAND_DISPLAY and the user's own
// QT_QPA_PLATFORM; empty when the choice is left as it is. XWayland first, Wayland itself
// where the session has no XWayland.
QByteArray windowSystemChoice(const QByteArray &waylandDisplay, const QByteArray &userChoice);

// Reads the environment and sets QT_QPA_PLATFORM where windowSystemChoice() says so.
void chooseWindowSystem();
