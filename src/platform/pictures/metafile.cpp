#include "metafile.h"

#include "littleendian.h"

#include <QElapsedTimer>
#include <QPainter>
#include <QScopeGuard>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
#include <sanitizer/common_interface_defs.h>
#endif

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

constexpr qsizetype PlaceableSize = 22;
constexpr qsizetype StandardHeaderSize = 18;
constexpr qsizetype MaxRecordAt = 12;

// Where the bitmap starts in the parameters of the records that carry one, and where
// the size it is drawn at is, in words; -1 for none.
struct BitmapRecord
{
    int bitmap = -1;
    int height = -1;
    int width = -1;
};

BitmapRecord bitmapRecord(quint16 function)
{
    switch (function) {
    case 0x0940: // DIBBitBlt
        return {8, 4, 5};
    case 0x0B41: // DIBStretchBlt
        return {10, 6, 7};
    case 0x0F43: // StretchDIB
        return {11, 7, 8};
    case 0x0D33: // SetDIBitsToDevice
        return {9, 5, 6};
    case 0x0142: // DIBCreatePatternBrush
        return {2, -1, -1};
    default:
        return {};
    }
}

// libwmf's bitmap reader loops without end on some headers it does not know, and fills
// the whole of whatever size a header claims: a bitmap in a record is passed on only
// with a header of a kind and size a bitmap can have.
bool bitmapHeaderHolds(const QByteArray &wmf, qsizetype at, qsizetype end)
{
    const quint32 headerSize = le32(wmf, at);
    if (headerSize == 12) {
        const quint16 bits = le16(wmf, at + 10);
        return at + 12 <= end && le16(wmf, at + 4) > 0 && le16(wmf, at + 6) > 0 && le16(wmf, at + 8) == 1
            && (bits == 1 || bits == 4 || bits == 8 || bits == 24);
    }
    if (headerSize < 40 || headerSize > quint64(end - at))
        return false;
    const qint64 width = qint32(le32(wmf, at + 4));
    const qint64 height = qint32(le32(wmf, at + 8));
    const quint16 planes = le16(wmf, at + 12);
    const quint16 bits = le16(wmf, at + 14);
    const quint32 compression = le32(wmf, at + 16);
    if (width <= 0 || height == 0 || planes != 1
        || width * std::abs(height) > qint64(MaxDrawnSide) * MaxDrawnSide)
        return false;
    switch (compression) {
    case 0: // plain
        return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    case 1: // run lengths of bytes
        return bits == 8 && height > 0;
    case 2: // run lengths of nibbles
        return bits == 4 && height > 0;
    case 3: // bit fields
        return bits == 16 || bits == 32;
    default:
        return false;
    }
}

// libwmf allocates the largest record the header claims before it reads a record, and
// trusts the records' sizes. The copy it gets has records that chain to the end-of-file
// record within the bytes, and a header that claims the largest of them; anything else
// is refused (empty).
QByteArray metafileForLibwmf(const QByteArray &wmf, bool *drawsRisky = nullptr)
{
    const qsizetype header = le32(wmf, 0) == PlaceableKey ? PlaceableSize : 0;
    if (le16(wmf, header + 2) != StandardHeaderSize / 2)
        return {};
    // libwmf stretches a bitmap to the size it is drawn at before it clips it to the
    // picture, pixel by pixel: a bitmap is drawn at most a few times the size of the
    // picture's window (its logical extent) or, before one is set, its placeable frame.
    qint64 extentWidth = header ? std::abs(les16(wmf, 10) - les16(wmf, 6)) : 0;
    qint64 extentHeight = header ? std::abs(les16(wmf, 12) - les16(wmf, 8)) : 0;
    auto stretchHolds = [&](qint64 width, qint64 height) {
        constexpr qint64 Times = 4;
        return (extentWidth == 0 || std::abs(width) <= Times * extentWidth)
            && (extentHeight == 0 || std::abs(height) <= Times * extentHeight);
    };
    // libwmf has no font of its own: text drawn before the metafile made one reads a
    // null font and ends the process.
    bool fontMade = false;
    qsizetype pos = header + StandardHeaderSize;
    quint32 largest = 0;
    while (pos + 6 <= wmf.size()) {
        const quint32 words = le32(wmf, pos);
        const quint16 function = le16(wmf, pos + 4);
        if (words < 3 || words > quint64(wmf.size() - pos) / 2)
            return {};
        largest = std::max(largest, words);
        const qsizetype end = pos + qsizetype(words) * 2;
        const qsizetype parameters = pos + 6;
        if (function == 0x020C) { // SetWindowExt: height, width
            extentHeight = std::abs(les16(wmf, parameters));
            extentWidth = std::abs(les16(wmf, parameters + 2));
        }
        if (function == 0x02FB) // CreateFontIndirect
            fontMade = true;
        // TextOut, ExtTextOut, DrawText
        const bool text = function == 0x0521 || function == 0x0A32 || function == 0x062F;
        if (text && !fontMade)
            return {};
        const BitmapRecord bitmap = bitmapRecord(function);
        if ((bitmap.bitmap >= 0 || text) && drawsRisky)
            *drawsRisky = true;
        if (bitmap.bitmap >= 0 && parameters + bitmap.bitmap * 2 + 4 <= end) {
            if (!bitmapHeaderHolds(wmf, parameters + bitmap.bitmap * 2, end))
                return {};
            if (bitmap.width >= 0
                && !stretchHolds(
                    les16(wmf, parameters + bitmap.width * 2), les16(wmf, parameters + bitmap.height * 2)))
                return {};
        }
        if (function == 0) {
            // The end record is three words; libwmf goes on past a longer one, into
            // records nobody looked at, so it gets nothing after the end.
            if (words != 3)
                return {};
            QByteArray copy = wmf.left(end);
            for (int i = 0; i < 4; ++i)
                copy[header + MaxRecordAt + i] = char((largest >> (8 * i)) & 0xFF);
            return copy;
        }
        pos = end;
    }
    return {};
}

// libwmf sizes what it allocates by numbers in the records (a bitmap's width and height)
// and loops over all of it however little of the file stands behind it; it handles a
// failed allocation as an error. So nothing it asks for may be larger than the file could
// fill: a bitmap of one pixel a bit, compressed as far as its run lengths go, and never
// more than the largest drawing made here. Plain malloc otherwise, as parts of libwmf
// free with free().
size_t largestLibwmfAllocation(const QByteArray &wmf)
{
    constexpr size_t AnySmallFile = size_t(4) << 20;
    const size_t fill = size_t(wmf.size()) * 512 + AnySmallFile;
    return std::min(fill, size_t(MaxDrawnSide) * MaxDrawnSide * 4);
}

void *boundedMalloc(void *largest, size_t size)
{
    return size > *static_cast<const size_t *>(largest) ? nullptr : std::malloc(size);
}

void *boundedRealloc(void *largest, void *memory, size_t size)
{
    return size > *static_cast<const size_t *>(largest) ? nullptr : std::realloc(memory, size);
}

void plainFree(void *, void *memory)
{
    std::free(memory);
}

// libwmf's drawing of the metafile as PNG bytes; empty when it refuses the file.
QByteArray pngFromLibwmf(QByteArray data, QSize size)
{
    wmfAPI *api = nullptr;
    wmfAPI_Options options {};
    options.function = wmf_gd_function;
    size_t largest = largestLibwmfAllocation(data);
    options.context = &largest;
    options.malloc = boundedMalloc;
    options.realloc = boundedRealloc;
    options.free = plainFree;
    if (wmf_api_create(&api, WMF_OPT_FUNCTION | WMF_OPT_ALLOC | WMF_OPT_IGNORE_NONFATAL, &options)
        != wmf_E_None) {
        if (api)
            wmf_api_destroy(api);
        return {};
    }
    const auto destroy = qScopeGuard([api] { wmf_api_destroy(api); });

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
    size = drawingSize(size);

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
    if (length <= 0)
        return {};
    return QByteArray(device->memory, length);
}

// How long libwmf may draw one metafile. Real metafiles take milliseconds; a hostile one
// (a tiny bitmap stretched over a frame thousands of pixels tall) keeps libwmf busy for
// minutes, inside the library, where no call of ours can stop it.
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
// Small drawings take milliseconds; a fuzzing run should not wait 10 s on each slow one.
constexpr int LibwmfLimitMs = 2000;
#else
constexpr int LibwmfLimitMs = 10000;
#endif

// Runs `draw` in a child process and returns what it wrote, or nothing when it failed or
// went past `limitMs`, in which case the child is killed. Only the drawing runs there: the
// child writes its bytes into a pipe and ends without running anything of the program's.
QByteArray drawnInChild(const std::function<QByteArray()> &draw, int limitMs)
{
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0)
        return {};
    const pid_t pid = fork();
    if (pid < 0) {
        close(fds[0]);
        close(fds[1]);
        return {};
    }
    if (pid == 0) {
        close(fds[0]);
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
        // A crash in here is the library's, and the parent's to see: the fuzzer's own
        // handling of it belongs to the parent alone.
        __sanitizer_set_death_callback([] { _exit(1); });
        for (const int fatal : {SIGABRT, SIGBUS, SIGFPE, SIGILL})
            signal(fatal, SIG_DFL);
        signal(SIGPIPE, SIG_IGN);
#endif
        const QByteArray bytes = draw();
        const char *p = bytes.constData();
        qsizetype left = bytes.size();
        while (left > 0) {
            const ssize_t n = write(fds[1], p, size_t(left));
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                _exit(1);
            p += n;
            left -= n;
        }
        _exit(bytes.isEmpty() ? 1 : 0);
    }
    close(fds[1]);
    QByteArray bytes;
    QElapsedTimer clock;
    clock.start();
    bool timedOut = false;
    for (;;) {
        const qint64 remaining = limitMs - clock.elapsed();
        if (remaining <= 0) {
            timedOut = true;
            break;
        }
        pollfd fd {fds[0], POLLIN, 0};
        const int ready = poll(&fd, 1, int(remaining));
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0) {
            timedOut = ready == 0;
            break;
        }
        char buffer[65536];
        const ssize_t n = read(fds[0], buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        bytes.append(buffer, n);
    }
    close(fds[0]);
    if (timedOut)
        kill(pid, SIGKILL);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (timedOut || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return {};
    return bytes;
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
    // libwmf reads from a buffer it may not keep; it gets a copy that lives as long.
    bool drawsRisky = false;
    QByteArray data = metafileForLibwmf(wmf, &drawsRisky);
    if (data.isEmpty())
        return {};
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
    // A child per input would cost the fuzzer nine runs in ten. Bitmaps can keep libwmf
    // busy for minutes, and text whose letters come out smaller than a pixel ends it on a
    // glyph without pixels; the rest is drawn in the fuzzer's sight, where a hang or a
    // memory error is a finding.
    const QByteArray png = drawsRisky ? drawnInChild([&] { return pngFromLibwmf(data, size); }, LibwmfLimitMs)
                                      : pngFromLibwmf(data, size);
#else
    Q_UNUSED(drawsRisky);
    const QByteArray png = drawnInChild([&] { return pngFromLibwmf(data, size); }, LibwmfLimitMs);
#endif
    QImage drawn;
    if (png.isEmpty() || !drawn.loadFromData(png, "PNG"))
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

QSize drawingSize(QSize size)
{
    // The pixels of a 4K screen, larger than any window shows a picture.
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
    // Drawing millions of pixels per input would leave the fuzzer a dozen runs a second;
    // the paths through the readers are the same at any size.
    constexpr qint64 MaxDrawnPixels = qint64(256) * 256;
#else
    constexpr qint64 MaxDrawnPixels = qint64(3840) * 2160;
#endif
    size = QSize(std::clamp(size.width(), 1, MaxDrawnSide), std::clamp(size.height(), 1, MaxDrawnSide));
    const qint64 pixels = qint64(size.width()) * size.height();
    if (pixels <= MaxDrawnPixels)
        return size;
    const double scale = std::sqrt(double(MaxDrawnPixels) / double(pixels));
    return QSize(std::max(1, int(size.width() * scale)), std::max(1, int(size.height() * scale)));
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
