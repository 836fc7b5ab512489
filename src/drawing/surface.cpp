#include "surface.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace drawing {

QRgb rgbOf(quint32 color)
{
    return qRgb(int(color & 0xFF), int((color >> 8) & 0xFF), int((color >> 16) & 0xFF));
}

quint32 colorOf(QRgb rgb)
{
    return quint32(qRed(rgb)) | (quint32(qGreen(rgb)) << 8) | (quint32(qBlue(rgb)) << 16);
}

bool Brush::paintsNothing() const
{
    return style == Transparent || style < Solid || style > DiagonalCross;
}

bool Brush::covers(int x, int y) const
{
    const int px = x & 7;
    const int py = y & 7;
    switch (style) {
    case Solid:
        return true;
    case HorizontalLine:
        return py == 7;
    case VerticalLine:
        return px == 7;
    case UpwardDiagonal:
        return px == py;
    case DownwardDiagonal:
        return px + py == 7;
    case Cross:
        return px == 7 || py == 7;
    case DiagonalCross:
        return px == py || px + py == 7;
    default:
        return false;
    }
}

namespace {

void ensureFormat(QImage &image)
{
    if (image.format() != QImage::Format_RGB32)
        image = image.convertToFormat(QImage::Format_RGB32);
}

// Paints the pixels x0..x1 of row y that the brush covers, clipped to the picture.
void brushSpan(QImage &image, int y, int x0, int x1, const Brush &brush)
{
    if (y < 0 || y >= image.height() || brush.paintsNothing())
        return;
    x0 = std::max(x0, 0);
    x1 = std::min(x1, image.width() - 1);
    if (x0 > x1)
        return;
    auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
    const QRgb value = rgbOf(brush.color);
    if (brush.style == Solid) {
        std::fill(row + x0, row + x1 + 1, value);
        return;
    }
    for (int x = x0; x <= x1; ++x) {
        if (brush.covers(x, y))
            row[x] = value;
    }
}

void solidSpan(QImage &image, int y, int x0, int x1, quint32 color)
{
    brushSpan(image, y, x0, x1, Brush {Solid, color});
}

// The pixel spans of a round dot of the pen's width, centred on (0, 0) for odd widths
// and on (0.5, 0.5) for even ones.
struct DotRow
{
    int dy;
    int x0;
    int x1;
};

std::vector<DotRow> dotOf(int width)
{
    const int a = (width - 1) / 2;
    const int c = width / 2;
    const double centre = (c - a) / 2.0;
    const double r = width / 2.0;
    std::vector<DotRow> rows;
    for (int j = -a; j <= c; ++j) {
        int x0 = c + 1;
        int x1 = -a - 1;
        for (int i = -a; i <= c; ++i) {
            const double di = i - centre;
            const double dj = j - centre;
            if (di * di + dj * dj <= r * r + 1e-9) {
                x0 = std::min(x0, i);
                x1 = std::max(x1, i);
            }
        }
        if (x0 <= x1)
            rows.push_back({j, x0, x1});
    }
    return rows;
}

// The horizontal extent of an ellipse at a row: pixel centres x with
// ((x - cx) / rx)^2 + ((y - cy) / ry)^2 <= 1. False when the row misses it.
bool ellipseSpan(double cx, double cy, double rx, double ry, int y, int &x0, int &x1)
{
    if (rx < 0 || ry < 0)
        return false;
    const double dy = y - cy;
    if (std::abs(dy) > ry + 1e-9)
        return false;
    const double t = ry > 0 ? 1.0 - (dy / ry) * (dy / ry) : 1.0;
    const double half = rx * std::sqrt(std::max(t, 0.0));
    x0 = int(std::ceil(cx - half - 1e-9));
    x1 = int(std::floor(cx + half + 1e-9));
    return x0 <= x1;
}

} // namespace

void drawLine(QImage &image, int x1, int y1, int x2, int y2, const Pen &pen)
{
    ensureFormat(image);
    const int width = std::max(pen.width, 1);
    const QRgb value = rgbOf(pen.color);
    const std::vector<DotRow> dot = width > 1 ? dotOf(width) : std::vector<DotRow> {};
    const int w = image.width();
    const int h = image.height();
    auto plot = [&](int x, int y) {
        if (width == 1) {
            if (x >= 0 && y >= 0 && x < w && y < h)
                reinterpret_cast<QRgb *>(image.scanLine(y))[x] = value;
            return;
        }
        for (const DotRow &r : dot)
            solidSpan(image, y + r.dy, x + r.x0, x + r.x1, pen.color);
    };
    const int dx = std::abs(x2 - x1);
    const int dy = -std::abs(y2 - y1);
    const int sx = x1 < x2 ? 1 : -1;
    const int sy = y1 < y2 ? 1 : -1;
    int err = dx + dy;
    int x = x1;
    int y = y1;
    for (;;) {
        plot(x, y);
        if (x == x2 && y == y2)
            break;
        const int e2 = 2 * err;
        if (e2 >= dy) {
            err += dy;
            x += sx;
        }
        if (e2 <= dx) {
            err += dx;
            y += sy;
        }
    }
}

void drawRectangle(
    QImage &image, int left, int top, int right, int bottom, const Pen &pen, const Brush &brush)
{
    ensureFormat(image);
    if (right <= left || bottom <= top)
        return;
    for (int y = top; y < bottom; ++y)
        brushSpan(image, y, left, right - 1, brush);

    // The outline is centred on the box's edge pixels: a wide pen reaches outside the
    // box by half its width and inside by the rest.
    const int width = std::max(pen.width, 1);
    const int a = (width - 1) / 2;
    const int c = width / 2;
    const int ox0 = left - a, ox1 = right - 1 + c;
    const int oy0 = top - a, oy1 = bottom - 1 + c;
    const int hx0 = left + c + 1, hx1 = right - 2 - a;
    const int hy0 = top + c + 1, hy1 = bottom - 2 - a;
    for (int y = oy0; y <= oy1; ++y) {
        if (y >= hy0 && y <= hy1 && hx0 <= hx1) {
            solidSpan(image, y, ox0, hx0 - 1, pen.color);
            solidSpan(image, y, hx1 + 1, ox1, pen.color);
        } else {
            solidSpan(image, y, ox0, ox1, pen.color);
        }
    }
}

void drawEllipse(QImage &image, int left, int top, int right, int bottom, const Pen &pen, const Brush &brush)
{
    ensureFormat(image);
    if (right <= left || bottom <= top)
        return;
    const int width = std::max(pen.width, 1);
    const double cx = (left + right - 1) / 2.0;
    const double cy = (top + bottom - 1) / 2.0;
    const double rx = (right - left - 1) / 2.0;
    const double ry = (bottom - top - 1) / 2.0;
    const double half = width / 2.0;
    const int reach = int(std::ceil(half));
    for (int y = top; y < bottom; ++y) {
        int x0, x1;
        if (ellipseSpan(cx, cy, rx, ry, y, x0, x1))
            brushSpan(image, y, x0, x1, brush);
    }
    for (int y = top - reach; y <= bottom - 1 + reach; ++y) {
        int o0, o1;
        if (!ellipseSpan(cx, cy, rx + half, ry + half, y, o0, o1))
            continue;
        int i0, i1;
        if (rx - half >= 0 && ry - half >= 0 && ellipseSpan(cx, cy, rx - half, ry - half, y, i0, i1)) {
            // Keep the ring closed: each side takes at least one pixel.
            i0 = std::max(i0, o0 + 1);
            i1 = std::min(i1, o1 - 1);
        } else {
            i0 = 1;
            i1 = 0;
        }
        if (i0 <= i1) {
            solidSpan(image, y, o0, i0 - 1, pen.color);
            solidSpan(image, y, i1 + 1, o1, pen.color);
        } else {
            solidSpan(image, y, o0, o1, pen.color);
        }
    }
}

qint64 pointColor(const QImage &image, int x, int y)
{
    if (x < 0 || y < 0 || x >= image.width() || y >= image.height())
        return -1;
    return colorOf(image.pixel(x, y));
}

bool floodFillSurface(QImage &image, int x, int y, quint32 seedColor, const Brush &brush)
{
    if (x < 0 || y < 0 || x >= image.width() || y >= image.height())
        return false;
    ensureFormat(image);
    const QRgb seed = rgbOf(seedColor);
    const int w = image.width();
    const int h = image.height();
    uchar *const bits = image.bits();
    const qsizetype stride = image.bytesPerLine();
    auto row = [&](int yy) { return reinterpret_cast<QRgb *>(bits + yy * stride); };
    if (row(y)[x] != seed)
        return false;
    if (brush.paintsNothing())
        return true;

    // A solid brush of another colour paints as it goes: a painted pixel no longer has
    // the seed's colour, so it is never taken twice. Any other brush leaves pixels of
    // the seed's colour behind, so the area is found first, with a mark per pixel, and
    // painted afterwards.
    const QRgb paint = rgbOf(brush.color);
    const bool direct = brush.style == Solid;
    if (direct && paint == seed)
        return true;
    std::vector<uchar> taken;
    if (!direct)
        taken.assign(size_t(w) * size_t(h), 0);
    struct Span
    {
        int y, x0, x1;
    };
    std::vector<Span> found;

    auto fillable = [&](const QRgb *r, int yy, int xx) {
        return r[xx] == seed && (direct || !taken[size_t(yy) * size_t(w) + size_t(xx)]);
    };
    std::vector<std::pair<int, int>> stack;
    stack.reserve(1024);
    stack.emplace_back(x, y);
    while (!stack.empty()) {
        const auto [sx, sy] = stack.back();
        stack.pop_back();
        QRgb *r = row(sy);
        if (!fillable(r, sy, sx))
            continue;
        int x0 = sx;
        while (x0 > 0 && fillable(r, sy, x0 - 1))
            --x0;
        int x1 = sx;
        while (x1 < w - 1 && fillable(r, sy, x1 + 1))
            ++x1;
        if (direct) {
            std::fill(r + x0, r + x1 + 1, paint);
        } else {
            std::fill(
                taken.begin() + qsizetype(sy) * w + x0, taken.begin() + qsizetype(sy) * w + x1 + 1, uchar(1));
            found.push_back({sy, x0, x1});
        }
        for (const int ny : {sy - 1, sy + 1}) {
            if (ny < 0 || ny >= h)
                continue;
            const QRgb *n = row(ny);
            bool inRun = false;
            for (int xx = x0; xx <= x1; ++xx) {
                const bool f = fillable(n, ny, xx);
                if (f && !inRun)
                    stack.emplace_back(xx, ny);
                inRun = f;
            }
        }
    }
    for (const Span &s : found)
        brushSpan(image, s.y, s.x0, s.x1, brush);
    return true;
}

void drawText(QImage &image, int x, int y, const QFont &font, quint32 color, const QString &text)
{
    ensureFormat(image);
    QFont f(font);
    // Whole pixels of the text's colour, so that a later fill stops at the letters.
    f.setStyleStrategy(QFont::NoAntialias);
    // Points of a screen of 96 dots an inch, whatever resolution the picture claims.
    if (f.pointSizeF() > 0)
        f.setPixelSize(qRound(f.pointSizeF() * 96.0 / 72.0));
    QPainter painter(&image);
    painter.setFont(f);
    painter.setPen(QColor(rgbOf(color)));
    const QFontMetrics metrics(f);
    painter.drawText(QPoint(x, y + metrics.ascent()), text);
}

QImage blankImage(QSize size, quint32 color)
{
    QImage image(size.expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    image.fill(rgbOf(color));
    return image;
}

} // namespace drawing
