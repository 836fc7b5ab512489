// The canvas's pixel operations on known pictures, each compared with a reference that
// the test works out pixel by pixel from the rule of the operation.
#include <hatchbrush.h>
#include <surface.h>

#include <QPainter>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <functional>

using namespace drawing;

namespace {

constexpr quint32 White = 0xFFFFFF;
constexpr quint32 Black = 0x000000;
constexpr quint32 Red = 0x0000FF;
constexpr quint32 Blue = 0xFF0000;

QImage canvas(int w = 40, int h = 30)
{
    return blankImage(QSize(w, h), White);
}

// A picture whose every pixel is given by the rule.
QImage reference(int w, int h, const std::function<quint32(int, int)> &rule)
{
    QImage image(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            image.setPixel(x, y, rgbOf(rule(x, y)));
    return image;
}

QString firstDifference(const QImage &a, const QImage &b)
{
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (a.pixel(x, y) != b.pixel(x, y))
                return QStringLiteral("first difference at %1,%2").arg(x).arg(y);
    return {};
}

#define COMPARE_PICTURES(actual, expected)                                                                   \
    QVERIFY2((actual) == (expected), qPrintable(firstDifference(actual, expected)))

bool insideEllipse(double x, double y, double cx, double cy, double rx, double ry)
{
    if (rx < 0 || ry < 0)
        return false;
    const double dx = rx > 0 ? (x - cx) / rx : (x == cx ? 0 : 2);
    const double dy = ry > 0 ? (y - cy) / ry : (y == cy ? 0 : 2);
    return dx * dx + dy * dy <= 1.0 + 1e-9;
}

} // namespace

class tst_DrawingSurface : public QObject
{
    Q_OBJECT

private slots:
    void rectangleOfWidthOneOutlinesTheBoxWithoutItsRightAndBottom()
    {
        QImage image = canvas();
        drawRectangle(image, 5, 4, 15, 12, Pen {Red, 1}, Brush {Transparent, Black});
        const QImage expected = reference(40, 30, [](int x, int y) {
            const bool inBox = x >= 5 && x <= 14 && y >= 4 && y <= 11;
            const bool edge = x == 5 || x == 14 || y == 4 || y == 11;
            return inBox && edge ? Red : White;
        });
        COMPARE_PICTURES(image, expected);
    }

    void rectangleOfWidthFiveStraddlesTheEdgePixelsWithRoundCorners()
    {
        QImage image = canvas();
        drawRectangle(image, 10, 8, 30, 22, Pen {Red, 5}, Brush {Solid, Blue});
        // The pen covers every pixel within two and a half pixels of the path through
        // the edge pixels, (10, 8) to (29, 21); the brush the rest inside the path.
        const auto distanceToPath = [](double x, double y) {
            const double dx = std::max({10.0 - x, 0.0, x - 29.0});
            const double dy = std::max({8.0 - y, 0.0, y - 21.0});
            if (dx > 0 || dy > 0)
                return std::hypot(dx, dy);
            return std::min({x - 10.0, 29.0 - x, y - 8.0, 21.0 - y});
        };
        const QImage expected = reference(40, 30, [&](int x, int y) {
            if (distanceToPath(x, y) <= 2.5)
                return Red;
            const bool inside = x >= 10 && x <= 29 && y >= 8 && y <= 21;
            return inside ? Blue : White;
        });
        COMPARE_PICTURES(image, expected);
        QCOMPARE(image.pixel(8, 14), rgbOf(Red));
        QCOMPARE(image.pixel(12, 14), rgbOf(Red));
        QCOMPARE(image.pixel(13, 14), rgbOf(Blue));
        QCOMPARE(image.pixel(8, 6), rgbOf(White));
    }

    void ellipseOfWidthOneIsARingInsideItsBox()
    {
        QImage image = canvas();
        drawEllipse(image, 4, 3, 34, 25, Pen {Red, 1}, Brush {Transparent, Black});
        const double cx = (4 + 34 - 1) / 2.0, cy = (3 + 25 - 1) / 2.0;
        const double rx = (34 - 4 - 1) / 2.0, ry = (25 - 3 - 1) / 2.0;
        for (int y = 0; y < 30; ++y) {
            int first = -1, last = -1;
            for (int x = 0; x < 40; ++x) {
                const bool outer = insideEllipse(x, y, cx, cy, rx + 0.5, ry + 0.5);
                const bool inner = insideEllipse(x, y, cx, cy, rx - 0.5, ry - 0.5);
                const QRgb pixel = image.pixel(x, y);
                // The ring's band is drawn; nothing outside it, and the inside stays.
                if (outer && !inner)
                    QCOMPARE(pixel, rgbOf(Red));
                if (!outer || insideEllipse(x, y, cx, cy, rx - 1.5, ry - 1.5))
                    QCOMPARE(pixel, rgbOf(White));
                if (outer) {
                    first = first < 0 ? x : first;
                    last = x;
                }
            }
            // The ring stays closed: each row starts and ends with the outline.
            if (first >= 0) {
                QCOMPARE(image.pixel(first, y), rgbOf(Red));
                QCOMPARE(image.pixel(last, y), rgbOf(Red));
            }
        }
        QCOMPARE(image.pixel(4, 14), rgbOf(Red));
        QCOMPARE(image.pixel(33, 14), rgbOf(Red));
        QCOMPARE(image.pixel(3, 14), rgbOf(White));
        QCOMPARE(image.pixel(34, 14), rgbOf(White));
    }

    void ellipseOfWidthFiveReachesOutsideItsBoxByTwo()
    {
        QImage image = canvas(60, 50);
        drawEllipse(image, 10, 10, 50, 40, Pen {Red, 5}, Brush {Solid, Blue});
        const double cx = 29.5, cy = 24.5, rx = 19.5, ry = 14.5;
        for (int y = 0; y < 50; ++y) {
            for (int x = 0; x < 60; ++x) {
                const bool outer = insideEllipse(x, y, cx, cy, rx + 2.5, ry + 2.5);
                const bool inner = insideEllipse(x, y, cx, cy, rx - 2.5, ry - 2.5);
                const QRgb pixel = image.pixel(x, y);
                if (!outer)
                    QCOMPARE(pixel, rgbOf(White));
                else if (inner)
                    QCOMPARE(pixel, rgbOf(Blue));
                else
                    QCOMPARE(pixel, rgbOf(Red));
            }
        }
        // The leftmost pixels of the middle row: two outside the box, three inside.
        QCOMPARE(image.pixel(7, 25), rgbOf(White));
        QCOMPARE(image.pixel(8, 25), rgbOf(Red));
        QCOMPARE(image.pixel(12, 25), rgbOf(Red));
        QCOMPARE(image.pixel(13, 25), rgbOf(Blue));
    }

    void eachHatchPatternPaintsItsLinesAndLeavesTheRest_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("hatchIndex");
        for (int style = HorizontalLine; style <= DiagonalCross; ++style)
            QTest::addRow("style %d", style) << style << style - 2;
    }

    void eachHatchPatternPaintsItsLinesAndLeavesTheRest()
    {
        QFETCH(int, style);
        QFETCH(int, hatchIndex);
        QImage image = canvas();
        drawRectangle(image, 0, 0, 40, 30, Pen {White, 1}, Brush {style, Red});
        // The pattern's tile of eight rows of eight bits, laid from the picture's corner,
        // the leftmost pixel in the highest bit.
        const auto tileRows = hatch::rows(hatchIndex);
        const auto covers = [&](int x, int y) { return (tileRows[size_t(y % 8)] >> (7 - x % 8)) & 1; };
        const QImage expected = reference(40, 30, [&](int x, int y) {
            if (x == 0 || y == 0 || x == 39 || y == 29)
                return White;
            return covers(x, y) ? Red : White;
        });
        COMPARE_PICTURES(image, expected);
    }

    void transparentBrushFillsNothing()
    {
        QImage image = canvas();
        drawRectangle(image, 2, 2, 20, 20, Pen {Red, 1}, Brush {Transparent, Blue});
        QCOMPARE(image.pixel(10, 10), rgbOf(White));
        QVERIFY(floodFillSurface(image, 10, 10, White, Brush {Transparent, Blue}));
        QCOMPARE(image.pixel(10, 10), rgbOf(White));
    }

    void floodFillStopsAtOtherColours()
    {
        QImage image = canvas();
        drawRectangle(image, 5, 5, 25, 20, Pen {Black, 1}, Brush {Transparent, Black});
        QImage expected = image.copy();
        QVERIFY(floodFillSurface(image, 10, 10, White, Brush {Solid, Red}));
        for (int y = 6; y <= 18; ++y)
            for (int x = 6; x <= 23; ++x)
                expected.setPixel(x, y, rgbOf(Red));
        COMPARE_PICTURES(image, expected);
    }

    void floodFillSpreadsOnlySideBySide()
    {
        QImage image = canvas(10, 10);
        // A diagonal wall: the pixels beyond it touch the seed's area only at corners.
        for (int i = 0; i < 10; ++i)
            image.setPixel(i, 9 - i, rgbOf(Black));
        QVERIFY(floodFillSurface(image, 0, 0, White, Brush {Solid, Red}));
        QCOMPARE(image.pixel(0, 0), rgbOf(Red));
        QCOMPARE(image.pixel(8, 8), rgbOf(White));
        QCOMPARE(image.pixel(9, 9), rgbOf(White));
    }

    void floodFillWithAHatchFindsTheWholeAreaFirst()
    {
        QImage image = canvas(24, 24);
        QVERIFY(floodFillSurface(image, 3, 3, White, Brush {Cross, Blue}));
        // The cross: a line down the fifth column of each tile, one along its last row.
        const QImage expected
            = reference(24, 24, [](int x, int y) { return x % 8 == 4 || y % 8 == 7 ? Blue : White; });
        COMPARE_PICTURES(image, expected);
    }

    void floodFillOutsideThePictureOrOnAnotherColourDoesNothing()
    {
        QImage image = canvas();
        const QImage before = image.copy();
        QVERIFY(!floodFillSurface(image, -1, 5, White, Brush {Solid, Red}));
        QVERIFY(!floodFillSurface(image, 5, 5, Black, Brush {Solid, Red}));
        COMPARE_PICTURES(image, before);
        QCOMPARE(pointColor(image, -1, 0), qint64(-1));
        QCOMPARE(pointColor(image, 0, 0), qint64(White));
    }

    void lineIncludesBothEndsAndAWidePenDrawsRoundEnds()
    {
        QImage image = canvas();
        drawLine(image, 2, 2, 10, 2, Pen {Red, 1});
        QCOMPARE(image.pixel(2, 2), rgbOf(Red));
        QCOMPARE(image.pixel(10, 2), rgbOf(Red));
        QCOMPARE(image.pixel(11, 2), rgbOf(White));
        drawLine(image, 20, 20, 20, 20, Pen {Blue, 5});
        QCOMPARE(image.pixel(20, 20), rgbOf(Blue));
        QCOMPARE(image.pixel(22, 20), rgbOf(Blue));
        QCOMPARE(image.pixel(23, 20), rgbOf(White));
        // A round dot: the corners of its square stay clear.
        QCOMPARE(image.pixel(22, 22), rgbOf(White));
    }

    void textStandsWithItsTopLeftAtThePosition()
    {
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(20);
        QImage image = canvas(120, 60);
        drawText(image, 30, 17, font, Black, QStringLiteral("Αβγ"));

        // The same text through a painter of its own, in whole pixels.
        QImage expected = canvas(120, 60);
        {
            QPainter painter(&expected);
            QFont f(font);
            f.setStyleStrategy(QFont::NoAntialias);
            painter.setFont(f);
            painter.setPen(Qt::black);
            painter.drawText(QPoint(30, 17 + QFontMetrics(f).ascent()), QStringLiteral("Αβγ"));
        }
        COMPARE_PICTURES(image, expected);
        // Nothing lands above or left of the position.
        for (int x = 0; x < 120; ++x)
            for (int y = 0; y < 17; ++y)
                QCOMPARE(image.pixel(x, y), rgbOf(White));
        for (int y = 0; y < 60; ++y)
            for (int x = 0; x < 30; ++x)
                QCOMPARE(image.pixel(x, y), rgbOf(White));
        // And only whole pixels of the colour are written.
        for (int y = 0; y < 60; ++y)
            for (int x = 0; x < 120; ++x)
                QVERIFY(image.pixel(x, y) == rgbOf(White) || image.pixel(x, y) == rgbOf(Black));
    }
};

QTEST_MAIN(tst_DrawingSurface)
#include "tst_drawingsurface.moc"
