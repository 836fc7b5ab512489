#pragma once

class Session;

// Registers with the session the viewers of texts and photographs and the single windows
// of viewing: the popup tip, the index's picture and the enlarged photograph. A map's
// viewer is the drawing window, which the drawing registers.
void registerViewingWindows(Session &session);
