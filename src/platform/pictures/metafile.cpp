#include "metafile.h"

#include "littleendian.h"

#include <QPainter>
#include <QScopeGuard>

#include <algorithm>
#include <cmath>
#include <cstring>

extern "C" {
#include <libwmf/api.h>
#include <libwmf/gd.h>
}

namespace pictures {

namespace {

qint16 les16(const QByteArray &d, qsizetype at)
{
    return qint16(le16(d, at));
}

constexpr quint32 PlaceableKey = 0x9AC6CDD7u;
// A metafile drawing is never made larger than this on either side.
constexpr int MaxDrawnSide = 8192;
constexpr double ScreenDpi = 96.0;

// libwmf hands its PNG over in a buffer of its own without a length; the PNG's chunks
// tell where it ends.
qsizetype pngLength(const char *data, qsizetype available)
{
    static const char signature[] = "\x89PNG\r\n\x1a\n";
    if (!data || available < 8 || memcmp(data, signature, 8) != 0)
        return 0;
    qsizetype pos = 8;
    while (pos + 12 <= available) {
        const auto *p = reinterpret_cast<const unsigned char *>(data + pos);
        const quint32 length = (quint32(p[0]) << 24) | (quint32(p[1]) << 16) | (quint32(p[2]) << 8) | p[3];
        const qsizetype next = pos + 12 + qsizetype(length);
        if (next > available)
            return 0;
        if (memcmp(data + pos + 4, "IEND", 4) == 0)
            return next;
        pos = next;
    }
    return 0;
}

} // namespace

bool isWindowsMetafile(const QByteArray &bytes)
{
    if (le32(bytes, 0) == PlaceableKey)
        return true;
    // The standard header: type 1 (memory) or 2 (disk), nine words, version 0x0100 or 0x0300.
    const quint16 type = le16(bytes, 0);
    const quint16 words = le16(bytes, 2);
    const quint16 version = le16(bytes, 4);
    return bytes.size() >= 18 && (type == 1 || type == 2) && words == 9
        && (version == 0x0100 || version == 0x0300);
}

bool isEnhancedMetafile(const QByteArray &bytes)
{
    // EMR_HEADER first, with " EMF" at byte 40.
    return le32(bytes, 0) == 1 && bytes.size() >= 88 && bytes.mid(40, 4) == QByteArrayLiteral(" EMF");
}

QSize metafileDisplaySize(const QByteArray &wmf)
{
    if (le32(wmf, 0) != PlaceableKey)
        return {};
    const int left = les16(wmf, 6);
    const int top = les16(wmf, 8);
    const int right = les16(wmf, 10);
    const int bottom = les16(wmf, 12);
    const int inch = le16(wmf, 14);
    if (inch <= 0 || right == left || bottom == top)
        return {};
    const int width = int(std::lround(std::abs(right - left) * ScreenDpi / inch));
    const int height = int(std::lround(std::abs(bottom - top) * ScreenDpi / inch));
    return QSize(std::clamp(width, 1, MaxDrawnSide), std::clamp(height, 1, MaxDrawnSide));
}

QImage drawWindowsMetafile(const QByteArray &wmf, QSize size)
{
    if (!isWindowsMetafile(wmf))
        return {};

    wmfAPI *api = nullptr;
    wmfAPI_Options options {};
    options.function = wmf_gd_function;
    if (wmf_api_create(&api, WMF_OPT_FUNCTION | WMF_OPT_IGNORE_NONFATAL, &options) != wmf_E_None) {
        if (api)
            wmf_api_destroy(api);
        return {};
    }
    const auto destroy = qScopeGuard([api] { wmf_api_destroy(api); });

    // libwmf reads from a buffer it may not keep; it gets a copy that lives as long.
    QByteArray data = wmf;
    if (wmf_mem_open(api, reinterpret_cast<unsigned char *>(data.data()), long(data.size())) != wmf_E_None)
        return {};
    const auto close = qScopeGuard([api] { wmf_mem_close(api); });

    wmfD_Rect bbox {};
    if (wmf_scan(api, 0, &bbox) != wmf_E_None)
        return {};
    if (!size.isValid() || size.isEmpty()) {
        unsigned int width = 0;
        unsigned int height = 0;
        if (wmf_display_size(api, &width, &height, ScreenDpi, ScreenDpi) != wmf_E_None)
            return {};
        size = QSize(int(width), int(height));
    }
    size = QSize(std::clamp(size.width(), 1, MaxDrawnSide), std::clamp(size.height(), 1, MaxDrawnSide));

    wmf_gd_t *device = WMF_GD_GetData(api);
    device->type = wmf_gd_png;
    device->flags |= WMF_GD_OUTPUT_MEMORY;
    device->width = unsigned(size.width());
    device->height = unsigned(size.height());
    device->bbox = bbox;
    if (wmf_play(api, 0, &bbox) != wmf_E_None || !device->memory)
        return {};

    // A PNG of w × h RGBA pixels is never larger than the raw pixels plus its framing.
    const qsizetype bound = qsizetype(size.width() + 1) * size.height() * 4 + 1024 * 1024;
    const qsizetype length = pngLength(device->memory, bound);
    QImage drawn;
    if (length <= 0
        || !drawn.loadFromData(reinterpret_cast<const uchar *>(device->memory), int(length), "PNG"))
        return {};

    // What the metafile leaves undrawn is the paper's white, as on the original screen.
    QImage picture(drawn.size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.drawImage(0, 0, drawn);
    return picture;
}

QSize enhancedMetafileSize(const QByteArray &emf)
{
    if (!isEnhancedMetafile(emf))
        return {};
    // rclFrame in hundredths of a millimetre, at bytes 24 to 40.
    const qint32 left = qint32(le32(emf, 24));
    const qint32 top = qint32(le32(emf, 28));
    const qint32 right = qint32(le32(emf, 32));
    const qint32 bottom = qint32(le32(emf, 36));
    const double width = (double(right) - left) / 2540.0 * ScreenDpi;
    const double height = (double(bottom) - top) / 2540.0 * ScreenDpi;
    if (!(width >= 1 && height >= 1))
        return {};
    return QSize(int(std::min(std::lround(width), long(MaxDrawnSide))),
        int(std::min(std::lround(height), long(MaxDrawnSide))));
}

QImage emptyFrame(QSize size)
{
    size = QSize(std::clamp(size.width(), 1, MaxDrawnSide), std::clamp(size.height(), 1, MaxDrawnSide));
    QImage frame(size, QImage::Format_RGB32);
    frame.fill(Qt::white);
    QPainter painter(&frame);
    painter.setPen(QColor(160, 160, 160));
    painter.drawRect(frame.rect().adjusted(0, 0, -1, -1));
    return frame;
}

} // namespace pictures
