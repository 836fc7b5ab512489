#pragma once

#include <QRectF>

class QImage;
class QPrinter;

namespace drawing {

// Prints the picture on one page, as large as the printable area allows with its
// proportions kept, from the area's top left corner: a picture wider than high turns
// the page to landscape. Ends the document. Returns the rectangle printed on, in the
// printer's device pixels. Raises platform::RuntimeError when there is no picture or
// the printer cannot start.
QRectF PrintPictureFit(QPrinter &printer, const QImage &picture);

} // namespace drawing
