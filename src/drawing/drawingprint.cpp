#include "drawingprint.h"

#include <runtimeerror.h>

#include <QImage>
#include <QPainter>
#include <QPrinter>

namespace drawing {

QRectF PrintPictureFit(QPrinter &printer, const QImage &picture)
{
    if (picture.isNull())
        throw platform::RuntimeError(platform::errors::InvalidPicture, QStringLiteral("Μη έγκυρη εικόνα"));
    printer.setPageOrientation(
        picture.height() < picture.width() ? QPageLayout::Landscape : QPageLayout::Portrait);
    const double r = double(picture.width()) / double(picture.height());
    const QRect area = printer.pageLayout().paintRectPixels(printer.resolution());
    const double w = area.width();
    const double h = area.height();
    QRectF target;
    if (r >= w / h)
        target = QRectF(0, 0, w, w / r);
    else
        target = QRectF(0, 0, h * r, h);

    QPainter painter;
    if (!painter.begin(&printer))
        throw platform::RuntimeError(482, QStringLiteral("Σφάλμα εκτυπωτή"));
    painter.drawImage(target, picture);
    painter.end();
    return target;
}

} // namespace drawing
