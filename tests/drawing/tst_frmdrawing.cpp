// The drawing window: its size, scroll bars, the way a gesture reaches the tools, the
// tools on the canvas, the toolbars and the dropdowns.
#include "drawingtesting.h"

#include <drawingtoolbar.h>
#include <frmborderwidth.h>
#include <frmcolors.h>
#include <frmfillstyle.h>
#include <frmpastepicture.h>
#include <rubberband.h>
#include <surface.h>

#include <QApplication>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolButton>

using namespace testing;
using namespace Qt::StringLiterals;

namespace {

constexpr quint32 White = 0xFFFFFF;

QRgb rgb(quint32 color)
{
    return drawing::rgbOf(color);
}

struct Window
{
    frmDrawing w;
    explicit Window(Session &session)
        : w(session)
    {
        w.Load();
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
    }
};

} // namespace

class tst_frmDrawing : public QObject, public DrawingFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        beginSession();
        boxes.install(host());
    }
    void cleanup() { endSession(); }

    void loadStartsWithArrowBlackWidthOneAndSolidFill()
    {
        Window t(session());
        QCOMPARE(t.w.windowTitle(), QStringLiteral("Σχεδιαστήριο"));
        QCOMPARE(t.w.CurrentTool(), frmDrawing::Arrow);
        QCOMPARE(t.w.picPhoto->MousePointer(), 0);
        QCOMPARE(t.w.tlbTools->Value(QStringLiteral("Arrow")), 1);
        QCOMPARE(t.w.picPhoto->ForeColor, 0u);
        QCOMPARE(t.w.picPhoto->DrawWidth, qint16(1));
        QCOMPARE(t.w.picPhoto->Line1->BorderWidth, qint16(1));
        QCOMPARE(t.w.picPhoto->Shape1->FillStyle, qint16(0));
        QVERIFY(t.w.UndoPicture().isNull());
        // The Arrow row: every palette off but the stamps.
        for (const char *key : {"BorderWidth", "BorderColor", "FillColor", "FillStyle"})
            QVERIFY(!t.w.tlbGeneral->Buttons(QString::fromLatin1(key))->isEnabled());
        QVERIFY(t.w.tlbGeneral->Buttons(QStringLiteral("Shape"))->isEnabled());
    }

    void windowSizedBelowTheSmallestSnapsBackWidthFirst()
    {
        Window t(session());
        t.w.resize(100, 100);
        QTRY_COMPARE(platform::twipsFromPixelsX(t.w.width()), frmDrawing::MinimumWidth);
        QVERIFY(platform::twipsFromPixelsX(t.w.width() - 1) < frmDrawing::MinimumWidth);
        QVERIFY(platform::twipsFromPixelsY(t.w.height()) >= frmDrawing::MinimumHeight);
        QVERIFY(platform::twipsFromPixelsY(t.w.height()) < frmDrawing::MinimumHeight + 15);
    }

    void emptyCanvasFillsTheContainerAndNeverShowsScrollBars()
    {
        Window t(session());
        t.w.resize(700, 500);
        QTRY_COMPARE(t.w.width(), 700);
        QCOMPARE(t.w.picPhoto->width(), t.w.picContainer->width() - 10);
        QCOMPARE(t.w.picPhoto->height(), t.w.picContainer->height() - 10);
        QVERIFY(!t.w.HS->isVisible());
        QVERIFY(!t.w.VS->isVisible());
        t.w.resize(500, 300);
        QTRY_COMPARE(t.w.width(), 500);
        QVERIFY(!t.w.HS->isVisible());
        QVERIFY(!t.w.VS->isVisible());
    }

    void pictureAtMostTheMarginSmallerThanTheContainerShowsNoScrollBar()
    {
        Window t(session());
        const QSize room = t.w.picContainer->size();
        t.w.picPhoto->setPicture(solidPicture(room - QSize(10, 10), Qt::red));
        t.w.SetScrollBars();
        QVERIFY(!t.w.HS->isVisible());
        QVERIFY(!t.w.VS->isVisible());
        t.w.picPhoto->setPicture(solidPicture(QSize(room.width() - 9, room.height() - 20), Qt::red));
        t.w.SetScrollBars();
        QVERIFY(t.w.HS->isVisible());
        QVERIFY(!t.w.VS->isVisible());
        QCOMPARE(t.w.HS->maximum(), platform::twipsFromPixelsX(room.width() - 9 - room.width()) + 150);
        QCOMPARE(t.w.HS->singleStep(), 15);
        QCOMPARE(t.w.HS->pageStep(), platform::twipsFromPixelsX(room.width()) / 3);
    }

    void scrollingMovesTheCanvasByTwips()
    {
        Window t(session());
        t.w.picPhoto->setPicture(solidPicture(QSize(1500, 1200), Qt::green));
        t.w.SetScrollBars();
        QVERIFY(t.w.HS->isVisible() && t.w.VS->isVisible());
        t.w.HS->setValue(150);
        QCOMPARE(t.w.picPhoto->x(), -10);
        t.w.VS->setValue(300);
        QCOMPARE(t.w.picPhoto->y(), -20);
        QCOMPARE(t.w.HS->focusPolicy(), Qt::NoFocus);
    }

    void aBigMapScrollsToItsLastRowAndColumnAndIsDrawnThere()
    {
        Window t(session());
        const QSize map(6000, 4500);
        t.w.picPhoto->setPicture(solidPicture(map, Qt::white));
        t.w.SetScrollBars();
        QVERIFY(t.w.HS->isVisible() && t.w.VS->isVisible());
        const QSize room = t.w.picContainer->size();
        QCOMPARE(t.w.HS->maximum(), platform::twipsFromPixelsX(map.width() - room.width()) + 150);
        QCOMPARE(t.w.VS->maximum(), platform::twipsFromPixelsY(map.height() - room.height()) + 150);

        t.w.HS->setValue(t.w.HS->maximum());
        t.w.VS->setValue(t.w.VS->maximum());
        // The last pixel shows inside the container, and a click there reaches the canvas.
        const QPoint last(map.width() - 1, map.height() - 1);
        const QPoint shown = t.w.picPhoto->mapTo(t.w.picContainer, last);
        QVERIFY2(t.w.picContainer->rect().contains(shown),
            qPrintable(QStringLiteral("%1,%2").arg(shown.x()).arg(shown.y())));
        QCOMPARE(t.w.picContainer->childAt(shown), t.w.picPhoto);

        chooseTool(t.w, QStringLiteral("Pen"));
        QTest::mousePress(t.w.picPhoto, Qt::LeftButton, {}, last - QPoint(20, 0));
        QTest::mouseMove(t.w.picPhoto, last);
        QTest::mouseRelease(t.w.picPhoto, Qt::LeftButton, {}, last);
        QCOMPARE(t.w.picPhoto->Picture().pixel(last), qRgb(0, 0, 0));
        QCOMPARE(t.w.picPhoto->Picture().pixel(last - QPoint(3, 3)), qRgb(255, 255, 255));
    }

    void aRealDragOnTheCanvasDrawsAndCommits()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("Line"));
        QTest::mousePress(t.w.picPhoto, Qt::LeftButton, {}, QPoint(10, 40));
        QVERIFY(t.w.MouseIsDown());
        QTest::mouseMove(t.w.picPhoto, QPoint(60, 40));
        QTest::mouseRelease(t.w.picPhoto, Qt::LeftButton, {}, QPoint(60, 40));
        QVERIFY(!t.w.MouseIsDown());
        QCOMPARE(t.w.picPhoto->Picture().pixel(35, 40), rgb(0));
        QCOMPARE(t.w.picPhoto->Picture().pixel(10, 40), rgb(0));
    }

    void rightButtonDrawsLikeTheLeft()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("Pen"));
        stroke(t.w, {{10, 10}, {30, 10}}, 2);
        QCOMPARE(t.w.picPhoto->Picture().pixel(20, 10), rgb(0));
    }

    void releaseWithoutPressReachesTheToolAndCommits()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("Rectangle"));
        stroke(t.w, {{10, 10}, {40, 30}});
        const QImage first = t.w.picPhoto->Picture();
        // A box drawn by the last release; the next release alone draws it again.
        t.w.picPhoto->setPicture(solidPicture(first.size(), Qt::white));
        QVERIFY(!t.w.MouseIsDown());
        t.w.picPhoto_MouseUp(1, 0, tw(100), tw(100));
        QCOMPARE(t.w.picPhoto->Picture().pixel(10, 10), rgb(0));
        QCOMPARE(t.w.picPhoto->Picture().pixel(39, 29), rgb(0));
        QCOMPARE(t.w.picPhoto->Picture().pixel(100, 100), rgb(White));
        QVERIFY(!t.w.MouseIsDown());
    }

    void movesWithoutAPressDoNothing()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("Pen"));
        t.w.picPhoto->CurrentX = 0;
        t.w.picPhoto->CurrentY = 0;
        t.w.picPhoto_MouseMove(0, 0, tw(30), tw(30));
        QCOMPARE(t.w.picPhoto->Image().pixel(15, 15), rgb(White));
    }

    void clickWithArrowReplacesTheUndoPictureWithThePresentOne()
    {
        Window t(session());
        const QImage picture = solidPicture(QSize(50, 40), Qt::blue);
        t.w.picPhoto->setPicture(picture);
        stroke(t.w, {{5, 5}});
        QCOMPARE(t.w.UndoPicture().cacheKey(), picture.cacheKey());
        QCOMPARE(t.w.picPhoto->Picture(), picture);
    }

    void rubberBandDragUpAndLeftGivesTheSameBox()
    {
        Window a(session());
        chooseTool(a.w, QStringLiteral("Rectangle"));
        stroke(a.w, {{10, 12}, {25, 30}, {40, 44}});
        Window b(session());
        chooseTool(b.w, QStringLiteral("Rectangle"));
        b.w.picPhoto->resize(a.w.picPhoto->size());
        stroke(b.w, {{40, 44}, {20, 20}, {10, 12}});
        QCOMPARE(a.w.picPhoto->Picture(), b.w.picPhoto->Picture());
        QCOMPARE(a.w.picPhoto->Picture().pixel(10, 12), rgb(0));
        QCOMPARE(a.w.picPhoto->Picture().pixel(39, 43), rgb(0));
    }

    void rubberBandsShowOnlyDuringTheGestureAndLeaveThePicture()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("FilledEllipse"));
        const QImage before = t.w.picPhoto->Picture();
        t.w.picPhoto_MouseDown(1, 0, tw(5), tw(5));
        QVERIFY(t.w.picPhoto->Shape1->isVisible());
        QCOMPARE(t.w.picPhoto->Shape1->Shape, int(RubberShape::Oval));
        t.w.picPhoto_MouseMove(1, 0, tw(30), tw(20));
        QCOMPARE(t.w.picPhoto->Shape1->Width, tw(25));
        QVERIFY(t.w.picPhoto->Image().pixel(17, 12) == rgb(White));
        t.w.picPhoto_MouseUp(1, 0, tw(30), tw(20));
        QVERIFY(!t.w.picPhoto->Shape1->isVisible());

        chooseTool(t.w, QStringLiteral("Line"));
        t.w.picPhoto_MouseDown(1, 0, tw(50), tw(50));
        QVERIFY(t.w.picPhoto->Line1->isVisible());
        t.w.picPhoto_MouseMove(1, 0, tw(80), tw(50));
        QCOMPARE(t.w.picPhoto->Image().pixel(65, 50), rgb(White));
        t.w.picPhoto_MouseUp(1, 0, tw(90), tw(50));
        QVERIFY(!t.w.picPhoto->Line1->isVisible());
        // The line ends where the last move was, not at the release.
        QCOMPARE(t.w.picPhoto->Picture().pixel(80, 50), rgb(0));
        QCOMPARE(t.w.picPhoto->Picture().pixel(85, 50), rgb(White));
    }

    void rectangleWithAHatchChosenDrawsUnfilledAndKeepsTheStyle()
    {
        Window t(session());
        t.w.vFormFillStyle_NewFillStyle(2);
        t.w.vFormFillColor_NewColor(0x0000FF);
        chooseTool(t.w, QStringLiteral("Rectangle"));
        t.w.picPhoto_MouseDown(1, 0, tw(0), tw(0));
        QCOMPARE(t.w.picPhoto->Shape1->FillStyle, qint16(1));
        t.w.picPhoto_MouseMove(1, 0, tw(40), tw(40));
        t.w.picPhoto_MouseUp(1, 0, tw(40), tw(40));
        QCOMPARE(t.w.picPhoto->FillStyle, qint16(2));
        QCOMPARE(t.w.picPhoto->Shape1->FillStyle, qint16(2));
        for (int y = 1; y < 39; ++y)
            for (int x = 1; x < 39; ++x)
                QCOMPARE(t.w.picPhoto->Picture().pixel(x, y), rgb(White));
    }

    void filledRectangleUsesTheChosenPattern()
    {
        Window t(session());
        t.w.vFormFillStyle_NewFillStyle(3);
        t.w.vFormFillColor_NewColor(0x0000FF);
        chooseTool(t.w, QStringLiteral("FilledRectangle"));
        stroke(t.w, {{0, 0}, {40, 40}});
        QCOMPARE(t.w.picPhoto->Picture().pixel(12, 20), rgb(0x0000FF));
        QCOMPARE(t.w.picPhoto->Picture().pixel(13, 20), rgb(White));
    }

    void penWithoutAMoveDrawsNothingAndLineDrawsADot()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("Pen"));
        stroke(t.w, {{20, 20}});
        QCOMPARE(t.w.picPhoto->Picture().pixel(20, 20), rgb(White));
        chooseTool(t.w, QStringLiteral("Line"));
        stroke(t.w, {{20, 20}});
        QCOMPARE(t.w.picPhoto->Picture().pixel(20, 20), rgb(0));
        QCOMPARE(t.w.picPhoto->Picture().pixel(21, 20), rgb(White));
    }

    void penDrawsWithTheOutlineColourAndWidth()
    {
        Window t(session());
        t.w.vFormBorderColor_NewColor(0x00FF00);
        t.w.vFormBorderWidth_NewBorderWidth(5);
        chooseTool(t.w, QStringLiteral("Pen"));
        stroke(t.w, {{10, 30}, {60, 30}});
        QCOMPARE(t.w.picPhoto->Picture().pixel(35, 28), rgb(0x00FF00));
        QCOMPARE(t.w.picPhoto->Picture().pixel(35, 32), rgb(0x00FF00));
        QCOMPARE(t.w.picPhoto->Picture().pixel(35, 33), rgb(White));
    }

    void floodFillOutsideThePictureSeedsWithMinusOneAndChangesNothing()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("FloodFill"));
        const QImage before = t.w.picPhoto->Image();
        QCOMPARE(t.w.picPhoto->Point(tw(-3), tw(5)), qint64(-1));
        stroke(t.w, {{-3, 5}});
        QCOMPARE(t.w.picPhoto->Picture(), before);
        QVERIFY(boxes.isEmpty());
    }

    void floodFillActsOnThePressAloneAndTheReleaseStillCommits()
    {
        Window t(session());
        t.w.vFormFillColor_NewColor(0x0000FF);
        chooseTool(t.w, QStringLiteral("FloodFill"));
        const QImage before = t.w.picPhoto->Picture();
        t.w.picPhoto_MouseDown(1, 0, tw(5), tw(5));
        QCOMPARE(t.w.picPhoto->Image().pixel(100, 100), rgb(0x0000FF));
        QCOMPARE(t.w.picPhoto->Picture(), before);
        const QImage filled = t.w.picPhoto->Image();
        t.w.picPhoto_MouseMove(1, 0, tw(50), tw(50));
        QCOMPARE(t.w.picPhoto->Image(), filled);
        t.w.picPhoto_MouseUp(1, 0, tw(50), tw(50));
        QCOMPARE(t.w.picPhoto->Picture(), filled);
    }

    void floodFillFillsTheSeedsSurfaceWithTheHatch()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("Rectangle"));
        stroke(t.w, {{10, 10}, {50, 50}});
        t.w.vFormFillStyle_NewFillStyle(drawing::Cross);
        t.w.vFormFillColor_NewColor(0xFF0000);
        chooseTool(t.w, QStringLiteral("FloodFill"));
        stroke(t.w, {{30, 30}});
        const QImage p = t.w.picPhoto->Picture();
        QCOMPARE(p.pixel(12, 20), rgb(0xFF0000));
        QCOMPARE(p.pixel(13, 20), rgb(White));
        QCOMPARE(p.pixel(60, 15), rgb(White));
    }

    void toolChoiceSetsPointerAndPaletteButtons_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("tool");
        QTest::addColumn<QList<bool>>("enabled");
        QTest::newRow("Pen") << u"Pen"_s << 1 << QList<bool> {true, true, false, false};
        QTest::newRow("Line") << u"Line"_s << 2 << QList<bool> {true, true, false, false};
        QTest::newRow("Ellipse") << u"Ellipse"_s << 5 << QList<bool> {true, true, false, false};
        QTest::newRow("Rectangle") << u"Rectangle"_s << 3 << QList<bool> {true, true, false, false};
        QTest::newRow("FilledEllipse") << u"FilledEllipse"_s << 6 << QList<bool> {true, true, true, true};
        QTest::newRow("FilledRectangle") << u"FilledRectangle"_s << 4 << QList<bool> {true, true, true, true};
        QTest::newRow("FloodFill") << u"FloodFill"_s << 8 << QList<bool> {false, false, true, true};
        QTest::newRow("Text") << u"Text"_s << 9 << QList<bool> {false, true, false, false};
        QTest::newRow("Arrow") << u"Arrow"_s << 0 << QList<bool> {false, false, false, false};
    }

    void toolChoiceSetsPointerAndPaletteButtons()
    {
        QFETCH(QString, key);
        QFETCH(int, tool);
        QFETCH(QList<bool>, enabled);
        Window t(session());
        chooseTool(t.w, QStringLiteral("Pen"));
        QTest::mouseClick(t.w.tlbTools->Buttons(key), Qt::LeftButton);
        QCOMPARE(t.w.CurrentTool(), tool);
        QCOMPARE(t.w.picPhoto->MousePointer(), tool == 0 ? 0 : 99);
        const QStringList keys {u"BorderWidth"_s, u"BorderColor"_s, u"FillColor"_s, u"FillStyle"_s};
        for (int i = 0; i < 4; ++i)
            QCOMPARE(t.w.tlbGeneral->Buttons(keys.at(i))->isEnabled(), enabled.at(i));
        QVERIFY(t.w.tlbGeneral->Buttons(QStringLiteral("Shape"))->isEnabled());
    }

    void toolTipsAndOrderOfTheToolbars()
    {
        Window t(session());
        QCOMPARE(t.w.tlbTools->keys(),
            QStringList({u"Arrow"_s, u"Pen"_s, u"Line"_s, u"Ellipse"_s, u"Rectangle"_s, u"FilledEllipse"_s,
                u"FilledRectangle"_s, u"FloodFill"_s, u"Text"_s}));
        QCOMPARE(t.w.tlbTools->Buttons(QStringLiteral("Ellipse"))->toolTip(), QStringLiteral("'Ελλειψη"));
        QCOMPARE(t.w.tlbGeneral->keys(),
            QStringList({u"New"_s, u"Open"_s, u"Save"_s, u"SaveAs"_s, u"Copy"_s, u"Paste"_s, u"Print"_s,
                u"Undo"_s, u"Picture"_s, u"Exit"_s, u"Shape"_s, u"BorderWidth"_s, u"BorderColor"_s,
                u"FillColor"_s, u"FillStyle"_s}));
        QCOMPARE(t.w.tlbGeneral->Buttons(QStringLiteral("BorderColor"))->toolTip(),
            QStringLiteral("Χρώμα περιγράμματος και γραμματοσειράς"));
    }

    void floodFillChoiceLeavesWidthAndColourAsTheyWere()
    {
        Window t(session());
        t.w.vFormBorderColor_NewColor(0x123456);
        t.w.vFormBorderWidth_NewBorderWidth(4);
        chooseTool(t.w, QStringLiteral("FloodFill"));
        QCOMPARE(t.w.picPhoto->DrawWidth, qint16(4));
        QCOMPARE(t.w.picPhoto->ForeColor, 0x123456u);
        QVERIFY(!t.w.tlbGeneral->Buttons(QStringLiteral("BorderWidth"))->isEnabled());
        QVERIFY(!t.w.tlbGeneral->Buttons(QStringLiteral("BorderColor"))->isEnabled());
    }

    void unknownKeyShowsItself()
    {
        Window t(session());
        t.w.tlbGeneral_ButtonClick(QStringLiteral("Nothing"));
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().text, QStringLiteral("Nothing"));
        QCOMPARE(boxes.first().style, 0);
    }

    void paletteHangsUnderItsButton()
    {
        Window t(session());
        t.w.move(20, 20);
        t.w.tlbGeneral_ButtonClick(QStringLiteral("Shape"));
        frmPastePicture *palette = t.w.PastePicture();
        QVERIFY(palette);
        QVERIFY(palette->isVisible());
        const QToolButton *button = t.w.tlbGeneral->Buttons(QStringLiteral("Shape"));
        QCOMPARE(palette->x(), t.w.tlbGeneral->mapToGlobal(QPoint(0, 0)).x() + button->x());
        QCOMPARE(palette->y(), t.w.tlbGeneral->mapToGlobal(QPoint(0, t.w.tlbGeneral->height())).y());
        palette->close();
    }

    void paletteNearTheRightScreenEdgeMeetsIt()
    {
        Window t(session());
        const int screenWidth = QGuiApplication::primaryScreen()->geometry().width();
        const QToolButton *button = t.w.tlbGeneral->Buttons(QStringLiteral("Shape"));
        t.w.move(screenWidth - button->x() - 20, 10);
        QTRY_VERIFY(t.w.tlbGeneral->mapToGlobal(QPoint(button->x(), 0)).x() > screenWidth - 30);
        t.w.ShowPaletteDropdown(QStringLiteral("Shape"));
        frmPastePicture *palette = t.w.PastePicture();
        QVERIFY(palette);
        QCOMPARE(palette->frameGeometry().right() + 1, screenWidth);
        palette->close();
    }

    void afterTextTheOutlinePaletteOpensAndItsColourBecomesTheTexts()
    {
        Window t(session());
        t.w.vFormBorderColor_NewColor(0x003333);
        chooseTool(t.w, QStringLiteral("Text"));
        QToolButton *button = t.w.tlbGeneral->Buttons(QStringLiteral("BorderColor"));
        QVERIFY(button->isEnabled());
        QTest::mouseClick(button, Qt::LeftButton);
        frmColors *palette = t.w.BorderColorPalette();
        QVERIFY(palette);
        QVERIFY(palette->isVisible());
        QCOMPARE(palette->Caption(), QStringLiteral("Περίγραμμα-Γραμματοσειρά"));
        QCOMPARE(palette->SelectedColor(), 0x003333u);
        QCOMPARE(palette->SelectedIndex(), 3);
        // The red of the third row's first cell.
        QTest::mousePress(palette, Qt::LeftButton, {}, QPoint(10, 50));
        QTest::mouseRelease(palette, Qt::LeftButton, {}, QPoint(10, 50));
        QVERIFY(!palette->isVisible());
        QCOMPARE(t.w.picPhoto->ForeColor, 0x0000FFu);
        QCOMPARE(t.w.picPhoto->Line1->BorderColor, 0x0000FFu);
        QCOMPARE(t.w.picPhoto->Shape1->BorderColor, 0x0000FFu);
    }

    void fillColourPaletteStartsAtTheFillColour()
    {
        Window t(session());
        t.w.vFormFillColor_NewColor(0xFFFFFF);
        chooseTool(t.w, QStringLiteral("FilledRectangle"));
        t.w.tlbGeneral_ButtonClick(QStringLiteral("FillColor"));
        frmColors *palette = t.w.FillColorPalette();
        QVERIFY(palette && palette->isVisible());
        QCOMPARE(palette->Caption(), QStringLiteral("Γέμισμα"));
        QCOMPARE(palette->SelectedIndex(), 40);
        // The maroon that opens the second row.
        QTest::mousePress(palette, Qt::LeftButton, {}, QPoint(10, 30));
        QCOMPARE(t.w.picPhoto->FillColor, 0x000080u);
        QCOMPARE(t.w.picPhoto->Shape1->FillColor, 0x000080u);
        QTest::mouseRelease(palette, Qt::LeftButton, {}, QPoint(10, 30));
    }

    void widthAndPatternPalettesStartAtTheCanvasValuesAndSetAllThree()
    {
        Window t(session());
        t.w.vFormBorderWidth_NewBorderWidth(3);
        t.w.vFormFillStyle_NewFillStyle(4);
        chooseTool(t.w, QStringLiteral("FilledEllipse"));
        t.w.tlbGeneral_ButtonClick(QStringLiteral("BorderWidth"));
        frmBorderWidth *widths = t.w.BorderWidthPalette();
        QVERIFY(widths && widths->isVisible());
        QCOMPARE(widths->SelectedIndex(), 3);
        // The fifth row: y from 69 to 85.
        QTest::mousePress(widths, Qt::LeftButton, {}, QPoint(30, 75));
        QTest::mouseRelease(widths, Qt::LeftButton, {}, QPoint(30, 75));
        QCOMPARE(t.w.picPhoto->DrawWidth, qint16(5));
        QCOMPARE(t.w.picPhoto->Line1->BorderWidth, qint16(5));
        QCOMPARE(t.w.picPhoto->Shape1->BorderWidth, qint16(5));

        t.w.tlbGeneral_ButtonClick(QStringLiteral("FillStyle"));
        frmFillStyle *styles = t.w.FillStylePalette();
        QVERIFY(styles && styles->isVisible());
        QCOMPARE(styles->SelectedFillStyle(), 4);
        // The seventh cell, the diagonal cross.
        QTest::mousePress(styles, Qt::LeftButton, {}, QPoint(20, 130));
        QTest::mouseRelease(styles, Qt::LeftButton, {}, QPoint(20, 130));
        QCOMPARE(t.w.picPhoto->FillStyle, qint16(7));
        QCOMPARE(t.w.picPhoto->Shape1->FillStyle, qint16(7));
    }

    void aNewPaletteObjectEachTimeItDropsDown()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("Pen"));
        t.w.ShowPaletteDropdown(QStringLiteral("BorderColor"));
        QPointer<frmColors> first = t.w.BorderColorPalette();
        t.w.ShowPaletteDropdown(QStringLiteral("BorderColor"));
        QVERIFY(t.w.BorderColorPalette() != first.data());
        QTRY_VERIFY(!first);
        t.w.BorderColorPalette()->Unload();
    }

    void colourPaletteNearTheRightScreenEdgeMeetsIt()
    {
        Window t(session());
        const int screenWidth = QGuiApplication::primaryScreen()->geometry().width();
        const QToolButton *button = t.w.tlbGeneral->Buttons(QStringLiteral("BorderColor"));
        t.w.move(screenWidth - button->x() - 30, 10);
        QTRY_VERIFY(t.w.tlbGeneral->mapToGlobal(QPoint(button->x(), 0)).x() > screenWidth - 40);
        t.w.ShowPaletteDropdown(QStringLiteral("BorderColor"));
        frmColors *palette = t.w.BorderColorPalette();
        QVERIFY(palette);
        QCOMPARE(palette->Left() + palette->Width(), platform::twipsFromPixelsX(screenWidth));
        palette->Unload();
    }

    void stampChoiceLeavesTheCanvasAndItsUndo()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("Pen"));
        stroke(t.w, {{1, 1}, {9, 9}});
        const QImage picture = t.w.picPhoto->Picture();
        const QImage undo = t.w.UndoPicture();
        t.w.ShowPaletteDropdown(QStringLiteral("Shape"));
        QPointer<frmPastePicture> palette = t.w.PastePicture();
        palette->Form_MouseDown(1, 0, tw(12), tw(40));
        palette->Form_MouseUp(1, 0, tw(12), tw(40));
        QTRY_VERIFY(!palette);
        QCOMPARE(t.w.picPhoto->Picture().cacheKey(), picture.cacheKey());
        QCOMPARE(t.w.UndoPicture().cacheKey(), undo.cacheKey());
    }

    void everyWindowChecksTheMenuAndAnyClosingUnchecksIt()
    {
        DrawingShell shell(session());
        auto *shellWindow = new frmDrawing(session());
        auto *tileA = new frmDrawing(session());
        auto *tileB = new frmDrawing(session());
        for (frmDrawing *w : {shellWindow, tileA, tileB}) {
            w->setAttribute(Qt::WA_DeleteOnClose);
            w->Load();
            w->show();
        }
        QVERIFY(shell.mnuDraw->isChecked());
        QSignalSpy unloaded(tileA, &SourceViewer::OnUnload);
        tileA->close();
        QCOMPARE(unloaded.size(), 1);
        QVERIFY(!shell.mnuDraw->isChecked());
        shellWindow->close();
        tileB->close();
        QVERIFY(!shell.mnuDraw->isChecked());
    }

    void dropOfABitmapTakesItAndTextIsRefused()
    {
        Window t(session());
        QMimeData text;
        text.setText(QStringLiteral("λέξη"));
        bool accept = true;
        t.w.picPhoto_OLEDragOver(&text, accept);
        QVERIFY(!accept);
        QMimeData bitmap;
        const QImage picture = solidPicture(QSize(30, 20), Qt::magenta);
        bitmap.setImageData(picture);
        accept = false;
        t.w.picPhoto_OLEDragOver(&bitmap, accept);
        QVERIFY(accept);
        t.w.picPhoto_OLEDragDrop(&bitmap);
        QCOMPARE(t.w.picPhoto->Picture(), picture);
        QCOMPARE(t.w.picPhoto->size(), QSize(30, 20));
        QVERIFY(t.w.InitialPicture().isNull());
        QVERIFY(t.w.PictureFileName().isEmpty());
    }

private:
    AnsweringBoxes boxes;
};

QTEST_MAIN(tst_frmDrawing)
#include "tst_frmdrawing.moc"
