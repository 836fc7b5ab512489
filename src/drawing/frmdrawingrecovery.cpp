#include "frmdrawing.h"
#include "picphoto.h"

#include <errorpolicy.h>
#include <recoverystore.h>

#include <QBuffer>

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

void frmDrawing::RestoreWork(const recovery::Entry &lost)
{
    const QImage recovered(lost.contentPath, "PNG");
    if (recovered.isNull())
        return;
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
}
