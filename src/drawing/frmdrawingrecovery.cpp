#include "frmdrawing.h"
#include "picphoto.h"

#include <errorpolicy.h>
#include <picturefile.h>
#include <recoverystore.h>

#include <QBuffer>
#include <QImageReader>

// A drawing is kept as PNG: lossless like the pupil's bitmap, and small.
std::optional<recovery::Work> frmDrawing::unsavedWork() const
{
    if (!picPhoto->hasPicture() || !PictureChangedSinceKept())
        return std::nullopt;
    recovery::Work work;
    QBuffer buffer(&work.content);
    if (!buffer.open(QIODevice::WriteOnly) || !picPhoto->Picture().save(&buffer, "PNG"))
        return std::nullopt;
    work.extension = QStringLiteral("png");
    work.details.insert(QStringLiteral("fileName"), m_pictureFileName);
    work.details.insert(QStringLiteral("title"), windowTitle());
    work.details.insert(QStringLiteral("map"), m_mapPath);
    work.details.insert(QStringLiteral("resourceID"), ResourceID());
    return work;
}

QImage frmDrawing::RecoveredPicture(const QString &path)
{
    // PNG and nothing else, as it was kept: whatever else the bytes may claim to be.
    QImageReader reader(path, "png");
    reader.setAutoDetectImageFormat(false);
    reader.setAllocationLimit(pictures::AllocationLimitMB);
    const QSize size = reader.size();
    if (!size.isValid()
        || qint64(size.width()) * size.height() * 4 > qint64(pictures::AllocationLimitMB) * 1024 * 1024)
        return {};
    QImage picture;
    return reader.read(&picture) ? picture : QImage();
}

bool frmDrawing::RestoreWork(const recovery::Entry &lost)
{
    const QImage recovered = RecoveredPicture(lost.contentPath);
    if (recovered.isNull())
        return false;
    const QString title = lost.details.value(QStringLiteral("title")).toString();
    if (!title.isEmpty())
        setWindowTitle(title);
    setResourceID(lost.details.value(QStringLiteral("resourceID")).toInt());
    // The map underneath is what the drawing is compared with, as when it was drawn; a
    // map that is gone leaves the drawing changed against nothing.
    m_keptPicture = QImage();
    const QString map = lost.details.value(QStringLiteral("map")).toString();
    if (!map.isEmpty())
        platform::resumeNext([&] { setMapPicture(map); });
    picPhoto->setPicture(recovered);
    m_pictureFileName = lost.details.value(QStringLiteral("fileName")).toString();
    SetScrollBars();
    Recovery->takeOver(lost);
    return true;
}
