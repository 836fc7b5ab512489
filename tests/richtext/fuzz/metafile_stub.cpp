// The fuzzing build's metafile pictures: nothing is drawn, plain or enhanced, and an empty
// frame is plain.
#include <metafile.h>

namespace pictures {

QImage drawWindowsMetafile(const QByteArray &, QSize)
{
    return {};
}

QImage drawEnhancedMetafile(const QByteArray &, QSize)
{
    return {};
}

QImage emptyFrame(QSize size)
{
    QImage frame(size.boundedTo(QSize(2048, 2048)).expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    frame.fill(Qt::white);
    return frame;
}

} // namespace pictures
