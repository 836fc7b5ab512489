#include "palettetesting.h"

#include <frmcolors.h>
#include <hatchbrush.h>
#include <runtimeerror.h>

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace palettetesting;

namespace {

QPoint centreOf(int cell)
{
    return QPoint(((cell - 1) % 8) * 20 + 10, ((cell - 1) / 8) * 20 + 10);
}

QRect rectOf(int cell)
{
    return QRect(((cell - 1) % 8) * 20, ((cell - 1) / 8) * 20, 20, 20);
}

} // namespace

class tst_frmColors : public QObject
{
    Q_OBJECT

    Fixture<frmColors> m_fixture;
    QList<testing::ShownBox> &m_boxes = m_fixture.boxes;

    frmColors &shownPalette() { return m_fixture.shownPalette(); }

private slots:
    void init() { m_fixture.begin(); }

    void cleanup()
    {
        m_fixture.end();
        QVERIFY(m_boxes.isEmpty());
    }

    void theColourTableHoldsFortyColoursRowByRow()
    {
        const auto &table = frmColors::ColourTable();
        QCOMPARE(table.size(), std::size_t(40));
        QCOMPARE(table[0], 0x000000u);
        QCOMPARE(table[1], 0x003399u); // 993300
        QCOMPARE(table[6], 0x673333u); // 333367: a blue of 0x67
        QCOMPARE(table[13], 0xFF0000u); // 0000FF
        QCOMPARE(table[16], 0x0000FFu); // FF0000
        QCOMPARE(table[39], 0xFFFFFFu);
    }

    void theWindowIs160By100PixelsOfTwentyPixelCells()
    {
        frmColors &p = shownPalette();
        QCOMPARE(p.size(), QSize(160, 100));
        QCOMPARE(p.CellCount(), 40);
        for (int i = 1; i <= 40; ++i) {
            QCOMPARE(p.Cells(i).rect(), rectOf(i));
            QCOMPARE(p.Cells(i).Color, frmColors::ColourTable()[std::size_t(i - 1)]);
        }
    }

    void eachCellShowsItsColourInAFramedSquare()
    {
        frmColors &p = shownPalette();
        const QImage image = shown(p);
        for (int i = 1; i <= 40; ++i) {
            const QRect r = rectOf(i);
            QCOMPARE(image.pixelColor(centreOf(i)),
                hatch::colourOfValue(frmColors::ColourTable()[std::size_t(i - 1)]));
            QCOMPARE(image.pixelColor(r.topLeft() + QPoint(4, 4)), QColor(Qt::black));
            QCOMPARE(image.pixelColor(r.topLeft() + QPoint(15, 15)), QColor(Qt::black));
            QCOMPARE(image.pixelColor(r.topLeft() + QPoint(2, 10)), windowColour(p));
        }
    }

    void theFirstPaintOfANewObjectMarksCellOneBlack()
    {
        frmColors p;
        QCOMPARE(p.SelectedIndex(), 0);
        QVERIFY(showAt(p));
        const QImage image = shown(p);
        QCOMPARE(p.SelectedIndex(), 1);
        QCOMPARE(p.SelectedColor(), 0u);
        QVERIFY(edgeShows(image, rectOf(1), paletteedge::Kind::Sunken));
        QCOMPARE(image.pixelColor(centreOf(1)), QColor(Qt::black));
    }

    void readingTheColourBeforeAnyCellIsChosenIsTheRuntimeError()
    {
        frmColors p;
        try {
            (void)p.SelectedColor();
            QFAIL("no error");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.number(), platform::errors::SubscriptOutOfRange);
        }
    }

    void theStartingColourIsMarkedSunken()
    {
        frmColors p;
        p.Move(3000, 3000);
        p.setSelectedColor(0x00FFFF); // yellow, FFFF00
        QVERIFY(showAt(p));
        QCOMPARE(p.SelectedIndex(), 27);
        QVERIFY(edgeShows(shown(p), rectOf(27), paletteedge::Kind::Sunken));
        QVERIFY(!anyEdgeOn(shown(p), rectOf(1)));
    }

    void aColourNotInTheTableLeavesTheChoiceAsItIs()
    {
        frmColors &p = shownPalette();
        p.setSelectedColor(0xFF0000);
        QCOMPARE(p.SelectedIndex(), 14);
        p.setSelectedColor(0x123456);
        QCOMPARE(p.SelectedIndex(), 14);
    }

    void hoverRaisesTheCellUnderThePointer()
    {
        frmColors &p = shownPalette();
        hover(p, centreOf(3));
        QCOMPARE(p.HotIndex(), 3);
        QVERIFY(p.HasCapture());
        QCOMPARE(p.RaisedEdge(), std::optional<QRect>(rectOf(3)));
        QVERIFY(edgeShows(shown(p), rectOf(3), paletteedge::Kind::Raised));

        hover(p, centreOf(12));
        QCOMPARE(p.HotIndex(), 12);
        const QImage image = shown(p);
        QVERIFY(edgeShows(image, rectOf(12), paletteedge::Kind::Raised));
        QVERIFY(!anyEdgeOn(image, rectOf(3)));
        QVERIFY(edgeShows(image, rectOf(1), paletteedge::Kind::Sunken));
    }

    void thePointerMovedByTheWindowSystemRaisesTheCellToo()
    {
        frmColors &p = shownPalette();
        QTest::mouseMove(&p, centreOf(9));
        QTRY_COMPARE(p.HotIndex(), 9);
        QTest::mouseMove(&p, centreOf(10));
        QTRY_COMPARE(p.HotIndex(), 10);
        QCOMPARE(p.RaisedEdge(), std::optional<QRect>(rectOf(10)));
    }

    void movingInsideOneCellDoesNoDrawing()
    {
        frmColors &p = shownPalette();
        hover(p, QPoint(45, 5));
        QCOMPARE(p.HotIndex(), 3);
        PaintCounter paints(p);
        hover(p, QPoint(50, 12));
        hover(p, QPoint(59, 19));
        hover(p, QPoint(40, 0));
        QCOMPARE(paints.count, 0);
        QCOMPARE(p.HotIndex(), 3);
        // Into the next cell: the old one and the new one repaint, and nothing else.
        hover(p, QPoint(60, 0));
        QVERIFY(paints.count > 0);
        QCOMPARE(p.HotIndex(), 4);
        QCOMPARE(paints.painted, QRegion(rectOf(3)) + QRegion(rectOf(4)));
    }

    void hoveringTheSelectedCellDrawsNoRaisedEdge()
    {
        frmColors &p = shownPalette();
        (void)shown(p);
        hover(p, centreOf(2));
        hover(p, centreOf(1));
        QCOMPARE(p.HotIndex(), 1);
        QCOMPARE(p.RaisedEdge(), std::nullopt);
        const QImage image = shown(p);
        QVERIFY(edgeShows(image, rectOf(1), paletteedge::Kind::Sunken));
        QVERIFY(!anyEdgeOn(image, rectOf(2)));
    }

    void aClickThatHitsTheSunkenCellRaisesNewColorAgainWithTheSameColour()
    {
        frmColors p;
        p.Move(3000, 3000);
        p.setSelectedColor(0x0000FF);
        QVERIFY(showAt(p));
        QCOMPARE(p.SelectedIndex(), 17);
        QSignalSpy picked(&p, &frmColors::NewColor);
        press(p, centreOf(17));
        QCOMPARE(picked.count(), 1);
        QCOMPARE(picked[0][0].value<quint32>(), 0x0000FFu);
        QCOMPARE(p.SelectedIndex(), 17);
    }

    void leavingTheWindowClearsTheRaisedEdgeAndReleasesTheCapture()
    {
        frmColors &p = shownPalette();
        hover(p, centreOf(3));
        QVERIFY(p.HasCapture());
        // The first move outside the window, which it sees while it follows the pointer.
        hover(p, QPoint(50, -1));
        QCOMPARE(p.HotIndex(), 0);
        QVERIFY(!p.HasCapture());
        QCOMPARE(p.RaisedEdge(), std::nullopt);
        QVERIFY(!anyEdgeOn(shown(p), rectOf(3)));
        QVERIFY(p.Loaded());
    }

    void theWindowSystemsLeaveClearsTheRaisedEdgeToo()
    {
        frmColors &p = shownPalette();
        hover(p, centreOf(30));
        leave(p);
        QCOMPARE(p.HotIndex(), 0);
        QVERIFY(!p.HasCapture());
        QVERIFY(!anyEdgeOn(shown(p), rectOf(30)));
    }

    void aPressPicksWhileTheWindowIsUpAndTheReleaseClosesIt()
    {
        frmColors &p = shownPalette();
        hover(p, centreOf(12));
        bool upWhilePicked = false;
        QSignalSpy picked(&p, &frmColors::NewColor);
        connect(&p, &frmColors::NewColor, this, [&] { upWhilePicked = p.isVisible(); });
        QTest::mousePress(&p, Qt::LeftButton, {}, centreOf(12));
        QCOMPARE(picked.count(), 1);
        QCOMPARE(picked[0][0].value<quint32>(), frmColors::ColourTable()[11]);
        QVERIFY(upWhilePicked);
        QCOMPARE(p.SelectedIndex(), 12);
        QVERIFY(p.PickStarted());
        // The pick repaints the window: the cell shows sunken, nothing raised.
        QCOMPARE(p.RaisedEdge(), std::nullopt);
        QVERIFY(edgeShows(shown(p), rectOf(12), paletteedge::Kind::Sunken));
        QVERIFY(p.isVisible());
        QTest::mouseRelease(&p, Qt::LeftButton, {}, centreOf(12));
        QVERIFY(!p.isVisible());
        QVERIFY(!p.Loaded());
        QCOMPARE(picked.count(), 1);
    }

    void draggingAcrossCellsAfterThePressChangesNothing()
    {
        frmColors &p = shownPalette();
        QSignalSpy picked(&p, &frmColors::NewColor);
        press(p, centreOf(2));
        PaintCounter paints(p);
        for (int cell : {3, 4, 5, 13})
            drag(p, centreOf(cell));
        drag(p, QPoint(400, 400));
        QCOMPARE(paints.count, 0);
        QCOMPARE(p.SelectedIndex(), 2);
        QCOMPARE(p.RaisedEdge(), std::nullopt);
        release(p, centreOf(13));
        QCOMPARE(picked.count(), 1);
        QCOMPARE(picked[0][0].value<quint32>(), frmColors::ColourTable()[1]);
        QVERIFY(!p.Loaded());
    }

    void anyMouseButtonPicks()
    {
        for (Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
            frmColors &p = shownPalette();
            QSignalSpy picked(&p, &frmColors::NewColor);
            QTest::mouseClick(&p, button, {}, centreOf(40));
            QCOMPARE(picked.count(), 1);
            QCOMPARE(picked[0][0].value<quint32>(), 0xFFFFFFu);
            QVERIFY(!p.isVisible());
        }
    }

    void aClickElsewhereClosesThePaletteWithoutAnEvent()
    {
        frmColors p;
        QVERIFY(closesSilentlyWhenAnotherWindowIsActivated(p, &frmColors::NewColor));
    }

    void theWindowsCloseButtonClosesWithoutAnEvent()
    {
        frmColors &p = shownPalette();
        QSignalSpy picked(&p, &frmColors::NewColor);
        p.close();
        QVERIFY(!p.Loaded());
        QCOMPARE(picked.count(), 0);
    }

    void anObjectShownAgainMarksTheLastPickAndRaisesNoCellButStillPicks()
    {
        frmColors &p = shownPalette();
        QTest::mouseClick(&p, Qt::LeftButton, {}, centreOf(20));
        QVERIFY(!p.Loaded());
        QVERIFY(showAt(p));
        QCOMPARE(p.SelectedIndex(), 20);
        QVERIFY(p.PickStarted());
        QVERIFY(edgeShows(shown(p), rectOf(20), paletteedge::Kind::Sunken));
        hover(p, centreOf(5));
        QCOMPARE(p.RaisedEdge(), std::nullopt);
        QCOMPARE(p.HotIndex(), 0);
        QSignalSpy picked(&p, &frmColors::NewColor);
        QTest::mouseClick(&p, Qt::LeftButton, {}, centreOf(5));
        QCOMPARE(picked.count(), 1);
        QCOMPARE(picked[0][0].value<quint32>(), frmColors::ColourTable()[4]);
    }

    void theOwnerHangsThePaletteUnderItsButton()
    {
        // A toolbar with a button 100 pixels in, as the painter places its palettes: the
        // toolbar's screen rectangle in pixels, the button's left in twips.
        QWidget toolbar;
        toolbar.setGeometry(120, 80, 400, 30);
        toolbar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&toolbar));
        const QRect bar = toolbar.frameGeometry();
        const int buttonLeftTwips = 100 * 15;
        frmColors p;
        p.Move(bar.left() * 15 + buttonLeftTwips, (bar.top() + bar.height()) * 15);
        p.setCaption(QStringLiteral("Περίγραμμα-Γραμματοσειρά"));
        p.Show();
        QVERIFY(QTest::qWaitForWindowExposed(&p));
        QCOMPARE(p.frameGeometry().topLeft(), QPoint(bar.left() + 100, bar.top() + bar.height()));
        QCOMPARE(p.Left(), bar.left() * 15 + buttonLeftTwips);
        QCOMPARE(p.Top(), (bar.top() + bar.height()) * 15);
        QVERIFY(p.Width() >= 160 * 15);
        QVERIFY(p.Height() >= 100 * 15);
        QCOMPARE(p.windowTitle(), QStringLiteral("Περίγραμμα-Γραμματοσειρά"));
    }
};

QTEST_MAIN(tst_frmColors)
#include "tst_frmcolors.moc"
