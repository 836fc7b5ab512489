#include "picturefile.h"

#include "metafile.h"

#include <runtimeerror.h>

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

namespace pictures {

namespace {

constexpr int OutOfMemory = 7;

[[noreturn]] void invalidPicture(const QString &name)
{
    throw platform::RuntimeError(
        platform::errors::InvalidPicture, QStringLiteral("Μη έγκυρη εικόνα: «%1»").arg(name));
}

} // namespace

QImage pictureFromBytes(const QByteArray &bytes, const QString &name)
{
    if (isWindowsMetafile(bytes)) {
        QImage drawn = drawWindowsMetafile(bytes);
        if (drawn.isNull())
            invalidPicture(name);
        return drawn;
    }
    if (isEnhancedMetafile(bytes)) {
        QImage drawn = drawEnhancedMetafile(bytes);
        if (drawn.isNull())
            invalidPicture(name);
        return drawn;
    }

    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAllocationLimit(AllocationLimitMB);
    const QSize size = reader.size();
    // Four bytes a pixel is what the reader will ask for; a header that asks for more
    // than the limit is refused here, before the reader tries.
    if (size.isValid() && qint64(size.width()) * size.height() * 4 > qint64(AllocationLimitMB) * 1024 * 1024)
        throw platform::RuntimeError(OutOfMemory,
            QStringLiteral("Η εικόνα «%1» είναι πολύ μεγάλη (%2 × %3)")
                .arg(name)
                .arg(size.width())
                .arg(size.height()));
    QImage image;
    if (!reader.read(&image) || image.isNull())
        invalidPicture(name);
    return image;
}

QImage LoadPicture(const QString &path)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.isFile())
        throw platform::RuntimeError(platform::errors::FileNotFound, QStringLiteral("Το αρχείο δεν βρέθηκε"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        invalidPicture(info.fileName());
    return pictureFromBytes(file.readAll(), info.fileName());
}

} // namespace pictures
