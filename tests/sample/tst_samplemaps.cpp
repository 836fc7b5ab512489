// The sample's maps are for pupils to colour: opened in the painter, the fill bucket at
// a point of the sea recolours most of the sea, not a thin ring of one shade.
#include "../drawing/drawingtesting.h"

#include <picturefile.h>

#include <QDir>

using namespace testing;

namespace {

const QString PicturesFolder = QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/files/Pictures");

// The sea of every map, and a point of it near the left edge.
const QRgb Sea = qRgb(0xA9, 0xCF, 0xE3);
const QPoint SeaPoint(10, 300);

qint64 count(const QImage &image, QRgb colour)
{
    qint64 n = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            n += (row[x] | 0xFF000000u) == colour ? 1 : 0;
    }
    return n;
}

} // namespace

class tst_SampleMaps : public QObject
{
    Q_OBJECT

private slots:
    void aFillAtASeaPointRecoloursMostOfTheSea_data()
    {
        QTest::addColumn<QString>("file");
        const QStringList maps = QDir(PicturesFolder).entryList({QStringLiteral("map_*.png")}, QDir::Files);
        QVERIFY(maps.size() >= 7);
        for (const QString &map : maps) {
            // The site plans are drawn on paper and have no sea.
            if (!map.endsWith(QStringLiteral("_plan.png")) && !map.contains(QStringLiteral("sanctuary")))
                QTest::newRow(qPrintable(map)) << map;
        }
    }

    void aFillAtASeaPointRecoloursMostOfTheSea()
    {
        QFETCH(QString, file);
        const QImage map = pictures::LoadPicture(QDir(PicturesFolder).filePath(file))
                               .convertToFormat(QImage::Format_RGB32);
        QCOMPARE(map.pixel(SeaPoint), Sea);
        const qint64 sea = count(map, Sea);
        // The sea is one colour, and a large part of the map.
        QVERIFY2(sea > qint64(map.width()) * map.height() / 5, qPrintable(QString::number(sea)));

        testing::TestSession session;
        frmDrawing w(session);
        w.Load();
        w.picPhoto->setPicture(map);
        w.vFormFillStyle_NewFillStyle(drawing::Solid);
        w.vFormFillColor_NewColor(0x0000FF); // red
        chooseTool(w, QStringLiteral("FloodFill"));
        stroke(w, {SeaPoint});

        const QImage filled = w.picPhoto->Picture();
        const qint64 recoloured = count(filled, qRgb(255, 0, 0)) - count(map, qRgb(255, 0, 0));
        QVERIFY2(recoloured >= sea * 9 / 10,
            qPrintable(QStringLiteral("%1 of %2 sea pixels recoloured").arg(recoloured).arg(sea)));
    }
};

QTEST_MAIN(tst_SampleMaps)
#include "tst_samplemaps.moc"
