#include "picturedata.h"

#include "surface.h"

#include <picturefile.h>
#include <runtimeerror.h>

#include <QMimeData>
#include <QVariant>

namespace drawing {

namespace {

// Encoded bitmaps; the metafile and vector formats are not bitmaps to take.
bool isBitmapFormat(const QString &format)
{
    return format.startsWith(QStringLiteral("image/")) && format != u"image/svg+xml"
        && format != u"image/x-emf" && format != u"image/x-wmf";
}

} // namespace

QImage pictureFromMimeData(const QMimeData *data, const QString &name)
{
    if (!data)
        return {};
    // Bytes from another program go through the picture reader, which refuses a header
    // that claims more than the limit before anything is allocated.
    for (const QString &format : data->formats()) {
        if (!isBitmapFormat(format))
            continue;
        const QByteArray bytes = data->data(format);
        if (bytes.isEmpty())
            continue;
        try {
            return pictures::pictureFromBytes(bytes, name);
        } catch (const platform::RuntimeError &e) {
            if (e.number() != platform::errors::InvalidPicture)
                throw;
        }
    }
    // A picture handed over inside the program is an image already, kept to the same
    // size. Asking for it is only safe when no encoded format is there: for another
    // program's data Qt would decode the bytes with no limit at all.
    if (!data->hasFormat(QStringLiteral("application/x-qt-image")))
        return {};
    for (const QString &format : data->formats()) {
        if (isBitmapFormat(format))
            return {};
    }
    const QImage image = qvariant_cast<QImage>(data->imageData());
    if (qint64(image.width()) * image.height() * 4 > qint64(pictures::AllocationLimitMB) * 1024 * 1024)
        throwOutOfMemory();
    return image;
}

} // namespace drawing
