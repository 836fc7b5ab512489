#pragma once

class Session;

// Connects the search and the index to the windows below them that call on them: the
// text viewer's index words and the viewers' closing (which frees a search item).
namespace finding {

void registerFindingLinks(Session &session);

} // namespace finding
