#include <programbitmaps.h>
#include <tlb.h>

#include <QSignalSpy>
#include <QTest>

namespace {

QRgb pixelAt(QWidget &widget, int x, int y)
{
    return widget.grab().toImage().pixel(x, y);
}

const QRgb BarColour = qRgb(127, 0, 0);

} // namespace

class tst_Tlb : public QObject
{
    Q_OBJECT

private slots:
    void elevenButtonsKnownByTheirKeys()
    {
        Tlb bar;
        const QStringList keys = {QStringLiteral("exit"), QStringLiteral("first"), QStringLiteral("prev"),
            QStringLiteral("Ploigisi"), QStringLiteral("Network"), QStringLiteral("e-mail"),
            QStringLiteral("Sound"), QStringLiteral("Search"), QStringLiteral("Notes"),
            QStringLiteral("drawing"), QStringLiteral("SearchResources")};
        QCOMPARE(Tlb::keys(), keys);
        for (int i = 0; i < Tlb::ButtonCount; ++i) {
            QCOMPARE(bar.Btn1[size_t(i)]->Tag(), keys[i]);
            QVERIFY(!bar.Btn1[size_t(i)]->Picture().isNull());
            QVERIFY(!bar.Btn1[size_t(i)]->DownPicture().isNull());
            QVERIFY(!bar.Btn1[size_t(i)]->toolTip().isEmpty());
        }
        QCOMPARE(bar.Btn1[0]->toolTip(), QStringLiteral("Έξοδος"));
        QCOMPARE(bar.Btn1[7]->toolTip(), QStringLiteral("Ευρετήριο"));
        QCOMPARE(bar.Btn1[10]->toolTip(), QStringLiteral("Αναζήτηση στη βάση δεδομένων"));
    }

    void buttonsAreLaidOutInTwips()
    {
        Tlb bar;
        bar.resize(800, 50);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        // 40 pixel buttons are 600 twips; gaps of 60, and half a button (300) after the
        // third, fourth, sixth, seventh and tenth.
        const int lefts[] = {120, 780, 1440, 2400, 3360, 4020, 4980, 5940, 6600, 7260};
        QCOMPARE(bar.Btn1[0]->Width(), 600);
        for (int i = 0; i < 10; ++i) {
            QCOMPARE(bar.Btn1[size_t(i)]->Left(), lefts[i]);
            QCOMPARE(bar.Btn1[size_t(i)]->Top(), 60);
        }
    }

    void theSearchButtonKeepsItsDesignPlace()
    {
        Tlb bar;
        const QPoint place = bar.Btn1[10]->pos();
        bar.resize(300, 50);
        bar.repaint();
        bar.resize(900, 50);
        bar.repaint();
        QCOMPARE(bar.Btn1[10]->pos(), place);
        QCOMPARE(bar.Btn1[10]->Top(), 60);
        QVERIFY(bar.Btn1[10]->Left() > bar.Btn1[9]->Left() + bar.Btn1[9]->Width());
    }

    void heightFollowsTheButtonsWhateverTheContainerAsks()
    {
        Tlb bar;
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        const int expected = (bar.Btn1[0]->Height() + 90) / 15;
        bar.resize(800, 10);
        QCOMPARE(bar.height(), expected);
        bar.resize(800, 200);
        QCOMPARE(bar.height(), expected);
        QCOMPARE(bar.Height(), bar.Btn1[0]->Height() + 90);

        // A larger first button makes the bar taller at the next paint.
        QPixmap bigger(40, 60);
        bigger.fill(Qt::white);
        bar.Btn1[0]->setPicture(bigger);
        bar.repaint();
        QCOMPARE(bar.height(), (60 * 15 + 90) / 15);
    }

    void theBarIsDarkRedWithAnEtchedEdge()
    {
        Tlb bar;
        bar.resize(800, 50);
        const QRgb dark = bar.palette().color(QPalette::Dark).rgb();
        const QRgb light = bar.palette().color(QPalette::Light).rgb();
        QCOMPARE(pixelAt(bar, 4, 20), BarColour);
        // Left side at x 1 and 2, top at y 0 and 1: shadow outside, light inside.
        QCOMPARE(pixelAt(bar, 1, 20), dark);
        QCOMPARE(pixelAt(bar, 2, 20), light);
        QCOMPARE(pixelAt(bar, 100, 0), dark);
        QCOMPARE(pixelAt(bar, 100, 1), light);
        QCOMPARE(pixelAt(bar, 0, 20), BarColour);
        // The buttons fit, so the right side is drawn: light outside, shadow inside.
        QCOMPARE(pixelAt(bar, 799, 20), light);
        QCOMPARE(pixelAt(bar, 798, 20), dark);
    }

    void aNarrowBarClipsItsButtonsAndHasNoRightEdge()
    {
        Tlb bar;
        bar.resize(300, 50);
        const QImage image = bar.grab().toImage();
        QCOMPARE(image.width(), 300);
        QVERIFY(bar.Btn1[9]->geometry().right() >= bar.width());
        const int bottom = image.height() - 1;
        QCOMPARE(image.pixel(299, bottom), BarColour);
        QCOMPARE(image.pixel(298, bottom), BarColour);
    }

    void aBarJustTooNarrowForTheLastButtonHasNoRightEdge()
    {
        Tlb bar;
        const int end = bar.Btn1[9]->Left() + bar.Btn1[9]->Width();
        bar.resize(end / 15, 50);
        QCOMPARE(bar.Width(), end);
        const QImage image = bar.grab().toImage();
        QCOMPARE(image.pixel(image.width() - 1, image.height() - 1), BarColour);
        bar.resize(end / 15 + 1, 50);
        const QImage wider = bar.grab().toImage();
        QCOMPARE(
            wider.pixel(wider.width() - 1, wider.height() - 1), bar.palette().color(QPalette::Light).rgb());
    }

    void aClickReportsTheButtonsKey()
    {
        Tlb bar;
        bar.resize(800, 50);
        QSignalSpy clicks(&bar, &Tlb::ButtonClick);
        QTest::mouseClick(bar.Btn1[7], Qt::LeftButton, {}, QPoint(10, 10));
        QTest::mouseClick(bar.Btn1[5], Qt::LeftButton, {}, QPoint(10, 10));
        QTest::mouseClick(bar.Btn1[10], Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(clicks.count(), 3);
        QCOMPARE(clicks[0][0].toString(), QStringLiteral("Search"));
        QCOMPARE(clicks[1][0].toString(), QStringLiteral("e-mail"));
        QCOMPARE(clicks[2][0].toString(), QStringLiteral("SearchResources"));
    }

    void aPressDraggedOffReportsNothing()
    {
        Tlb bar;
        QSignalSpy clicks(&bar, &Tlb::ButtonClick);
        QTest::mousePress(bar.Btn1[2], Qt::LeftButton, {}, QPoint(10, 10));
        QTest::mouseRelease(bar.Btn1[2], Qt::LeftButton, {}, QPoint(-30, 10));
        QCOMPARE(clicks.count(), 0);
    }

    void searchVisibleShowsOrHidesTheLastButton()
    {
        Tlb bar;
        bar.show();
        QVERIFY(bar.Btn1[10]->isVisible());
        bar.setSearchVisible(false);
        QVERIFY(!bar.Btn1[10]->isVisible());
        QVERIFY(bar.Btn1[9]->isVisible());
        bar.setSearchVisible(true);
        QVERIFY(bar.Btn1[10]->isVisible());
    }
};

QTEST_MAIN(tst_Tlb)
#include "tst_tlb.moc"
