#include "palettetesting.h"

#include <errorpolicy.h>
#include <frmborderwidth.h>
#include <runtimeerror.h>

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace palettetesting;

namespace {

QRect rectOf(int cell)
{
    return QRect(2, (cell - 1) * 16 + 5, 66, 16);
}

QPoint centreOf(int cell)
{
    return rectOf(cell).center();
}

} // namespace

class tst_frmBorderWidth : public QObject
{
    Q_OBJECT

    Fixture<frmBorderWidth> m_fixture;
    QList<testing::ShownBox> &m_boxes = m_fixture.boxes;

    frmBorderWidth &shownPalette() { return m_fixture.shownPalette(); }

private slots:
    void init() { m_fixture.begin(); }

    void cleanup() { m_fixture.end(); }

    void tenCellsOfSixteenPixelRowsEachItsWidth()
    {
        frmBorderWidth &p = shownPalette();
        QCOMPARE(p.size(), QSize(70, 170));
        QCOMPARE(p.CellCount(), 10);
        for (int i = 1; i <= 10; ++i) {
            QCOMPARE(p.Cells(i).rect(), rectOf(i));
            QCOMPARE(p.Cells(i).Color, quint32(i));
        }
        QVERIFY(m_boxes.isEmpty());
    }

    void rowIShowsALineIPixelsThick()
    {
        frmBorderWidth &p = shownPalette();
        const QImage image = shown(p);
        for (int i = 1; i <= 10; ++i) {
            const QRect r = rectOf(i);
            int black = 0;
            for (int y = r.top() + 1; y < r.bottom(); ++y)
                black += image.pixelColor(35, y) == QColor(Qt::black) ? 1 : 0;
            QCOMPARE(black, i);
        }
        QVERIFY(m_boxes.isEmpty());
    }

    void aFirstPaintMarksCellOne()
    {
        frmBorderWidth &p = shownPalette();
        const QImage image = shown(p);
        QCOMPARE(p.SelectedIndex(), 1);
        QVERIFY(edgeShows(image, rectOf(1), paletteedge::Kind::Sunken));
        QVERIFY(m_boxes.isEmpty());
    }

    void theStartingWidthIsMarkedOnTheBareCell()
    {
        frmBorderWidth p;
        p.Move(3000, 3000);
        p.setSelectedDrawWidth(5);
        QVERIFY(showAt(p));
        QVERIFY(edgeShows(shown(p), rectOf(5), paletteedge::Kind::Sunken));
        QVERIFY(m_boxes.isEmpty());
    }

    void aValueAboveTenFailsAtPaintOnTheBoundsCheckOfTheCells()
    {
        frmBorderWidth p;
        p.Move(3000, 3000);
        p.setSelectedDrawWidth(11);
        QCOMPARE(p.SelectedIndex(), 11);
        QVERIFY(showAt(p));
        (void)shown(p);
        QTRY_COMPARE(m_boxes.size(), 1);
        QCOMPARE(m_boxes[0].text, platform::runtimeErrorText(9, QStringLiteral("Δείκτης εκτός περιοχής")));
        QCOMPARE(m_boxes[0].style, 16);
        // One box, however often the window is painted.
        (void)shown(p);
        p.repaint();
        QCoreApplication::processEvents();
        QCOMPARE(m_boxes.size(), 1);
    }

    void aClickInTheMarginBesideTheCellsRaisesNewBorderWidthWithTheOldValue()
    {
        for (const QPoint at : {QPoint(1, 40), QPoint(0, 40), QPoint(68, 40), QPoint(69, 40)}) {
            frmBorderWidth &p = shownPalette();
            p.setSelectedDrawWidth(4);
            QSignalSpy picked(&p, &frmBorderWidth::NewBorderWidth);
            QTest::mouseClick(&p, Qt::LeftButton, {}, at);
            QCOMPARE(picked.count(), 1);
            QCOMPARE(picked[0][0].value<qint16>(), qint16(4));
        }
        QVERIFY(m_boxes.isEmpty());
    }

    void aPickRaisesTheWidthOfTheRow()
    {
        frmBorderWidth &p = shownPalette();
        QSignalSpy picked(&p, &frmBorderWidth::NewBorderWidth);
        QTest::mousePress(&p, Qt::LeftButton, {}, centreOf(7));
        QCOMPARE(picked.count(), 1);
        QCOMPARE(picked[0][0].value<qint16>(), qint16(7));
        QVERIFY(p.isVisible());
        QTest::mouseRelease(&p, Qt::LeftButton, {}, centreOf(7));
        QVERIFY(!p.Loaded());
        QVERIFY(m_boxes.isEmpty());
    }

    void hoverRaisesTheBareCell()
    {
        frmBorderWidth &p = shownPalette();
        hover(p, centreOf(3));
        QCOMPARE(p.RaisedEdge(), std::optional<QRect>(rectOf(3)));
        QVERIFY(edgeShows(shown(p), rectOf(3), paletteedge::Kind::Raised));
        hover(p, centreOf(4));
        const QImage image = shown(p);
        QVERIFY(edgeShows(image, rectOf(4), paletteedge::Kind::Raised));
        QVERIFY(!anyEdgeOn(image, rectOf(3).adjusted(0, 0, 0, -1)));
        hover(p, QPoint(80, 40));
        QCOMPARE(p.HotIndex(), 0);
        QVERIFY(!p.HasCapture());
        QVERIFY(m_boxes.isEmpty());
    }

    void aClickElsewhereClosesThePaletteWithoutAnEvent()
    {
        frmBorderWidth p;
        QVERIFY(closesSilentlyWhenAnotherWindowIsActivated(p, &frmBorderWidth::NewBorderWidth));
    }
};

QTEST_MAIN(tst_frmBorderWidth)
#include "tst_frmborderwidth.moc"
