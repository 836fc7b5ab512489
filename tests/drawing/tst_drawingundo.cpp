// One level of undo as an exchange of two pictures, and the starting picture.
#include "drawingtesting.h"

#include <QSignalSpy>

using namespace testing;

namespace {

struct Window
{
    frmDrawing w;
    explicit Window(Session &session)
        : w(session)
    {
        w.Load();
        w.show();
    }
    void click(const QString &key) { w.tlbGeneral_ButtonClick(key); }
};

} // namespace

class tst_DrawingUndo : public QObject, public DrawingFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        beginSession();
        boxes.install(host());
    }
    void cleanup() { endSession(); }

    void undoOnAFreshWindowEmptiesAndASecondBringsThePictureBack()
    {
        Window t(session());
        const QImage map = solidPicture(QSize(60, 40), Qt::yellow);
        t.w.picPhoto->setPicture(map);
        t.click(QStringLiteral("Undo"));
        QVERIFY(!t.w.picPhoto->hasPicture());
        QCOMPARE(t.w.UndoPicture().cacheKey(), map.cacheKey());
        t.click(QStringLiteral("Undo"));
        QCOMPARE(t.w.picPhoto->Picture().cacheKey(), map.cacheKey());
        QVERIFY(t.w.UndoPicture().isNull());
    }

    void twoStrokesThenThreeUndosAlternate()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("Pen"));
        stroke(t.w, {{5, 5}, {20, 5}});
        const QImage afterFirst = t.w.picPhoto->Picture();
        stroke(t.w, {{5, 15}, {20, 15}});
        const QImage afterSecond = t.w.picPhoto->Picture();
        QVERIFY(afterFirst != afterSecond);
        // The first picture was not touched by the second stroke.
        QCOMPARE(afterFirst.pixel(10, 15), qRgb(255, 255, 255));

        t.click(QStringLiteral("Undo"));
        QCOMPARE(t.w.picPhoto->Picture(), afterFirst);
        t.click(QStringLiteral("Undo"));
        QCOMPARE(t.w.picPhoto->Picture(), afterSecond);
        t.click(QStringLiteral("Undo"));
        QCOMPARE(t.w.picPhoto->Picture(), afterFirst);
    }

    void undoExchangesPicturesWithoutCopying()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("Pen"));
        stroke(t.w, {{5, 5}, {20, 5}});
        const qint64 committed = t.w.picPhoto->Picture().cacheKey();
        const qint64 undo = t.w.UndoPicture().cacheKey();
        t.click(QStringLiteral("Undo"));
        QCOMPARE(t.w.picPhoto->Picture().cacheKey(), undo);
        QCOMPARE(t.w.UndoPicture().cacheKey(), committed);
    }

    void arrowClickThenUndoKeepsWhatIsOnScreen()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("Pen"));
        stroke(t.w, {{5, 5}, {20, 5}});
        const QImage drawn = t.w.picPhoto->Picture();
        chooseTool(t.w, QStringLiteral("Arrow"));
        stroke(t.w, {{30, 30}});
        QCOMPARE(t.w.UndoPicture(), drawn);
        t.click(QStringLiteral("Undo"));
        QCOMPARE(t.w.picPhoto->Picture(), drawn);
    }

    void pictureOnATilesDrawingWithoutOpenEmptiesTheCanvas()
    {
        Window t(session());
        const QImage map = solidPicture(QSize(80, 60), Qt::cyan);
        t.w.picPhoto->setPicture(map);
        t.w.SetScrollBars();
        t.click(QStringLiteral("Picture"));
        QVERIFY(!t.w.picPhoto->hasPicture());
        // The last press stored nothing, so undo does not bring the map back.
        t.click(QStringLiteral("Undo"));
        QVERIFY(t.w.picPhoto->Picture() != map);
    }

    void pictureAfterAPressOnTheMapCanBeUndone()
    {
        Window t(session());
        const QImage map = solidPicture(QSize(80, 60), Qt::cyan);
        t.w.picPhoto->setPicture(map);
        stroke(t.w, {{3, 3}});
        t.click(QStringLiteral("Picture"));
        QVERIFY(!t.w.picPhoto->hasPicture());
        t.click(QStringLiteral("Undo"));
        QCOMPARE(t.w.picPhoto->Picture(), map);
    }

    void newLeavesTheUndoPicture()
    {
        Window t(session());
        chooseTool(t.w, QStringLiteral("Pen"));
        stroke(t.w, {{5, 5}, {20, 5}});
        const QImage before = t.w.UndoPicture();
        boxes.answers = {platform::vbNo};
        t.click(QStringLiteral("New"));
        QVERIFY(!t.w.picPhoto->hasPicture());
        QCOMPARE(t.w.UndoPicture().cacheKey(), before.cacheKey());
        QVERIFY(t.w.InitialPicture().isNull());
    }

private:
    AnsweringBoxes boxes;
};

QTEST_MAIN(tst_DrawingUndo)
#include "tst_drawingundo.moc"
