#include "palettetesting.h"

#include <frmfillstyle.h>
#include <hatchbrush.h>

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace palettetesting;

namespace {

QRect bareRect(int cell)
{
    return QRect(5, 5 + (cell - 1) * 20, 32, 15);
}

QRect grownRect(int cell)
{
    return bareRect(cell).adjusted(-3, -3, 3, 3);
}

QPoint centreOf(int cell)
{
    return bareRect(cell).center();
}

} // namespace

class tst_frmFillStyle : public QObject
{
    Q_OBJECT

    Fixture<frmFillStyle> m_fixture;
    QList<testing::ShownBox> &m_boxes = m_fixture.boxes;

    frmFillStyle &shownPalette() { return m_fixture.shownPalette(); }

private slots:
    void init() { m_fixture.begin(); }

    void cleanup()
    {
        m_fixture.end();
        QVERIFY(m_boxes.isEmpty());
    }

    void sevenCellsOneAboveTheOtherInAWindowOf47By150()
    {
        frmFillStyle &p = shownPalette();
        QCOMPARE(p.size(), QSize(47, 150));
        const qint32 styles[] = {0, 2, 3, 4, 5, 6, 7};
        for (int i = 1; i <= 7; ++i) {
            QCOMPARE(p.Cells(i).rect(), bareRect(i));
            QCOMPARE(qint32(p.Cells(i).Color), styles[i - 1]);
        }
    }

    void eachCellShowsItsPatternInAFrame()
    {
        frmFillStyle &p = shownPalette();
        const QImage image = shown(p);
        for (int i = 1; i <= 7; ++i) {
            const QRect r = bareRect(i);
            const int index = frmFillStyle::Table(i).hatchIndex;
            for (int y = r.top() + 1; y < r.bottom(); ++y)
                for (int x = r.left() + 1; x < r.right(); ++x) {
                    QColor expected = windowColour(p);
                    if (i == 1)
                        expected = QColor(128, 128, 128);
                    else if (hatch::isHatchPixel(index, x, y))
                        expected = Qt::black;
                    if (image.pixelColor(x, y) != expected)
                        QFAIL(qPrintable(QStringLiteral("cell %1 at %2, %3").arg(i).arg(x).arg(y)));
                }
            QCOMPARE(image.pixelColor(r.left(), r.center().y()), QColor(Qt::black));
            QCOMPARE(image.pixelColor(r.right(), r.center().y()), QColor(Qt::black));
        }
    }

    void aFirstPaintMarksCellOne()
    {
        frmFillStyle p;
        QCOMPARE(p.SelectedIndex(), 0);
        QVERIFY(showAt(p));
        const QImage image = shown(p);
        QCOMPARE(p.SelectedIndex(), 1);
        QVERIFY(edgeShows(image, grownRect(1), paletteedge::Kind::Sunken));
    }

    void theStartingStyleIsMarked()
    {
        frmFillStyle p;
        p.Move(3000, 3000);
        p.setSelectedFillStyle(6);
        QVERIFY(showAt(p));
        QCOMPARE(p.SelectedIndex(), 6);
        QCOMPARE(p.SelectedFillStyle(), 6);
        QVERIFY(edgeShows(shown(p), grownRect(6), paletteedge::Kind::Sunken));
    }

    void writingOneFindsNoCellTheValueIsStoredAndTheMarkStays()
    {
        frmFillStyle p;
        p.Move(3000, 3000);
        p.setSelectedFillStyle(4);
        QCOMPARE(p.SelectedIndex(), 4);
        p.setSelectedFillStyle(1);
        QCOMPARE(p.SelectedFillStyle(), 1);
        QCOMPARE(p.SelectedIndex(), 4);
        QVERIFY(showAt(p));
        QVERIFY(edgeShows(shown(p), grownRect(4), paletteedge::Kind::Sunken));
    }

    void thePointBetweenTwoCellsPicksTheUpperOne()
    {
        // Cell 1 ends at 20 and cell 2 begins at 25; grown by 3 they share the row 22.
        const struct
        {
            int y;
            qint32 style;
        } cases[] = {{21, 0}, {22, 0}, {23, 2}, {24, 2}};
        for (const auto &c : cases) {
            frmFillStyle &p = shownPalette();
            QSignalSpy picked(&p, &frmFillStyle::NewFillStyle);
            QTest::mouseClick(&p, Qt::LeftButton, {}, QPoint(20, c.y));
            QCOMPARE(picked.count(), 1);
            QCOMPARE(picked[0][0].value<qint32>(), c.style);
        }
    }

    void aPressBesideEveryGrownCellPicksTheOldStyleAgain()
    {
        frmFillStyle &p = shownPalette();
        p.setSelectedFillStyle(5);
        QSignalSpy picked(&p, &frmFillStyle::NewFillStyle);
        QTest::mouseClick(&p, Qt::LeftButton, {}, QPoint(44, 60));
        QCOMPARE(picked.count(), 1);
        QCOMPARE(picked[0][0].value<qint32>(), 5);
    }

    void hoverRaisesTheGrownCellAndTheGapKeepsIt()
    {
        frmFillStyle &p = shownPalette();
        hover(p, centreOf(3));
        QCOMPARE(p.HotIndex(), 3);
        QCOMPARE(p.RaisedEdge(), std::optional<QRect>(grownRect(3)));
        QVERIFY(edgeShows(shown(p), grownRect(3), paletteedge::Kind::Raised));
        // Hover tests the bare cell: the gap below it raises nothing new.
        hover(p, QPoint(20, 62));
        QCOMPARE(p.HotIndex(), 3);
        hover(p, centreOf(4));
        QCOMPARE(p.HotIndex(), 4);
        const QImage image = shown(p);
        QVERIFY(edgeShows(image, grownRect(4), paletteedge::Kind::Raised));
        QVERIFY(!anyEdgeOn(image, grownRect(3).adjusted(0, 0, 0, -1)));
    }

    void aPickRaisesTheStyleAndTheReleaseCloses()
    {
        frmFillStyle &p = shownPalette();
        QSignalSpy picked(&p, &frmFillStyle::NewFillStyle);
        QTest::mousePress(&p, Qt::LeftButton, {}, centreOf(7));
        QCOMPARE(picked.count(), 1);
        QCOMPARE(picked[0][0].value<qint32>(), 7);
        QVERIFY(p.isVisible());
        QTest::mouseRelease(&p, Qt::LeftButton, {}, centreOf(7));
        QVERIFY(!p.Loaded());
    }

    void leavingClearsTheRaisedEdgeAndReleasesTheCapture()
    {
        frmFillStyle &p = shownPalette();
        hover(p, centreOf(2));
        hover(p, QPoint(-1, 30));
        QCOMPARE(p.HotIndex(), 0);
        QVERIFY(!p.HasCapture());
        // Its top row is also the bottom row of the chosen cell's grown rectangle.
        QVERIFY(!anyEdgeOn(shown(p), grownRect(2).adjusted(0, 1, 0, 0)));
    }

    void leavingFromTheMarginWithNoHotCellTakesNothingBack()
    {
        frmFillStyle &p = shownPalette();
        hover(p, QPoint(1, 70));
        QVERIFY(p.HasCapture());
        QCOMPARE(p.HotIndex(), 0);
        hover(p, QPoint(-1, 70));
        QVERIFY(!p.HasCapture());
    }

    void eachShowingStartsWithoutAPick()
    {
        frmFillStyle &p = shownPalette();
        QTest::mouseClick(&p, Qt::LeftButton, {}, centreOf(3));
        QVERIFY(!p.Loaded());
        QVERIFY(p.PickStarted());
        QVERIFY(showAt(p));
        QVERIFY(!p.PickStarted());
        QCOMPARE(p.SelectedIndex(), 3);
        hover(p, centreOf(5));
        QCOMPARE(p.RaisedEdge(), std::optional<QRect>(grownRect(5)));
    }

    void aClickElsewhereClosesThePaletteWithoutAnEvent()
    {
        frmFillStyle p;
        QVERIFY(closesSilentlyWhenAnotherWindowIsActivated(p, &frmFillStyle::NewFillStyle));
    }
};

QTEST_MAIN(tst_frmFillStyle)
#include "tst_frmfillstyle.moc"
