#include "../app/shellcontent.h"
#include "../support/testsession.h"
#include "fakeviewers.h"

#include <database.h>
#include <frmresphoto.h>
#include <frmsmallbutton.h>
#include <frmtextresource.h>
#include <msgbox.h>
#include <shellwindow.h>
#include <viewingwindows.h>

#include <sqlite3.h>

#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QRegularExpression>
#include <QTest>

#include <memory>

using testing::FakeViewer;

namespace {

// Just the area for child windows, as the tiles and CenterAndShow need of the shell.
class AreaShell final : public QMainWindow, public ShellWindow
{
public:
    AreaShell()
        : m_area(new QMdiArea)
    {
        setCentralWidget(m_area);
        resize(800, 600);
    }
    QWidget *window() override { return this; }
    QMdiArea *mdiArea() override { return m_area; }
    int mnuListUBound() const override { return 0; }
    QAction *mnuList(int) override { return nullptr; }
    QAction *windowListSeparator() override { return nullptr; }
    void setSelectedActivity(qint32) override { }
    void LoadResources() override { }
    void UnloadResources() override { }
    void setToggleChecked(Toggle, bool) override { }

private:
    QMdiArea *m_area;
};

// Counts the statements that read a row of Resources on its own, as the tile and the
// viewers read it (the hot words' joins are queries of other tables).
class ResourceReads
{
public:
    explicit ResourceReads(sqlite3 *db)
        : m_db(db)
    {
        sqlite3_trace_v2(m_db, SQLITE_TRACE_STMT, &ResourceReads::traced, this);
    }
    ~ResourceReads() { sqlite3_trace_v2(m_db, 0, nullptr, nullptr); }
    Q_DISABLE_COPY_MOVE(ResourceReads)

    QStringList statements;

private:
    static int traced(unsigned, void *context, void *, void *text)
    {
        static const QRegularExpression resourcesRow(
            QStringLiteral("FROM\\s+[\"\\[]?Resources[\"\\]]?\\s*(WHERE|$)"),
            QRegularExpression::CaseInsensitiveOption);
        const QString sql = QString::fromUtf8(static_cast<const char *>(text));
        if (resourcesRow.match(sql).hasMatch())
            static_cast<ResourceReads *>(context)->statements << sql;
        return 0;
    }

    sqlite3 *m_db;
};

} // namespace

class tst_frmSmallButton : public QObject
{
    Q_OBJECT

    testing::ShellContent *m_content = nullptr;
    std::unique_ptr<testing::TestSession> m_s;
    AreaShell *m_shell = nullptr;

    QList<testing::ShownBox> &boxes() { return m_s->host->boxes; }

    // A tile as the shell makes one: dressed, sized to its picture, in the area, loaded.
    frmSmallButton *makeTile(qint32 resourceID)
    {
        auto *tile = new frmSmallButton(*m_s);
        tile->setResourceID(resourceID);
        tile->Label1->setText(QStringLiteral("1"));
        tile->resize(tile->Image1->size());
        QMdiSubWindow *sub = m_shell->mdiArea()->addSubWindow(tile, Qt::FramelessWindowHint);
        sub->resize(tile->size());
        tile->Load();
        sub->show();
        return tile;
    }

    FakeViewer *viewerOf(frmSmallButton *tile) { return qobject_cast<FakeViewer *>(tile->SourceForm()); }

    static void clickOn(QWidget *control) { QTest::mouseClick(control, Qt::LeftButton, {}, QPoint(5, 5)); }

private slots:
    void initTestCase()
    {
        m_content = new testing::ShellContent;
        // Built once; each test opens it in a session of its own.
        testing::TestSession builder;
        QVERIFY(m_content->open(builder));
    }

    void cleanupTestCase() { delete m_content; }

    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        Session &session = *m_s;
        session.content().database = content::Database::OpenDatabase(m_content->databasePath());
        session.content().databasePath = m_content->databasePath();
        session.content().dataFolder = m_content->folder();
        FakeViewer::registerAll(session);
        m_shell = new AreaShell;
        session.setWindow(Session::Window::Shell, m_shell);
        m_shell->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_shell));
    }

    void cleanup()
    {
        delete m_shell;
        m_shell = nullptr;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_s.reset();
    }

    void eachKindTakesItsFamilyAndTip_data()
    {
        QTest::addColumn<int>("resourceID");
        QTest::addColumn<QString>("closed");
        QTest::addColumn<QString>("tip");
        QTest::addColumn<int>("kind");
        QTest::newRow("text") << 301 << QStringLiteral("KEIMENO") << QStringLiteral("Βιβλίο 301")
                              << int(SourceViewer::Kind::Text);
        QTest::newRow("photo") << 302 << QStringLiteral("AGEIA") << QStringLiteral("Λεζάντα «302»")
                               << int(SourceViewer::Kind::Photo);
        QTest::newRow("map") << 303 << QStringLiteral("XARTIS") << QStringLiteral("Λεζάντα «303»")
                             << int(SourceViewer::Kind::Map);
        QTest::newRow("described photo") << 304 << QStringLiteral("AGEIA") << QStringLiteral("Λεζάντα «304»")
                                         << int(SourceViewer::Kind::Photo);
    }

    void eachKindTakesItsFamilyAndTip()
    {
        QFETCH(int, resourceID);
        QFETCH(QString, closed);
        QFETCH(QString, tip);
        QFETCH(int, kind);
        frmSmallButton *tile = makeTile(resourceID);
        QCOMPARE(tile->ResourceID(), resourceID);
        QCOMPARE(tile->currentBitmap(), closed);
        QCOMPARE(tile->Image1->toolTip(), tip);
        QCOMPARE(tile->Label1->toolTip(), tip);
        QCOMPARE(int(tile->kind()), kind);
        QVERIFY(tile->SourceForm());
        QCOMPARE(tile->SourceForm()->isVisible(), false); // made, not loaded
        QCOMPARE(viewerOf(tile)->loads, 0);
        QCOMPARE(tile->Image1->size(), QSize(50, 47));
        QCOMPARE(tile->Image1->pos(), QPoint(0, 0));
        QCOMPARE(tile->Label1->pos(), QPoint(0, 0));
    }

    void mapTileKeepsPictureAndCaption()
    {
        frmSmallButton *tile = makeTile(303);
        QCOMPARE(tile->MapPicturePath(), QStringLiteral("Photo303.PNG"));
        QCOMPARE(tile->MapCaption(), QStringLiteral("Λεζάντα «303»"));
    }

    void clickOpensTheViewerCentredAndShowsOpen()
    {
        frmSmallButton *tile = makeTile(301);
        clickOn(tile->Image1);
        FakeViewer *viewer = viewerOf(tile);
        QVERIFY(viewer);
        QCOMPARE(viewer->loads, 1);
        QCOMPARE(viewer->ResourceID(), 301);
        QVERIFY(viewer->isVisible());
        QVERIFY(tile->SourceOpen());
        QCOMPARE(tile->currentBitmap(), QStringLiteral("KEIMENO1"));
        QVERIFY(boxes().isEmpty());
        auto *sub = qobject_cast<QMdiSubWindow *>(viewer->parentWidget());
        QVERIFY(sub);
        QCOMPARE(m_shell->mdiArea()->activeSubWindow(), sub);
        const QRect client = m_shell->mdiArea()->viewport()->rect();
        QVERIFY(qAbs(sub->geometry().center().x() - client.center().x()) <= 1);
        QVERIFY(qAbs(sub->geometry().center().y() - client.center().y()) <= 1);
    }

    void clickOnTheNumberDoesTheSame()
    {
        frmSmallButton *tile = makeTile(302);
        clickOn(tile->Label1);
        QVERIFY(tile->SourceOpen());
        QCOMPARE(tile->currentBitmap(), QStringLiteral("AGEIA1"));
    }

    void secondClickOnlyBringsTheViewerForward()
    {
        frmSmallButton *tile = makeTile(301);
        frmSmallButton *other = makeTile(302);
        clickOn(tile->Image1);
        FakeViewer *first = viewerOf(tile);
        clickOn(other->Image1);
        QCOMPARE(m_shell->mdiArea()->activeSubWindow()->widget(), viewerOf(other));

        clickOn(tile->Image1);
        QCOMPARE(viewerOf(tile), first);
        QCOMPARE(first->loads, 1);
        QCOMPARE(m_shell->mdiArea()->activeSubWindow()->widget(), first);
        QCOMPARE(tile->currentBitmap(), QStringLiteral("KEIMENO1"));
    }

    void closingTheViewerLeavesTheTileVisitedAndItOpensAgain()
    {
        frmSmallButton *tile = makeTile(302);
        clickOn(tile->Image1);
        viewerOf(tile)->Unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!tile->SourceOpen());
        QCOMPARE(tile->currentBitmap(), QStringLiteral("AGEIA2"));

        clickOn(tile->Image1);
        QVERIFY(tile->SourceOpen());
        QVERIFY(viewerOf(tile));
        QVERIFY(viewerOf(tile)->isVisible());
        QCOMPARE(viewerOf(tile)->ResourceID(), 302);
        QCOMPARE(tile->currentBitmap(), QStringLiteral("AGEIA1"));

        viewerOf(tile)->Unload();
        QCOMPARE(tile->currentBitmap(), QStringLiteral("AGEIA2"));
    }

    void textWithoutFileNameGivesTheBoxAndStaysClosed()
    {
        frmSmallButton *tile = makeTile(501);
        clickOn(tile->Image1);
        QCOMPARE(boxes().size(), 1);
        QCOMPARE(boxes()[0].text, QStringLiteral("Η πηγή δεν είναι δυνατό να βρεθεί!!!"));
        QCOMPARE(boxes()[0].style, 64);
        QCOMPARE(boxes()[0].title, QStringLiteral("Τρεμίδια"));
        QVERIFY(!tile->SourceOpen());
        QCOMPARE(tile->currentBitmap(), QStringLiteral("KEIMENO"));
        QCOMPARE(viewerOf(tile)->loads, 0);
    }

    void textWhoseFileIsGoneGivesTheBox()
    {
        frmSmallButton *tile = makeTile(502);
        clickOn(tile->Image1);
        QCOMPARE(boxes().size(), 1);
        QCOMPARE(boxes()[0].style, 64);
        QCOMPARE(tile->currentBitmap(), QStringLiteral("KEIMENO"));
    }

    void photographWhosePictureIsGoneGivesTheBox()
    {
        frmSmallButton *tile = makeTile(503);
        clickOn(tile->Image1);
        QCOMPARE(boxes().size(), 1);
        QCOMPARE(tile->currentBitmap(), QStringLiteral("AGEIA"));
    }

    void mapOpensInADrawingWindowWithItsPicture()
    {
        frmSmallButton *tile = makeTile(303);
        clickOn(tile->Image1);
        FakeViewer *viewer = viewerOf(tile);
        QCOMPARE(viewer->kind(), SourceViewer::Kind::Map);
        QCOMPARE(QFileInfo(viewer->mapPicture).canonicalFilePath(),
            QFileInfo(m_content->folder() + QStringLiteral("/pictures/photo303.png")).canonicalFilePath());
        QCOMPARE(viewer->mapCaption, QStringLiteral("Λεζάντα «303»"));
        QCOMPARE(viewer->windowTitle(), QStringLiteral("Λεζάντα «303»"));
        QCOMPARE(viewer->scrollBars, 1);
        QCOMPARE(tile->currentBitmap(), QStringLiteral("XARTIS1"));
    }

    void typeWithoutViewerGetsAPlainTileThatDoesNothing()
    {
        frmSmallButton *tile = makeTile(401);
        QCOMPARE(tile->kind(), SourceViewer::Kind::None);
        QCOMPARE(tile->currentBitmap(), QString());
        QCOMPARE(tile->Image1->size(), QSize(50, 47));
        QVERIFY(!tile->SourceForm());
        clickOn(tile->Image1);
        QVERIFY(boxes().isEmpty());
        QVERIFY(!tile->SourceOpen());
    }

    void kindWithoutViewerYetOpensNothing()
    {
        m_s->session->setViewerFactory(int(SourceViewer::Kind::Text), {});
        frmSmallButton *tile = makeTile(301);
        QVERIFY(!tile->SourceForm());
        clickOn(tile->Image1);
        QVERIFY(boxes().isEmpty());
        QVERIFY(!tile->SourceOpen());
        QCOMPARE(tile->currentBitmap(), QStringLiteral("KEIMENO"));
    }

    void pressSendsTheTileBehindTheOpenWindows()
    {
        frmSmallButton *tile = makeTile(301);
        frmSmallButton *other = makeTile(302);
        clickOn(other->Image1);
        QMdiArea *area = m_shell->mdiArea();
        QTest::mousePress(tile->Image1, Qt::LeftButton, {}, QPoint(3, 3));
        QCOMPARE(area->subWindowList(QMdiArea::StackingOrder).first()->widget(), tile);
        QTest::mouseRelease(tile->Image1, Qt::LeftButton, {}, QPoint(3, 3));
        QTest::mouseDClick(other->Label1, Qt::LeftButton, {}, QPoint(3, 3));
        QCOMPARE(area->subWindowList(QMdiArea::StackingOrder).first()->widget(), other);
        // The viewer stays above both tiles.
        QCOMPARE(area->subWindowList(QMdiArea::StackingOrder).last()->widget(), viewerOf(other));
    }

    void activationPassesToTheFirstWindowThatIsNotATile()
    {
        frmSmallButton *tile = makeTile(301);
        frmSmallButton *other = makeTile(302);
        QMdiArea *area = m_shell->mdiArea();
        area->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(tile->parentWidget()));
        QVERIFY(area->activeSubWindow() == nullptr);

        clickOn(other->Image1);
        clickOn(tile->Image1);
        viewerOf(tile)->Unload();
        area->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(tile->parentWidget()));
        QCOMPARE(area->activeSubWindow()->widget(), viewerOf(other));
    }

    void openingASourceReadsItsRowOnce_data()
    {
        QTest::addColumn<int>("resourceID");
        QTest::newRow("text") << 301;
        QTest::newRow("photo") << 302;
        QTest::newRow("described photo") << 304;
    }

    // From the tile's dressing to its viewer on show, the resource's row is read once:
    // the tile, its check of the file and the viewer share it.
    void openingASourceReadsItsRowOnce()
    {
        QFETCH(int, resourceID);
        registerViewingWindows(*m_s);
        m_content->writeFile(QStringLiteral("piges/desc%1.rtf").arg(resourceID),
            QByteArrayLiteral("{\\rtf1\\ansi Perigrafi.\\par }"));
        ResourceReads reads(m_s->session->database().handle());
        frmSmallButton *tile = makeTile(resourceID);
        clickOn(tile->Image1);
        QVERIFY(tile->SourceOpen());
        QVERIFY(tile->SourceForm()->isVisible());
        QVERIFY(qobject_cast<frmTextResource *>(tile->SourceForm())
            || qobject_cast<frmResPhoto *>(tile->SourceForm()));
        QVERIFY(boxes().isEmpty());
        QCOMPARE(reads.statements.size(), 1);
    }

    void closingTheTileUnloadsItsOpenViewer()
    {
        frmSmallButton *tile = makeTile(302);
        clickOn(tile->Image1);
        QPointer<FakeViewer> viewer = viewerOf(tile);
        tile->Unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!viewer || !viewer->isVisible());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!viewer);
    }
};

QTEST_MAIN(tst_frmSmallButton)
#include "tst_frmsmallbutton.moc"
