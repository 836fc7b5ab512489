#include "../support/testsession.h"
#include "shellcontent.h"

#include <childwindows.h>
#include <frmsmallbutton.h>
#include <mdiform1.h>
#include <session.h>

#include <QDir>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

// Renders the shell with an activity of thirteen sources, so a person can look at it:
// the picture lands in the test output folder.
class tst_MDIForm1Screenshot : public QObject
{
    Q_OBJECT

    testing::ShellContent m_content;
    std::unique_ptr<testing::TestSession> m_s = std::make_unique<testing::TestSession>();
    Session &session() { return *m_s; }

private slots:
    void initTestCase()
    {
        QVERIFY(m_content.open(session()));
        registerShellWindows(session());
        session().setWindowFactory(Session::Window::StartScreen, [](Session &) { return nullptr; });
    }

    void cleanupTestCase() { m_s.reset(); }

    void shellWithThirteenTiles()
    {
        auto *shell = qobject_cast<MDIForm1 *>(session().window(Session::Window::Shell));
        shell->setSelectedActivity(113);
        shell->show();
        QVERIFY(QTest::qWaitForWindowExposed(shell));
        QCOMPARE(shell->ResourceCount(), 13);

        const QImage image = shell->grab().toImage();
        QCOMPARE(image.size() / image.devicePixelRatio(), QSize(800, 600));
        QVERIFY(QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR)));
        const QString file = QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/mdiform1-13-tiles.png");
        QVERIFY(image.save(file, "PNG"));
        qInfo("shell picture: %s", qPrintable(file));

        // The background shows between the tiles, and the tiles are not blank.
        const QPoint areaOrigin = shell->mdiArea()->mapTo(shell, QPoint(0, 0));
        const QRect firstTile = shell->Tiles().at(0)->parentWidget()->geometry().translated(areaOrigin);
        QVERIFY(image.pixelColor(firstTile.center()) != image.pixelColor(firstTile.topLeft() - QPoint(3, 3)));

        // With a source open, as a pupil sees it while reading.
        shell->Tiles().at(0)->Image1_Click();
        shell->Tiles().at(1)->Image1_Click();
        // The windows settle their frames through posted events; let them before the grab.
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
        const QString open = QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/mdiform1-13-tiles-open.png");
        QVERIFY(shell->grab().toImage().save(open, "PNG"));
        qInfo("shell picture with sources open: %s", qPrintable(open));
        shell->close();
    }
};

QTEST_MAIN(tst_MDIForm1Screenshot)
#include "tst_mdiform1_screenshot.moc"
