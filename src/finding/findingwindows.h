#pragma once

class Session;

// The search, the index and the text search as the session's windows, and their links
// to the windows below them that call on them: the text viewer's index words, the
// viewers' closing (which frees a search item).
namespace finding {

// Registers the three windows' factories and the links on the session.
void registerFindingWindows(Session &session);

} // namespace finding
