#include "facepictures.h"

#include <hotbtn.h>

#include <QBitmap>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

class tst_HotBtn : public QObject
{
    Q_OBJECT

    const QColor Face {200, 40, 40};
    const QColor Down {40, 40, 200};
    const QColor Hover {40, 160, 40};

    void dress(HotBtn &btn)
    {
        btn.setPicture(solidFace(Face));
        btn.setDownPicture(solidFace(Down));
        btn.setUpPicture(solidFace(Hover));
    }

    static void hoverTo(HotBtn &btn, QPointF at)
    {
        sendMouse(btn, QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton);
    }

private slots:
    void hoverShowsTheUpPicture()
    {
        HotBtn btn;
        dress(btn);
        hoverTo(btn, QPointF(10, 10));
        QCOMPARE(btn.currentFace(), Btn::Face::Hover);
        QCOMPARE(shownColour(btn), Hover);
    }

    void aPointExactlyAtWidthCountsAsInside()
    {
        HotBtn btn;
        dress(btn);
        QSignalSpy move(&btn, &Btn::MouseMove);
        hoverTo(btn, QPointF(btn.width(), 10));
        QCOMPARE(move.count(), 1);
        QCOMPARE(move[0][2].toDouble(), double(btn.Width()));
        QCOMPARE(btn.currentFace(), Btn::Face::Hover);
        hoverTo(btn, QPointF(10, btn.height()));
        QCOMPARE(btn.currentFace(), Btn::Face::Hover);
    }

    void aPointPastTheEdgeRestoresTheFace()
    {
        HotBtn btn;
        dress(btn);
        QSignalSpy move(&btn, &Btn::MouseMove);
        hoverTo(btn, QPointF(10, 10));
        hoverTo(btn, QPointF(btn.width() + 1, 10));
        QCOMPARE(btn.currentFace(), Btn::Face::Normal);
        QCOMPARE(shownColour(btn), Face);
        hoverTo(btn, QPointF(10, 10));
        hoverTo(btn, QPointF(-1, 10));
        QCOMPARE(btn.currentFace(), Btn::Face::Normal);
        QCOMPARE(move.count(), 4);
    }

    void leavingWhileAButtonIsHeldKeepsThePressedFace()
    {
        HotBtn btn;
        dress(btn);
        QSignalSpy move(&btn, &Btn::MouseMove);
        QSignalSpy up(&btn, &Btn::MouseUp);
        QTest::mousePress(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(shownColour(btn), Down);
        sendMouse(btn, QEvent::MouseMove, QPointF(200, 200), Qt::NoButton, Qt::LeftButton);
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&btn, &leave);
        QCOMPARE(shownColour(btn), Down);
        // Moves with a button held are not reported.
        QCOMPARE(move.count(), 0);
        sendMouse(btn, QEvent::MouseButtonRelease, QPointF(200, 200), Qt::LeftButton, Qt::NoButton);
        QCOMPARE(up.count(), 1);
        QCOMPARE(shownColour(btn), Face);
        hoverTo(btn, QPointF(200, 200));
        QCOMPARE(shownColour(btn), Face);
        QCOMPARE(move.count(), 1);
    }

    void aReleaseOverTheButtonShowsTheFaceUntilTheNextMove()
    {
        HotBtn btn;
        dress(btn);
        QSignalSpy down(&btn, &Btn::MouseDown);
        QSignalSpy up(&btn, &Btn::MouseUp);
        hoverTo(btn, QPointF(10, 10));
        QTest::mousePress(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(down.count(), 1);
        QCOMPARE(shownColour(btn), Down);
        QTest::mouseRelease(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(up.count(), 1);
        QCOMPARE(btn.currentFace(), Btn::Face::Normal);
        QCOMPARE(shownColour(btn), Face);
        // The button still follows the pointer: the next move over it brings the hover back.
        hoverTo(btn, QPointF(12, 10));
        QCOMPARE(shownColour(btn), Hover);
    }

    void theWindowSystemsLeaveRestoresTheFace()
    {
        HotBtn btn;
        dress(btn);
        hoverTo(btn, QPointF(10, 10));
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&btn, &leave);
        QCOMPARE(shownColour(btn), Face);
    }

    void hoverFaceIsTakenOnce()
    {
        HotBtn btn;
        dress(btn);
        hoverTo(btn, QPointF(10, 10));
        btn.setUpPicture(solidFace(Qt::yellow));
        hoverTo(btn, QPointF(-5, 10));
        hoverTo(btn, QPointF(10, 10));
        QCOMPARE(shownColour(btn), Hover);
    }

    void withoutUpPictureHoverKeepsTheFace()
    {
        HotBtn btn;
        btn.setPicture(solidFace(Face));
        hoverTo(btn, QPointF(10, 10));
        QCOMPARE(shownColour(btn), Face);
    }

    void maskPictureCutsTheShape()
    {
        HotBtn btn;
        dress(btn);
        QCOMPARE(btn.MaskColor(), HotBtn::ButtonFaceColor);
        // Left half in the mask colour (magenta, 0x00FF00FF), right half kept.
        QPixmap mask(40, 30);
        mask.fill(Qt::black);
        {
            QPainter p(&mask);
            p.fillRect(0, 0, 20, 30, QColor(255, 0, 255));
        }
        btn.setMaskColor(0x00FF00FF);
        btn.setMaskPicture(mask);
        const QRegion shape = btn.mask();
        QVERIFY(!shape.contains(QPoint(5, 5)));
        QVERIFY(shape.contains(QPoint(30, 5)));
        btn.setMaskPicture(QPixmap());
        QVERIFY(btn.mask().isEmpty());
    }

    void colourValuesAreBlueGreenRed()
    {
        QCOMPARE(HotBtn::colorFromValue(0x000000FF), QColor(255, 0, 0));
        QCOMPARE(HotBtn::colorFromValue(0x00FF0000), QColor(0, 0, 255));
        QCOMPARE(
            HotBtn::colorFromValue(HotBtn::ButtonFaceColor), QApplication::palette().color(QPalette::Button));
    }
};

QTEST_MAIN(tst_HotBtn)
#include "tst_hotbtn.moc"
