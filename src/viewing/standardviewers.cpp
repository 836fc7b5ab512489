#include "frmresphoto.h"
#include "frmtextresource.h"
#include "sourceviewer.h"

// The program's own viewers. A map opens in a drawing window, which registers itself
// when the painter stands.
void registerStandardViewers()
{
    SourceViewer::setFactory(SourceViewer::Kind::Text, [] { return new frmTextResource; });
    SourceViewer::setFactory(SourceViewer::Kind::Photo, [] { return new frmResPhoto; });
}
