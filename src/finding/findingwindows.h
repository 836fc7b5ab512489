#pragma once

// Connects the search and the index to the windows below them that call on them: the
// text viewer's index words, the viewers' closing (which frees a search item) and the
// media player, which plays what the index has chosen.
namespace finding {

void registerFindingLinks();

} // namespace finding
