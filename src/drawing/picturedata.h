#pragma once

#include <QImage>
#include <QString>

class QMimeData;

namespace drawing {

// The bitmap that clipboard or drop data carry, read as a picture file is read, with the
// same limits: a null image when nothing in the data decodes as a bitmap (a metafile
// alone, text, broken bytes). Raises the out-of-memory error (7) for a bitmap larger
// than a picture file may be; `name` is what that error's text calls the data.
QImage pictureFromMimeData(const QMimeData *data, const QString &name);

} // namespace drawing
