// Every window stays readable, and looks as designed, whatever palette the desktop hands
// to Qt: each window is shown under a light desktop palette, then the desktop turns dark,
// and each text must keep a contrast of 4.5:1 against what it stands on, and the window
// must look as it did. The palettes here are made by hand; tst_darkdesktop_gtk runs the
// same windows under GTK's own dark theme, as a desktop hands it on.

#include "darkdesktopcheck.h"
#include "programwindows.h"

#include <designedcolours.h>

#include <QApplication>
#include <QMenu>
#include <QMenuBar>

using namespace Qt::StringLiterals;
using namespace testing;

namespace {

QPalette desktopPalette(bool dark)
{
    // Roughly what a GTK theme hands to Qt: Adwaita and Adwaita-dark.
    QPalette p;
    const QColor window = dark ? QColor(53, 53, 53) : QColor(246, 245, 244);
    const QColor text = dark ? QColor(238, 238, 236) : QColor(46, 52, 54);
    const QColor base = dark ? QColor(45, 45, 45) : QColor(255, 255, 255);
    for (auto role : {QPalette::Window, QPalette::Button, QPalette::AlternateBase, QPalette::Midlight})
        p.setColor(role, window);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        p.setColor(role, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::ToolTipBase, dark ? QColor(30, 30, 30) : QColor(255, 255, 255));
    p.setColor(QPalette::Light, dark ? QColor(80, 80, 80) : Qt::white);
    p.setColor(QPalette::Dark, dark ? QColor(20, 20, 20) : QColor(160, 160, 160));
    p.setColor(QPalette::Highlight, QColor(53, 132, 228));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Disabled, QPalette::Text, dark ? QColor(145, 145, 145) : QColor(140, 140, 140));
    return p;
}

} // namespace

class tst_DarkDesktop : public QObject
{
    Q_OBJECT

    WindowsOnTheSample m_windows;
    MDIForm1 *m_shell = nullptr;

private slots:
    void initTestCase()
    {
        QApplication::setPalette(desktopPalette(false));
        if (!m_windows.open(QStringLiteral(TREMIDIA_BINARY_DIR "/test-cache/darkdesktop")))
            QSKIP("the sample course is not built");
    }

    void init()
    {
        QApplication::setPalette(desktopPalette(false));
        m_shell = m_windows.showShell();
        QVERIFY(QTest::qWaitForWindowExposed(m_shell));
    }

    void cleanup()
    {
        const QStringList boxes = m_windows.closeAll();
        QVERIFY2(boxes.isEmpty(), qPrintable(boxes.join(u"; "_s)));
    }

    // Shows the window under the light desktop, turns the desktop dark, and checks it:
    // the whole window, or the child window of the shell that holds it.
    void everyWindowKeepsItsColours_data() { addProgramWindowRows(); }

    void everyWindowKeepsItsColours()
    {
        QFETCH(int, window);
        const ProgramWindow program = programWindow(window);
        QWidget *top = m_windows.openShown(window);
        QVERIFY2(top, program.name);
        QApplication::processEvents();
        const QImage light = top->grab().toImage();
        QApplication::setPalette(desktopPalette(true));
        QApplication::processEvents();
        const QImage dark = top->grab().toImage();
        const QString name = QString::fromLatin1(program.name);
        dark.save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/dark_") + name + u".png"_s);

        const QList<LowContrast> found = lowContrasts(top);
        QVERIFY2(found.isEmpty(), qPrintable(name + u": "_s + describe(found)));
        const qint64 changed = differingPixels(light, dark);
        const double share = double(changed) / double(std::max(1, light.width() * light.height()));
        QVERIFY2(share < ChangedShareAllowed,
            qPrintable(u"%1: %2 pixels (%3%) of the window changed"_s.arg(name).arg(changed).arg(
                share * 100, 0, 'f', 2)));
    }

    void theShellsMenusDropDownInTheSameColours()
    {
        QApplication::setPalette(desktopPalette(true));
        const QList<QMenu *> menus = m_shell->menuBar()->findChildren<QMenu *>();
        QVERIFY(!menus.isEmpty());
        for (QMenu *menu : menus) {
            // Qt's own overflow menu has no title of ours.
            if (menu->title().isEmpty())
                continue;
            const QPalette p = menu->palette();
            QVERIFY2(contrast(p.color(QPalette::WindowText), p.color(QPalette::Window)) >= 4.5,
                qPrintable(menu->title()));
            QCOMPARE(p.color(QPalette::Window), platform::designedPalette().color(QPalette::Window));
        }
    }
};

QTEST_MAIN(tst_DarkDesktop)
#include "tst_darkdesktop.moc"
