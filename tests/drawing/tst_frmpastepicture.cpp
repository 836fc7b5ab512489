// The stamp palette: its four cells, the raised and sunken edges, capture and closing.
#include <frmpastepicture.h>
#include <twips.h>

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace {

double tw(int pixels)
{
    return platform::twipsFromPixelsX(pixels);
}

const QRgb Highlight = qRgb(255, 255, 255);
const QRgb Shadow = qRgb(128, 128, 128);

// The top left pixel of a cell's frame: shadow when sunken, highlight when raised.
QRgb cornerOf(frmPastePicture &palette, int index)
{
    const QImage shot = palette.grab().toImage();
    return shot.pixel(palette.Stamp(index).rect.topLeft());
}

} // namespace

class tst_frmPastePicture : public QObject
{
    Q_OBJECT

private slots:
    void loadsFourStampsWithTheFirstSelected()
    {
        frmPastePicture palette;
        QCOMPARE(palette.SelectedStamp(), qint16(1));
        QCOMPARE(palette.HotStamp(), qint16(0));
        QVERIFY(!palette.StampPressed());
        QCOMPARE(palette.Stamp(1).rect, QRect(QPoint(8, 3), QPoint(29, 26)));
        QCOMPARE(palette.Stamp(4).rect, QRect(QPoint(8, 93), QPoint(29, 116)));
        for (int i = 1; i <= 4; ++i)
            QVERIFY(!palette.Stamp(i).picture.isNull());
        palette.show();
        QCOMPARE(cornerOf(palette, 1), Shadow);
    }

    void pressBetweenTwoStampsReportsTheOneSelectedBefore()
    {
        frmPastePicture palette;
        // The stamp of the canvas is the third, not the first that the palette starts on.
        palette.setSelectedBitmap(palette.Stamp(3).picture);
        QCOMPARE(palette.SelectedStamp(), qint16(3));
        palette.show();
        QSignalSpy chosen(&palette, &frmPastePicture::NewBitmap);
        // Between the first and the second stamp.
        palette.Form_MouseDown(1, 0, tw(15), tw(29));
        QCOMPARE(chosen.size(), 1);
        QCOMPARE(chosen.first().first().value<QImage>().cacheKey(), palette.Stamp(3).picture.cacheKey());
        QCOMPARE(palette.SelectedStamp(), qint16(3));
    }

    void pressOnAStampSelectsAndReportsItAndTheReleaseCloses()
    {
        auto *palette = new frmPastePicture;
        QPointer<frmPastePicture> guard(palette);
        palette->show();
        QSignalSpy chosen(palette, &frmPastePicture::NewBitmap);
        palette->Form_MouseDown(1, 0, tw(12), tw(70));
        QCOMPARE(palette->SelectedStamp(), qint16(3));
        QCOMPARE(chosen.first().first().value<QImage>().cacheKey(), palette->Stamp(3).picture.cacheKey());
        // After the press the pointer no longer raises anything.
        palette->Form_MouseMove(0, 0, tw(12), tw(10));
        QCOMPARE(palette->HotStamp(), qint16(0));
        palette->Form_MouseUp(1, 0, tw(12), tw(70));
        QTRY_VERIFY(!guard);
    }

    void movingFromStampToStampMovesTheRaisedEdge()
    {
        frmPastePicture palette;
        palette.show();
        QVERIFY(QTest::qWaitForWindowExposed(&palette));
        palette.Form_MouseMove(0, 0, tw(12), tw(40));
        QCOMPARE(palette.HotStamp(), qint16(2));
        QCOMPARE(cornerOf(palette, 2), Highlight);
        palette.Form_MouseMove(0, 0, tw(12), tw(70));
        QCOMPARE(palette.HotStamp(), qint16(3));
        QCOMPARE(cornerOf(palette, 3), Highlight);
        QVERIFY(cornerOf(palette, 2) != Highlight);
        // The selected stamp keeps its sunken edge throughout, also under the pointer.
        QCOMPARE(cornerOf(palette, 1), Shadow);
        palette.Form_MouseMove(0, 0, tw(12), tw(10));
        QCOMPARE(palette.HotStamp(), qint16(1));
        QCOMPARE(cornerOf(palette, 1), Shadow);
    }

    void leavingTheWindowEndsTheCaptureAndClearsTheHotStamp()
    {
        frmPastePicture palette;
        palette.show();
        QVERIFY(QTest::qWaitForWindowExposed(&palette));
        palette.Form_MouseMove(0, 0, tw(12), tw(40));
        QCOMPARE(QWidget::mouseGrabber(), &palette);
        palette.Form_MouseMove(0, 0, tw(-2), tw(40));
        QCOMPARE(palette.HotStamp(), qint16(0));
        QVERIFY(QWidget::mouseGrabber() != &palette);
        QVERIFY(cornerOf(palette, 2) != Highlight);
    }

    void anotherWindowBecomingActiveClosesItWithoutAChoice()
    {
        QWidget other;
        other.show();
        auto *palette = new frmPastePicture;
        QPointer<frmPastePicture> guard(palette);
        QSignalSpy chosen(palette, &frmPastePicture::NewBitmap);
        palette->show();
        palette->activateWindow();
        QTRY_VERIFY(palette->isActiveWindow());
        other.activateWindow();
        QTRY_VERIFY(!guard);
        QCOMPARE(chosen.size(), 0);
    }

    void selectedBitmapFindsTheStampOfThatPictureOnly()
    {
        frmPastePicture palette;
        palette.setSelectedBitmap(palette.Stamp(4).picture);
        QCOMPARE(palette.SelectedStamp(), qint16(4));
        palette.setSelectedBitmap(QImage(22, 24, QImage::Format_RGB32));
        QCOMPARE(palette.SelectedStamp(), qint16(4));
    }
};

QTEST_MAIN(tst_frmPastePicture)
#include "tst_frmpastepicture.moc"
