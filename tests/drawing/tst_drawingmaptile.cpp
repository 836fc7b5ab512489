// A map among the sources opens in the drawing window that the program registers, with
// the map as its picture; the pupil draws on it, and closing it tells the tile.
#include "../app/shellcontent.h"
#include "../support/testsession.h"
#include "drawingtesting.h"

#include <childwindows.h>
#include <drawingwindows.h>
#include <frmsmallbutton.h>
#include <mdiform1.h>
#include <session.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTemporaryDir>

using namespace testing;

class tst_DrawingMapTile : public QObject, public DrawingFixture
{
    Q_OBJECT

    ShellContent *m_content = nullptr;

private slots:
    void initTestCase() { m_content = new ShellContent; }
    void cleanupTestCase() { delete m_content; }

    void init()
    {
        beginSession();
        registerChildWindows(session());
        // The shell only where a test stands it up.
        session().setWindowFactory(Session::Window::Shell, {});
        QVERIFY(m_content->open(session()));
        boxes.install(host());
    }
    void cleanup() { endSession(); }

    void mapTileOpensADrawingWindowWithTheMapToDrawOn()
    {
        DrawingShell shell(session());
        shell.show();
        QVERIFY(QTest::qWaitForWindowExposed(&shell));
        auto *tile = new frmSmallButton(session());
        tile->setResourceID(303);
        tile->Label1->setText(QStringLiteral("1"));
        tile->resize(tile->Image1->size());
        QMdiSubWindow *sub = shell.mdiArea()->addSubWindow(tile, Qt::FramelessWindowHint);
        tile->Load();
        sub->show();
        QTest::mouseClick(tile->Image1, Qt::LeftButton, {}, QPoint(5, 5));

        auto *drawing = qobject_cast<frmDrawing *>(tile->SourceForm());
        QVERIFY(drawing);
        QVERIFY(drawing->isVisible());
        QCOMPARE(drawing->windowTitle(), QStringLiteral("Λεζάντα «303»"));
        QCOMPARE(drawing->picPhoto->Picture().size(), QSize(64, 48));
        QCOMPARE(drawing->picPhoto->Picture().pixel(10, 10), qRgb(120, 90, 40));
        QCOMPARE(drawing->ResourceID(), 0);
        QVERIFY(shell.mnuDraw->isChecked());
        // Its starting picture stays empty until a file comes in.
        QVERIFY(drawing->InitialPicture().isNull());

        // A hatch, a word and an undo on the map, then a bitmap file.
        drawing->vFormFillStyle_NewFillStyle(6);
        drawing->vFormFillColor_NewColor(0xFFFFFF);
        chooseTool(*drawing, QStringLiteral("FloodFill"));
        stroke(*drawing, {{10, 10}});
        QCOMPARE(drawing->picPhoto->Picture().pixel(4, 3), qRgb(255, 255, 255));
        QCOMPARE(drawing->picPhoto->Picture().pixel(3, 3), qRgb(120, 90, 40));
        chooseTool(*drawing, QStringLiteral("Text"));
        answerTextDialog([](frmDrawingText &d) {
            d.txtText->setText(QStringLiteral("Αθήνα"));
            d.cmdApply->click();
        });
        stroke(*drawing, {{2, 20}});
        QCOMPARE(drawing->TextToWrite(), QStringLiteral("Αθήνα"));
        const QImage drawn = drawing->picPhoto->Picture();
        chooseTool(*drawing, QStringLiteral("Pen"));
        stroke(*drawing, {{0, 40}, {60, 40}});
        drawing->tlbGeneral_ButtonClick(QStringLiteral("Undo"));
        QCOMPARE(drawing->picPhoto->Picture(), drawn);
        QTemporaryDir dir;
        AnsweringDialogs dialogs;
        dialogs.install(host());
        dialogs.names = {dir.filePath(QStringLiteral("χάρτης.bmp"))};
        drawing->tlbGeneral_ButtonClick(QStringLiteral("SaveAs"));
        QCOMPARE(
            QImage(dir.filePath(QStringLiteral("χάρτης.bmp"))).convertToFormat(QImage::Format_RGB32), drawn);

        drawing->Unload();
        QVERIFY(!shell.mnuDraw->isChecked());
        QCOMPARE(tile->currentBitmap(), QStringLiteral("XARTIS2"));
        QVERIFY(boxes.isEmpty());
    }

    void theShellsDrawingWindowComesAndGoesWithItsMenuCheck()
    {
        registerShellWindows(session());
        session().setWindowFactory(Session::Window::StartScreen, [](Session &) { return new QWidget; });
        auto *shell = session().window<MDIForm1>(Session::Window::Shell);
        shell->setSelectedActivity(101);
        shell->show();
        QVERIFY(QTest::qWaitForWindowExposed(shell));

        shell->mnuDraw->trigger();
        QVERIFY(shell->mnuDraw->isChecked());
        QPointer<frmDrawing> first;
        for (QMdiSubWindow *sub : shell->area->subWindowList())
            if (auto *w = qobject_cast<frmDrawing *>(sub->widget()))
                first = w;
        QVERIFY(first);
        QVERIFY(first->isVisible());
        QCOMPARE(first->windowTitle(), QStringLiteral("Σχεδιαστήριο"));
        QVERIFY(first->width() >= 600);

        shell->mnuDraw->trigger();
        QVERIFY(!shell->mnuDraw->isChecked());
        QTRY_VERIFY(!first);

        // A new window after the old one was closed, also from the toolbar's key.
        shell->TlbMain_ButtonClick(QStringLiteral("drawing"));
        QVERIFY(shell->mnuDraw->isChecked());
        int drawings = 0;
        for (QMdiSubWindow *sub : shell->area->subWindowList())
            drawings += qobject_cast<frmDrawing *>(sub->widget()) ? 1 : 0;
        QCOMPARE(drawings, 1);
        shell->close();
        for (int i = 0; i < 3; ++i)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (QWidget *w : QApplication::topLevelWidgets())
            delete w;
    }

    void closingAWindowOfTheSearchUnghostsItsItem()
    {
        QStringList unghosted;
        session().links().unghostSearchItem = [&](const QString &tag) { unghosted.append(tag); };
        auto *fromSearch = qobject_cast<frmDrawing *>(session().makeViewer(int(SourceViewer::Kind::Map)));
        QVERIFY(fromSearch);
        fromSearch->setAttribute(Qt::WA_DeleteOnClose);
        fromSearch->Load();
        fromSearch->setResourceID(303);
        fromSearch->LoadedFromTheFormSearchResources = true;
        fromSearch->show();
        fromSearch->close();
        QCOMPARE(unghosted, QStringList {QStringLiteral("303")});
        session().links().unghostSearchItem = {};
    }

private:
    AnsweringBoxes boxes;
};

QTEST_MAIN(tst_DrawingMapTile)
#include "tst_drawingmaptile.moc"
