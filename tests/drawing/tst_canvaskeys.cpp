// A map bigger than the drawing window scrolls by keys while the canvas has the focus.
#include "drawingtesting.h"

#include <canvaskeys.h>

#include <QScrollBar>
#include <QToolButton>

using namespace testing;

namespace {

struct MapWindow
{
    frmDrawing w;
    explicit MapWindow(Session &session, QSize map = QSize(2400, 1800))
        : w(session)
    {
        w.Load();
        QImage picture(map, QImage::Format_RGB32);
        picture.fill(Qt::white);
        w.picPhoto->setPicture(picture);
        w.SetScrollBars();
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        w.picContainer->setFocus();
        QTRY_VERIFY(w.picContainer->hasFocus());
    }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(w.picContainer, Qt::Key(key), modifiers);
    }

    // Where the picture's top left corner lies in the canvas, in pixels.
    QPoint at() const { return w.picPhoto->pos(); }
};

const int Step = CanvasScrollKeys::StepPixels;

} // namespace

class tst_CanvasKeys : public QObject, public DrawingFixture
{
    Q_OBJECT

    AnsweringBoxes boxes;

private slots:
    void init()
    {
        beginSession();
        boxes.install(host());
    }
    void cleanup() { endSession(); }

    void arrowsScrollAStepEachWay()
    {
        MapWindow t(session());
        QVERIFY(t.w.HS->isVisible());
        QVERIFY(t.w.VS->isVisible());
        QCOMPARE(t.at(), QPoint(0, 0));
        t.press(Qt::Key_Right);
        QCOMPARE(t.at(), QPoint(-Step, 0));
        t.press(Qt::Key_Down);
        t.press(Qt::Key_Down);
        QCOMPARE(t.at(), QPoint(-Step, -2 * Step));
        t.press(Qt::Key_Up);
        QCOMPARE(t.at(), QPoint(-Step, -Step));
        t.press(Qt::Key_Left);
        t.press(Qt::Key_Left);
        QCOMPARE(t.at(), QPoint(0, -Step));
        // The bars show where the picture stands.
        QCOMPARE(t.w.HS->value(), 0);
        QCOMPARE(t.w.VS->value(), platform::twipsFromPixelsY(Step));
    }

    void pageKeysScrollWhatTheWindowShowsAndShiftScrollsAcross()
    {
        MapWindow t(session());
        const int pageDown = t.w.picContainer->height() - Step;
        const int pageAcross = t.w.picContainer->width() - Step;
        t.press(Qt::Key_PageDown);
        QCOMPARE(t.at(), QPoint(0, -pageDown));
        t.press(Qt::Key_PageDown, Qt::ShiftModifier);
        QCOMPARE(t.at(), QPoint(-pageAcross, -pageDown));
        t.press(Qt::Key_PageUp);
        QCOMPARE(t.at(), QPoint(-pageAcross, 0));
        t.press(Qt::Key_PageUp, Qt::ShiftModifier);
        QCOMPARE(t.at(), QPoint(0, 0));
    }

    void homeAndEndGoToTheEdgesAndWithCtrlToTheCorners()
    {
        MapWindow t(session());
        const int farRight = -platform::pixelsFromTwipsX(t.w.HS->maximum());
        const int farDown = -platform::pixelsFromTwipsY(t.w.VS->maximum());
        QVERIFY(farRight < -1000);
        QVERIFY(farDown < -1000);
        t.press(Qt::Key_Down);
        t.press(Qt::Key_End);
        QCOMPARE(t.at(), QPoint(farRight, -Step));
        t.press(Qt::Key_Home);
        QCOMPARE(t.at(), QPoint(0, -Step));
        t.press(Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(t.at(), QPoint(farRight, farDown));
        // The far corner of the map is in sight.
        const QPoint corner = t.w.picPhoto->mapTo(t.w.picContainer, QPoint(2399, 1799));
        QVERIFY2(t.w.picContainer->rect().contains(corner),
            qPrintable(QStringLiteral("%1,%2").arg(corner.x()).arg(corner.y())));
        // Further keys stop at the edge.
        t.press(Qt::Key_PageDown);
        t.press(Qt::Key_Right);
        QCOMPARE(t.at(), QPoint(farRight, farDown));
        t.press(Qt::Key_Home, Qt::ControlModifier);
        QCOMPARE(t.at(), QPoint(0, 0));
        t.press(Qt::Key_Up);
        QCOMPARE(t.at(), QPoint(0, 0));
    }

    void aMapThatFitsAcrossOnlyScrollsDown()
    {
        MapWindow t(session(), QSize(100, 2000));
        QVERIFY(!t.w.HS->isVisible());
        t.press(Qt::Key_Right);
        t.press(Qt::Key_End);
        QCOMPARE(t.at().x(), 0);
        t.press(Qt::Key_Down);
        QCOMPARE(t.at(), QPoint(0, -Step));
    }

    void keysElsewhereInTheWindowDoNotScroll()
    {
        MapWindow t(session());
        QToolButton *pen = t.w.tlbTools->Buttons(QStringLiteral("Pen"));
        QVERIFY(pen);
        pen->setFocus();
        QTest::keyClick(pen, Qt::Key_PageDown);
        QTest::keyClick(pen, Qt::Key_End);
        QCOMPARE(t.at(), QPoint(0, 0));
    }
};

QTEST_MAIN(tst_CanvasKeys)
#include "tst_canvaskeys.moc"
