#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

// Windows metafiles, which old content and RTF texts hold for drawings and clip art.
namespace pictures {

// True when the bytes start as a Windows metafile (with or without the placeable header).
bool isWindowsMetafile(const QByteArray &bytes);
// True when the bytes start as an enhanced metafile.
bool isEnhancedMetafile(const QByteArray &bytes);

// The size the metafile asks for on the screen, in pixels; invalid when it names none.
QSize metafileDisplaySize(const QByteArray &wmf);

// The metafile drawn on white at `size` (its own display size when invalid); a null
// image when it cannot be drawn.
QImage drawWindowsMetafile(const QByteArray &wmf, QSize size = {});

// An enhanced metafile's frame in pixels, from its header; invalid when unreadable.
QSize enhancedMetafileSize(const QByteArray &emf);

// The enhanced metafile drawn on white at `size` (its frame's size when invalid); a null
// image when it cannot be drawn.
QImage drawEnhancedMetafile(const QByteArray &emf, QSize size = {});

// The size a metafile is drawn at: `size` within 8192 pixels a side and the pixels of a
// 4K screen in all, its shape kept when it must shrink. The drawing's time and memory go with its
// pixels, which a few bytes of header may ask for.
QSize drawingSize(QSize size);

// What stands for a metafile that nothing here draws: white, with a thin grey edge, so
// the place and size the author gave it still show.
QImage emptyFrame(QSize size);

} // namespace pictures
