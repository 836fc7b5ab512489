#include <hatchbrush.h>

#include <QImage>
#include <QPainter>
#include <QTest>

namespace {

// A surface of the given size filled from its origin with the brush.
QImage filled(const QBrush &brush, QSize size = QSize(24, 20), QColor under = Qt::white)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(under);
    QPainter painter(&image);
    painter.fillRect(image.rect(), brush);
    return image;
}

// The pattern as the lines it draws, one text row per pixel row: '#' hatch, '.' gap.
QStringList picture(int index)
{
    QStringList rows;
    for (int y = 0; y < 8; ++y) {
        QString row;
        for (int x = 0; x < 8; ++x)
            row += hatch::isHatchPixel(index, x, y) ? QLatin1Char('#') : QLatin1Char('.');
        rows << row;
    }
    return rows;
}

} // namespace

class tst_HatchBrush : public QObject
{
    Q_OBJECT

private slots:
    void thePatternsAreTheSixWindowsHatches_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QStringList>("rows");
        const auto rows = [](const char *text) { return QString::fromLatin1(text).split(QLatin1Char(' ')); };
        QTest::newRow("horizontal")
            << int(hatch::Horizontal)
            << rows("........ ........ ........ ........ ........ ........ ........ ########");
        QTest::newRow("vertical")
            << int(hatch::Vertical)
            << rows("....#... ....#... ....#... ....#... ....#... ....#... ....#... ....#...");
        QTest::newRow("forward diagonal")
            << int(hatch::ForwardDiagonal)
            << rows("#....... .#...... ..#..... ...#.... ....#... .....#.. ......#. .......#");
        QTest::newRow("backward diagonal")
            << int(hatch::BackwardDiagonal)
            << rows(".......# ......#. .....#.. ....#... ...#.... ..#..... .#...... #.......");
        QTest::newRow("cross") << int(
            hatch::Cross) << rows("....#... ....#... ....#... ....#... ....#... ....#... ....#... ########");
        QTest::newRow("diagonal cross")
            << int(hatch::DiagonalCross)
            << rows("#......# .#....#. ..#..#.. ...##... ...##... ..#..#.. .#....#. #......#");
    }

    void thePatternsAreTheSixWindowsHatches()
    {
        QFETCH(int, index);
        QFETCH(QStringList, rows);
        QCOMPARE(picture(index), rows);
    }

    void anIndexThatIsNoPatternPaintsSolid()
    {
        for (int index : {-1, 6, 8, 100}) {
            QVERIFY(!hatch::isPattern(index));
            QCOMPARE(hatch::brush(index, Qt::gray).style(), Qt::SolidPattern);
            const QImage image = filled(hatch::brush(index, QColor(128, 128, 128)));
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    QCOMPARE(image.pixelColor(x, y), QColor(128, 128, 128));
        }
    }

    void aBrushRepeatsTheTileFromTheSurfacesOrigin()
    {
        for (int index = hatch::Horizontal; index <= hatch::DiagonalCross; ++index) {
            const QImage image = filled(hatch::brush(index, Qt::black, Qt::yellow));
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    QCOMPARE(image.pixelColor(x, y),
                        hatch::isHatchPixel(index, x % 8, y % 8) ? QColor(Qt::black) : QColor(Qt::yellow));
        }
    }

    void aFillThatStartsInsideTheSurfaceMeetsTheSameGrid()
    {
        QImage image(20, 20, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.fillRect(QRect(3, 5, 10, 9), hatch::brush(hatch::DiagonalCross, Qt::blue));
        painter.end();
        for (int y = 5; y < 14; ++y)
            for (int x = 3; x < 13; ++x)
                QCOMPARE(image.pixelColor(x, y) == QColor(Qt::blue),
                    hatch::isHatchPixel(hatch::DiagonalCross, x, y));
    }

    void aTransparentBackgroundLeavesTheGapsAsTheyWere()
    {
        const QImage image = filled(hatch::brush(hatch::Vertical, Qt::red), QSize(16, 8), Qt::green);
        QCOMPARE(image.pixelColor(4, 3), QColor(Qt::red));
        QCOMPARE(image.pixelColor(12, 3), QColor(Qt::red));
        QCOMPARE(image.pixelColor(0, 3), QColor(Qt::green));
        QCOMPARE(image.pixelColor(5, 0), QColor(Qt::green));
    }

    void negativeCoordinatesRepeatTheTile()
    {
        for (int index = hatch::Horizontal; index <= hatch::DiagonalCross; ++index)
            for (int y = -9; y < 0; ++y)
                for (int x = -9; x < 0; ++x)
                    QCOMPARE(hatch::isHatchPixel(index, x, y), hatch::isHatchPixel(index, x + 16, y + 16));
    }

    void fillStylesMapToTheirHatches()
    {
        QCOMPARE(hatch::indexOfFillStyle(hatch::vbFSSolid), -1);
        QCOMPARE(hatch::indexOfFillStyle(hatch::vbFSTransparent), -1);
        QCOMPARE(hatch::indexOfFillStyle(hatch::vbHorizontalLine), int(hatch::Horizontal));
        QCOMPARE(hatch::indexOfFillStyle(hatch::vbVerticalLine), int(hatch::Vertical));
        QCOMPARE(hatch::indexOfFillStyle(hatch::vbUpwardDiagonal), int(hatch::ForwardDiagonal));
        QCOMPARE(hatch::indexOfFillStyle(hatch::vbDownwardDiagonal), int(hatch::BackwardDiagonal));
        QCOMPARE(hatch::indexOfFillStyle(hatch::vbCross), int(hatch::Cross));
        QCOMPARE(hatch::indexOfFillStyle(hatch::vbDiagonalCross), int(hatch::DiagonalCross));
        QCOMPARE(hatch::indexOfFillStyle(8), -1);
    }

    void aFillStyleGivesItsBrush()
    {
        QCOMPARE(hatch::fillStyleBrush(hatch::vbFSSolid, Qt::red).style(), Qt::SolidPattern);
        QCOMPARE(hatch::fillStyleBrush(hatch::vbFSSolid, Qt::red).color(), QColor(Qt::red));
        QCOMPARE(hatch::fillStyleBrush(hatch::vbFSTransparent, Qt::red).style(), Qt::NoBrush);
        QCOMPARE(hatch::fillStyleBrush(42, Qt::red).style(), Qt::NoBrush);
        const QImage image = filled(hatch::fillStyleBrush(hatch::vbCross, Qt::black), QSize(8, 8));
        QCOMPARE(image.pixelColor(4, 0), QColor(Qt::black));
        QCOMPARE(image.pixelColor(0, 7), QColor(Qt::black));
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
    }

    void colourValuesAreBlueGreenRed()
    {
        QCOMPARE(hatch::colourOfValue(0x000000FF), QColor(255, 0, 0));
        QCOMPARE(hatch::colourOfValue(0x00FF0000), QColor(0, 0, 255));
        QCOMPARE(hatch::colourOfValue(0x80673333), QColor(0x33, 0x33, 0x67));
        QCOMPARE(hatch::valueOfColour(QColor(0x33, 0x33, 0x67)), 0x673333u);
    }
};

QTEST_GUILESS_MAIN(tst_HatchBrush)
#include "tst_hatchbrush.moc"
