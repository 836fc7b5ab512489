#include "surface.h"

#include <hatchbrush.h>
#include <runtimeerror.h>

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace drawing {

QRgb rgbOf(quint32 color)
{
    return hatch::rgbOfValue(color);
}

quint32 colorOf(QRgb rgb)
{
    return hatch::valueOfRgb(rgb);
}

bool Brush::paintsNothing() const
{
    return style == Transparent || style < Solid || style > DiagonalCross;
}

bool Brush::covers(int x, int y) const
{
    // The very patterns the fill-style palette shows.
    return style == Solid || hatch::isHatchPixel(hatch::indexOfFillStyle(style), x, y);
}

namespace {

// Gives the picture pixels of its own in the canvas's format before anything is drawn.
// A picture shares its pixels until the first stroke, which copies them; a copy that
// finds no memory leaves a null image, and that is the out-of-memory error rather than
// a write through a null row.
void ensureFormat(QImage &image)
{
    if (image.isNull())
        return;
    if (image.format() != QImage::Format_RGB32)
        image = image.convertToFormat(QImage::Format_RGB32);
    // Asking for writable pixels makes the copy.
    if (image.isNull() || !image.bits())
        throwOutOfMemory();
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

    // The outline runs through the box's edge pixels with the round pen: a wide pen
    // reaches outside the box by half its width and inside by the rest, and rounds the
    // outer corners.
    const int r = right - 1;
    const int b = bottom - 1;
    drawLine(image, left, top, r, top, pen);
    drawLine(image, r, top, r, b, pen);
    drawLine(image, r, b, left, b, pen);
    drawLine(image, left, b, left, top, pen);
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

namespace {

struct Span
{
    int y, x0, x1;
};

// Paints with `paint` every pixel of the colour `seed` joined side by side to (x, y),
// which has that colour; `paint` differs from `seed`. Each run is read and painted in
// one sweep, and the row a run came from is looked at again only where the run reaches
// past it. When `spans` is given, every painted run is listed there.
void seedFill(QImage &image, int x, int y, QRgb seed, QRgb paint, std::vector<Span> *spans)
{
    const int w = image.width();
    const int h = image.height();
    uchar *const bits = image.bits();
    const qsizetype stride = image.bytesPerLine();
    auto row = [&](int yy) { return reinterpret_cast<QRgb *>(bits + yy * stride); };

    // A run of row y - dy from x0 to x1 is painted; row y is to be looked at.
    struct Seed
    {
        int y, x0, x1, dy;
    };
    std::vector<Seed> stack;
    stack.reserve(1024);
    auto push = [&](int yy, int x0, int x1, int dy) {
        if (yy + dy >= 0 && yy + dy < h)
            stack.push_back({yy + dy, x0, x1, dy});
    };
    auto record = [&](int yy, int x0, int x1) {
        if (spans)
            spans->push_back({yy, x0, x1});
    };

    // The seed's own run, then its neighbours in both directions.
    QRgb *r = row(y);
    int left = x;
    while (left > 0 && r[left - 1] == seed)
        --left;
    int right = x;
    while (right < w - 1 && r[right + 1] == seed)
        ++right;
    std::fill(r + left, r + right + 1, paint);
    record(y, left, right);
    push(y, left, right, 1);
    push(y, left, right, -1);

    while (!stack.empty()) {
        const Seed s = stack.back();
        stack.pop_back();
        r = row(s.y);
        int xx = s.x0;
        int l = xx;
        bool inRun = r[xx] == seed;
        if (inRun) {
            // The run reaches left of the parent's: paint it, and look back at the
            // parent's row beyond the parent's left end.
            while (xx >= 0 && r[xx] == seed)
                r[xx--] = paint;
            l = xx + 1;
            record(s.y, l, s.x0);
            if (l < s.x0)
                push(s.y, l, s.x0 - 1, -s.dy);
            xx = s.x0 + 1;
        }
        for (;;) {
            if (inRun) {
                const int start = xx;
                while (xx < w && r[xx] == seed)
                    r[xx++] = paint;
                if (xx > start)
                    record(s.y, start, xx - 1);
                push(s.y, l, xx - 1, s.dy);
                // Past the parent's right end the parent's row is looked at again.
                if (xx > s.x1 + 1)
                    push(s.y, s.x1 + 1, xx - 1, -s.dy);
            }
            ++xx;
            while (xx <= s.x1 && r[xx] != seed)
                ++xx;
            if (xx > s.x1)
                break;
            l = xx;
            inRun = true;
        }
    }
}

} // namespace

bool floodFillSurface(QImage &image, int x, int y, quint32 seedColor, const Brush &brush)
{
    if (x < 0 || y < 0 || x >= image.width() || y >= image.height())
        return false;
    ensureFormat(image);
    const QRgb seed = rgbOf(seedColor);
    if (reinterpret_cast<const QRgb *>(image.constScanLine(y))[x] != seed)
        return false;
    if (brush.paintsNothing())
        return true;

    const QRgb paint = rgbOf(brush.color);
    if (brush.style == Solid) {
        // A solid brush of the seed's own colour changes nothing.
        if (paint != seed)
            seedFill(image, x, y, seed, paint, nullptr);
        return true;
    }
    // A hatch leaves pixels of the seed's colour between its lines, so the area is
    // found first, marked with the seed's colour made transparent, which no pixel of
    // the picture has, and then painted run by run.
    std::vector<Span> spans;
    seedFill(image, x, y, seed, seed & 0x00FFFFFFu, &spans);
    for (const Span &s : spans) {
        auto *r = reinterpret_cast<QRgb *>(image.scanLine(s.y));
        for (int xx = s.x0; xx <= s.x1; ++xx)
            r[xx] = brush.covers(xx, s.y) ? paint : seed;
    }
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
    if (image.isNull())
        throwOutOfMemory();
    image.fill(rgbOf(color));
    return image;
}

void throwOutOfMemory()
{
    throw platform::RuntimeError(OutOfMemory, QStringLiteral("Η μνήμη δεν επαρκεί"));
}

} // namespace drawing
