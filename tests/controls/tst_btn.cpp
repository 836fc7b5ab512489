#include "../support/recordinghost.h"
#include "facepictures.h"

#include <btn.h>
#include <runtimeerror.h>

#include <QSignalSpy>
#include <QTest>

#include <optional>

class tst_Btn : public QObject
{
    Q_OBJECT

    const QColor Face {200, 40, 40};
    const QColor Down {40, 40, 200};

    // Answers the error boxes while a test function runs.
    testing::RecordingHost m_host;
    std::optional<platform::HostScope> m_hostScope;

    void dress(Btn &btn)
    {
        btn.setPicture(solidFace(Face));
        btn.setDownPicture(solidFace(Down));
    }

private slots:
    void init()
    {
        m_host.boxes.clear();
        m_hostScope.emplace(m_host);
    }
    void cleanup() { m_hostScope.reset(); }

    void sizesItselfToThePicture()
    {
        Btn btn;
        btn.setPicture(solidFace(Face, QSize(64, 48)));
        QCOMPARE(btn.size(), QSize(64, 48));
        QCOMPARE(btn.Width(), 64 * 15);
        QCOMPARE(btn.Height(), 48 * 15);
    }

    void sizesToTheLogicalSizeOfAHiDpiPicture()
    {
        Btn btn;
        QPixmap pix = solidFace(Face, QSize(80, 80));
        pix.setDevicePixelRatio(2.0);
        btn.setPicture(pix);
        QCOMPARE(btn.size(), QSize(40, 40));
    }

    void anEmptyPictureLeavesTheSize()
    {
        Btn btn;
        btn.resize(33, 22);
        btn.setPicture(QPixmap());
        QCOMPARE(btn.size(), QSize(33, 22));
    }

    void pressedFaceShowsWhileTheButtonIsHeld()
    {
        Btn btn;
        dress(btn);
        QCOMPARE(shownColour(btn), Face);
        QTest::mousePress(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(shownColour(btn), Down);
        QTest::mouseRelease(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(shownColour(btn), Face);
    }

    void pressedFaceStaysWhenDraggedOff()
    {
        Btn btn;
        dress(btn);
        QTest::mousePress(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        sendMouse(btn, QEvent::MouseMove, QPointF(300, -50), Qt::NoButton, Qt::LeftButton);
        QCOMPARE(shownColour(btn), Down);
        QCOMPARE(btn.currentFace(), Btn::Face::Pressed);
    }

    void releaseOffTheButtonGivesMouseUpButNoClick()
    {
        Btn btn;
        dress(btn);
        QSignalSpy up(&btn, &Btn::MouseUp);
        QSignalSpy click(&btn, &Btn::Click);
        QTest::mousePress(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        sendMouse(btn, QEvent::MouseMove, QPointF(300, 10), Qt::NoButton, Qt::LeftButton);
        sendMouse(btn, QEvent::MouseButtonRelease, QPointF(300, 10), Qt::LeftButton, Qt::NoButton);
        QCOMPARE(up.count(), 1);
        QCOMPARE(click.count(), 0);
        QCOMPARE(shownColour(btn), Face);
    }

    void releaseOnTheButtonClicksAfterMouseUp()
    {
        Btn btn;
        dress(btn);
        QStringList order;
        connect(&btn, &Btn::MouseDown, this, [&] { order << QStringLiteral("down"); });
        connect(&btn, &Btn::MouseUp, this, [&] { order << QStringLiteral("up"); });
        connect(&btn, &Btn::Click, this, [&] { order << QStringLiteral("click"); });
        QTest::mouseClick(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(
            order, (QStringList {QStringLiteral("down"), QStringLiteral("up"), QStringLiteral("click")}));
    }

    void withoutDownPictureTheFaceStaysAndComesBack()
    {
        Btn btn;
        btn.setPicture(solidFace(Face));
        QTest::mousePress(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(shownColour(btn), Face);
        QTest::mouseRelease(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(shownColour(btn), Face);
        QCOMPARE(btn.currentFace(), Btn::Face::Normal);
    }

    void downPictureChangedAfterTheFirstPressIsNotShown()
    {
        Btn btn;
        dress(btn);
        QTest::mouseClick(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        btn.setDownPicture(solidFace(Qt::green));
        QCOMPARE(btn.DownPicture().toImage().pixelColor(1, 1), QColor(Qt::green));
        QTest::mousePress(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(shownColour(btn), Down);
        QTest::mouseRelease(&btn, Qt::LeftButton, {}, QPoint(10, 10));
    }

    void downPictureSetBeforeTheFirstPressIsShown()
    {
        Btn btn;
        btn.setPicture(solidFace(Face));
        btn.setDownPicture(solidFace(Qt::green));
        btn.setDownPicture(solidFace(Down));
        QTest::mousePress(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(shownColour(btn), Down);
        QTest::mouseRelease(&btn, Qt::LeftButton, {}, QPoint(10, 10));
    }

    void mouseEventsCarryButtonShiftAndTwips()
    {
        Btn btn;
        dress(btn);
        QSignalSpy down(&btn, &Btn::MouseDown);
        QSignalSpy move(&btn, &Btn::MouseMove);
        QSignalSpy up(&btn, &Btn::MouseUp);
        QTest::mousePress(&btn, Qt::LeftButton, Qt::ShiftModifier, QPoint(10, 5));
        sendMouse(btn, QEvent::MouseMove, QPointF(12, 6), Qt::NoButton, Qt::LeftButton, Qt::ControlModifier);
        QTest::mouseRelease(&btn, Qt::LeftButton, Qt::AltModifier, QPoint(2, 3));
        QCOMPARE(down.count(), 1);
        QCOMPARE(down[0][0].toInt(), 1);
        QCOMPARE(down[0][1].toInt(), 1);
        QCOMPARE(down[0][2].toDouble(), 150.0);
        QCOMPARE(down[0][3].toDouble(), 75.0);
        QCOMPARE(move.count(), 1);
        QCOMPARE(move[0][0].toInt(), 1);
        QCOMPARE(move[0][1].toInt(), 2);
        QCOMPARE(move[0][2].toDouble(), 180.0);
        QCOMPARE(up[0][1].toInt(), 4);
        QCOMPARE(up[0][2].toDouble(), 30.0);
        QCOMPARE(up[0][3].toDouble(), 45.0);
    }

    void rightButtonPressesButDoesNotClick()
    {
        Btn btn;
        dress(btn);
        QSignalSpy down(&btn, &Btn::MouseDown);
        QSignalSpy click(&btn, &Btn::Click);
        QTest::mousePress(&btn, Qt::RightButton, {}, QPoint(10, 10));
        QCOMPARE(shownColour(btn), Down);
        QTest::mouseRelease(&btn, Qt::RightButton, {}, QPoint(10, 10));
        QCOMPARE(down[0][0].toInt(), 2);
        QCOMPARE(click.count(), 0);
    }

    void keysAreForwarded()
    {
        Btn btn;
        dress(btn);
        QSignalSpy keyDown(&btn, &Btn::KeyDown);
        QSignalSpy keyPress(&btn, &Btn::KeyPress);
        QSignalSpy keyUp(&btn, &Btn::KeyUp);
        QTest::keyClick(&btn, 'A', Qt::ShiftModifier);
        // The shift key itself comes first, with its own code.
        QCOMPARE(keyDown.count(), 2);
        QCOMPARE(keyDown[0][0].toInt(), 16);
        QCOMPARE(keyDown[1][0].toInt(), 65);
        QCOMPARE(keyDown[1][1].toInt(), 1);
        QCOMPARE(keyPress.count(), 1);
        QCOMPARE(keyPress[0][0].toInt(), int('A'));
        QCOMPARE(keyUp[0][0].toInt(), 65);
        QTest::keyClick(&btn, Qt::Key_Left);
        QCOMPARE(keyDown.last()[0].toInt(), 37);
        QCOMPARE(keyDown.last()[1].toInt(), 0);
    }

    void spaceBarClicksAButtonReachedWithTab()
    {
        Btn btn;
        dress(btn);
        QSignalSpy click(&btn, &Btn::Click);
        QTest::keyClick(&btn, Qt::Key_Space);
        QCOMPARE(click.count(), 1);
    }

    void aDisabledButtonLooksGreyedAndIgnoresTheMouse()
    {
        Btn btn;
        dress(btn);
        QSignalSpy changed(&btn, &Btn::PropertyChanged);
        QSignalSpy click(&btn, &Btn::Click);
        btn.setEnabled(false);
        QVERIFY(!btn.Enabled());
        QVERIFY(changed.contains(QVariantList {QStringLiteral("Enabled")}));
        const QColor shown = shownColour(btn);
        QVERIFY(shown != Face);
        QCOMPARE(shown.red(), shown.green());
        QCOMPARE(shown.green(), shown.blue());
        QTest::mouseClick(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(click.count(), 0);
        btn.setEnabled(true);
        QCOMPARE(shownColour(btn), Face);
    }

    void settersReportTheirName()
    {
        Btn btn;
        QSignalSpy changed(&btn, &Btn::PropertyChanged);
        btn.setPicture(solidFace(Face));
        btn.setDownPicture(solidFace(Down));
        btn.setMouseIcon(QCursor(Qt::PointingHandCursor));
        btn.setMousePointer(Btn::vbCustom);
        QStringList names;
        for (const auto &args : changed)
            names << args[0].toString();
        QCOMPARE(names,
            (QStringList {QStringLiteral("Picture"), QStringLiteral("DownPicture"),
                QStringLiteral("MouseIcon"), QStringLiteral("MousePointer")}));
    }

    void mousePointerNinetyNineShowsTheMouseIcon()
    {
        Btn btn;
        QCOMPARE(btn.MousePointer(), 0);
        btn.setMouseIcon(QCursor(Qt::PointingHandCursor));
        btn.setMousePointer(Btn::vbCustom);
        QCOMPARE(btn.cursor().shape(), Qt::PointingHandCursor);
        btn.setMousePointer(Btn::vbDefault);
        QCOMPARE(btn.cursor().shape(), Qt::ArrowCursor);
    }

    void moveAndSizeAreInTwips()
    {
        QWidget parent;
        Btn btn(&parent);
        btn.setPicture(solidFace(Face));
        btn.Move(150, 300);
        QCOMPARE(btn.pos(), QPoint(10, 20));
        QCOMPARE(btn.Left(), 150);
        QCOMPARE(btn.Top(), 300);
    }

    void anErrorInAClickHandlerEndsInTheErrorBox()
    {
        Btn btn;
        dress(btn);
        connect(&btn, &Btn::Click, this, [] { throw platform::RuntimeError(5, QStringLiteral("x")); });
        QTest::mouseClick(&btn, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(m_host.boxes.size(), 1);
        QCOMPARE(shownColour(btn), Face);
    }
};

QTEST_MAIN(tst_Btn)
#include "tst_btn.moc"
