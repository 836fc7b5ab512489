// No way of leaving loses a changed drawing: a map opened from its tile in the real shell,
// drawn on, and every way that would close it or replace its picture, answered "Άκυρο",
// or "Ναι" with a save that writes nothing. The drawing, its window, the tiles, the
// activity and the shell all stay as they were.
#include "../app/shellcontent.h"
#include "../support/deferreddeletes.h"
#include "drawingtesting.h"

#include <btn.h>
#include <childwindows.h>
#include <frmploigisi.h>
#include <frmsmallbutton.h>
#include <mdiform1.h>
#include <tlb.h>

#include <QBuffer>
#include <QClipboard>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QTreeWidget>

using namespace testing;

namespace {

const QString SaveQuestion = QStringLiteral("Θέλετε να αποθηκεύσετε την εικόνα\r\nπριν συνεχίσετε");

} // namespace

class tst_DrawingKept : public QObject, public DrawingFixture
{
    Q_OBJECT

    ShellContent *m_content = nullptr;
    AnsweringBoxes m_boxes;
    int m_startScreens = 0;

    struct Opened
    {
        MDIForm1 *shell = nullptr;
        frmSmallButton *tile = nullptr;
        frmDrawing *drawing = nullptr;
    };

    // The shell on an activity with a map, the map opened from its tile, and a stroke.
    Opened openDrawnMap()
    {
        Opened o;
        o.shell = session().window<MDIForm1>(Session::Window::Shell);
        session().content().scenarioID = 10;
        o.shell->setSelectedActivity(106);
        o.shell->show();
        o.tile = o.shell->Tiles().value(2);
        if (!o.tile)
            return o;
        o.tile->Image1_Click();
        o.drawing = qobject_cast<frmDrawing *>(o.tile->SourceForm());
        if (!o.drawing)
            return o;
        chooseTool(*o.drawing, QStringLiteral("Pen"));
        stroke(*o.drawing, {{2, 2}, {40, 30}});
        return o;
    }

    // Each way that would close the window or replace its picture.
    static void leave(const Opened &o, const QString &way)
    {
        if (way == u"tree") {
            auto *tree = o.shell->session().window<frmPloigisi>(Session::Window::Navigation);
            tree->show();
            QTreeWidgetItem *item = tree->node(QStringLiteral("Ac101Sc10"));
            QVERIFY(item);
            tree->TreeView1->setCurrentItem(item);
            emit tree->TreeView1->itemClicked(item, 0);
            QVERIFY(tree->cmdGo->isEnabled());
            QTest::mouseClick(tree->cmdGo, Qt::LeftButton, {}, tree->cmdGo->rect().center());
        } else if (way == u"menu exit") {
            o.shell->mnuExit->trigger();
        } else if (way == u"menu back") {
            o.shell->mnuPrev->trigger();
        } else if (way == u"shell close") {
            o.shell->close();
        } else if (way == u"first" || way == u"prev" || way == u"exit") {
            emit o.shell->TlbMain->ButtonClick(way);
        } else if (way == u"frame close") {
            o.drawing->Unload();
        } else if (way == u"Paste") {
            QGuiApplication::clipboard()->setImage(solidPicture(QSize(20, 20), Qt::blue));
            emit o.drawing->tlbGeneral->ButtonClick(way);
        } else if (way == u"drop") {
            QMimeData data;
            data.setImageData(solidPicture(QSize(20, 20), Qt::blue));
            o.drawing->picPhoto_OLEDragDrop(&data);
        } else {
            emit o.drawing->tlbGeneral->ButtonClick(way); // New, Open, Exit
        }
    }

private slots:
    void initTestCase()
    {
        beginSession();
        registerChildWindows(session());
        m_content = new ShellContent;
        QVERIFY(m_content->open(session()));
        session().setWindowFactory(Session::Window::StartScreen, [this](Session &) {
            ++m_startScreens;
            return new QWidget;
        });
    }

    void cleanupTestCase()
    {
        endSession();
        delete m_content;
    }

    void init()
    {
        m_boxes.install(host());
        host().ends = 0;
        m_startScreens = 0;
    }

    void cleanup()
    {
        // Everything goes now, with OK (which is "No") to any question.
        m_boxes.install(host());
        for (QWidget *w : QApplication::topLevelWidgets())
            w->close();
        flushDeletes();
        for (QWidget *w : QApplication::topLevelWidgets())
            delete w;
        flushDeletes();
        QCOMPARE(session().shell(false), nullptr);
    }

    void everyWayOfLeavingKeepsAChangedDrawingWhenTheQuestionIsCancelled_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("answer");
        const QStringList ways = {QStringLiteral("tree"), QStringLiteral("first"), QStringLiteral("prev"),
            QStringLiteral("menu back"), QStringLiteral("exit"), QStringLiteral("menu exit"),
            QStringLiteral("shell close"), QStringLiteral("frame close"), QStringLiteral("Exit"),
            QStringLiteral("New"), QStringLiteral("Open"), QStringLiteral("Paste"), QStringLiteral("drop")};
        for (const QString &way : ways) {
            for (const char *answer : {"Άκυρο", "Ναι, αποθήκευση ακυρωμένη", "Ναι, αποθήκευση που απέτυχε"})
                QTest::addRow("%s: %s", qPrintable(way), answer) << way << QString::fromUtf8(answer);
        }
    }

    void everyWayOfLeavingKeepsAChangedDrawingWhenTheQuestionIsCancelled()
    {
        QFETCH(QString, way);
        QFETCH(QString, answer);
        const Opened o = openDrawnMap();
        QVERIFY(o.drawing);
        QPointer<MDIForm1> shell(o.shell);
        QPointer<frmDrawing> drawing(o.drawing);
        const QImage drawn = o.drawing->picPhoto->Picture();
        QVERIFY(o.drawing->PictureChangedSinceKept());
        QList<QPointer<frmSmallButton>> tiles;
        for (const QPointer<frmSmallButton> &tile : o.shell->Tiles())
            tiles.append(tile);
        QCOMPARE(tiles.size(), 6);

        AnsweringDialogs dialogs;
        dialogs.install(host());
        if (answer.startsWith(u"Άκυρο")) {
            m_boxes.answers = {platform::vbCancel};
        } else {
            m_boxes.answers = {platform::vbYes};
            if (answer.endsWith(u"απέτυχε"))
                dialogs.names = {QStringLiteral("/nonexistent-folder/χάρτης.bmp")};
        }
        leave(o, way);
        flushDeletes();

        QVERIFY(!m_boxes.isEmpty());
        QCOMPARE(m_boxes.first().text, SaveQuestion);
        QCOMPARE(m_boxes.first().style, platform::vbYesNoCancel | platform::vbQuestion);
        if (answer.endsWith(u"απέτυχε")) {
            QCOMPARE(m_boxes.size(), 2);
            QCOMPARE(m_boxes.at(1).text, QStringLiteral("Υπάρχει πρόβλημα στην αποθήκευση της εικόνας."));
        } else {
            QCOMPARE(m_boxes.size(), 1);
        }
        // Only the save dialog, never the open dialog behind it.
        for (const AnsweringDialogs::Shown &shown : std::as_const(dialogs.shown))
            QCOMPARE(shown.title, QStringLiteral("Αποθήκευση εικόνας"));

        QVERIFY(drawing);
        QVERIFY(drawing->isVisible());
        QCOMPARE(drawing->picPhoto->Picture(), drawn);
        QVERIFY(shell);
        QVERIFY(shell->isVisible());
        QCOMPARE(shell->ActivityID(), 106);
        QCOMPARE(session().content().activityID, 106);
        for (const QPointer<frmSmallButton> &tile : std::as_const(tiles)) {
            QVERIFY(tile);
            QVERIFY(tile->isVisible());
        }
        QCOMPARE(shell->Tiles().value(2)->SourceForm(), drawing.data());
        QVERIFY(shell->Tiles().value(2)->SourceOpen());
        QCOMPARE(m_startScreens, 0);
        QCOMPARE(host().ends, 0);
        QCOMPARE(session().shell(false), shell.data());
    }

    void answeredNoTheTreeChangesTheActivityAsBefore()
    {
        const Opened o = openDrawnMap();
        QVERIFY(o.drawing);
        QPointer<frmDrawing> drawing(o.drawing);
        m_boxes.answers = {platform::vbNo};
        leave(o, QStringLiteral("tree"));
        flushDeletes();
        QCOMPARE(m_boxes.size(), 1);
        QVERIFY(!drawing);
        QCOMPARE(o.shell->ActivityID(), 101);
        QCOMPARE(o.shell->Tiles().size(), 1);
    }

    void copyOfAnEmptyCanvasLeavesTheClipboardAsItWas()
    {
        frmDrawing w(session());
        w.Load();
        QGuiApplication::clipboard()->setText(QStringLiteral("ό,τι είχε"));
        emit w.tlbGeneral->ButtonClick(QStringLiteral("Copy"));
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("ό,τι είχε"));
        QVERIFY(!QGuiApplication::clipboard()->mimeData()->hasImage());
        QVERIFY(m_boxes.isEmpty());
    }

    void pasteOrDropOfDataThatIsNoPictureChangesNothingAndAsksNothing()
    {
        frmDrawing w(session());
        w.Load();
        w.show();
        chooseTool(w, QStringLiteral("Pen"));
        stroke(w, {{2, 2}, {40, 30}});
        const QImage drawn = w.picPhoto->Picture();
        QVERIFY(!drawn.isNull());
        for (const QString &format : {QStringLiteral("image/png"), QStringLiteral("image/bmp")}) {
            auto *broken = new QMimeData;
            broken->setData(format, QByteArray("not a picture at all"));
            QGuiApplication::clipboard()->setMimeData(broken);
            emit w.tlbGeneral->ButtonClick(QStringLiteral("Paste"));
            QMimeData dropped;
            dropped.setData(format, QByteArray("not a picture at all"));
            bool accept = false;
            w.picPhoto_OLEDragOver(&dropped, accept);
            w.picPhoto_OLEDragDrop(&dropped);
        }
        QVERIFY(m_boxes.isEmpty());
        QCOMPARE(w.picPhoto->Picture(), drawn);

        // A picture that decodes is taken, after the question.
        auto *good = new QMimeData;
        QByteArray png;
        {
            QBuffer buffer(&png);
            buffer.open(QIODevice::WriteOnly);
            solidPicture(QSize(12, 8), Qt::blue).save(&buffer, "PNG");
        }
        good->setData(QStringLiteral("image/png"), png);
        QGuiApplication::clipboard()->setMimeData(good);
        m_boxes.answers = {platform::vbNo};
        emit w.tlbGeneral->ButtonClick(QStringLiteral("Paste"));
        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(w.picPhoto->Picture(), solidPicture(QSize(12, 8), Qt::blue));
    }
};

QTEST_MAIN(tst_DrawingKept)
#include "tst_drawingkept.moc"
