#include "sourceviewer.h"

// The program's own viewers add their factories here as they come, e.g.
//   SourceViewer::setFactory(SourceViewer::Kind::Text, [] { return new frmTextResource; });
void registerStandardViewers()
{
}
