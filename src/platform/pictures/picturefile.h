#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

// Pictures read as the program's windows read them: a photograph, a comment's picture,
// an index term's picture. The readers' failures become the platform's run-time errors,
// which name the file, so that the pupil sees why nothing opened.
namespace pictures {

// Large enough for a museum's scan of 12,000 by 9,000 pixels in 32 bits (about 412 MB),
// and no larger: a header that claims more is refused before anything is allocated.
inline constexpr int AllocationLimitMB = 1024;

// Reads the file: BMP, JPEG, GIF, PNG, ICO and the other formats Qt reads, and Windows
// metafiles, plain and enhanced (drawn). Raises platform::RuntimeError: 53 when the file is
// not there, 481 when it holds no picture we can read, 7 when it is too large to hold.
QImage LoadPicture(const QString &path);

// The same for bytes already read; `name` is what the error text calls them.
QImage pictureFromBytes(const QByteArray &bytes, const QString &name);

} // namespace pictures
