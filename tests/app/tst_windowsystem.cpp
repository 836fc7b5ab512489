// Under a Wayland session the program runs through XWayland, unless the user chose.

#include <windowsystem.h>

#include <QTest>

class tst_WindowSystem : public QObject
{
    Q_OBJECT

    QByteArray savedWayland;
    QByteArray savedPlatform;

private slots:
    void init()
    {
        savedWayland = qgetenv("WAYLAND_DISPLAY");
        savedPlatform = qgetenv("QT_QPA_PLATFORM");
    }

    void cleanup()
    {
        savedWayland.isEmpty() ? qunsetenv("WAYLAND_DISPLAY") : qputenv("WAYLAND_DISPLAY", savedWayland);
        savedPlatform.isEmpty() ? qunsetenv("QT_QPA_PLATFORM") : qputenv("QT_QPA_PLATFORM", savedPlatform);
    }

    void waylandSessionRunsThroughXWayland()
    {
        QCOMPARE(windowSystemChoice("wayland-0", QByteArray()), QByteArrayLiteral("xcb;wayland"));
    }

    void userChoiceUnderWaylandIsKept()
    {
        QVERIFY(windowSystemChoice("wayland-0", "wayland").isEmpty());
        QVERIFY(windowSystemChoice("wayland-0", "offscreen").isEmpty());
    }

    void x11SessionIsLeftAlone()
    {
        QVERIFY(windowSystemChoice(QByteArray(), QByteArray()).isEmpty());
        QVERIFY(windowSystemChoice(QByteArray(), "xcb").isEmpty());
    }

    void environmentGetsXcbUnderWayland()
    {
        qputenv("WAYLAND_DISPLAY", "wayland-1");
        qunsetenv("QT_QPA_PLATFORM");
        chooseWindowSystem();
        QCOMPARE(qgetenv("QT_QPA_PLATFORM"), QByteArrayLiteral("xcb;wayland"));
    }

    void environmentKeepsTheUsersPlatform()
    {
        qputenv("WAYLAND_DISPLAY", "wayland-1");
        qputenv("QT_QPA_PLATFORM", "wayland");
        chooseWindowSystem();
        QCOMPARE(qgetenv("QT_QPA_PLATFORM"), QByteArrayLiteral("wayland"));
    }

    void environmentWithoutWaylandIsUnchanged()
    {
        qunsetenv("WAYLAND_DISPLAY");
        qunsetenv("QT_QPA_PLATFORM");
        chooseWindowSystem();
        QVERIFY(!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"));
    }
};

QTEST_APPLESS_MAIN(tst_WindowSystem)
#include "tst_windowsystem.moc"
