// The search window: its boxes, the list that each pick narrows, opening a result and
// the item's ghosting while the result's window is open.

#include "../support/msgboxrecorder.h"
#include "../viewing/fakeviewers.h"
#include "../viewing/viewershell.h"
#include "findingcontent.h"

#include <database.h>
#include <errorpolicy.h>
#include <findingwindows.h>
#include <frmdrawing.h>
#include <frmsearchresources.h>
#include <modglobal.h>
#include <session.h>
#include <sqliteconnection.h>
#include <twips.h>
#include <viewingwindows.h>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {

QStringList texts(const QTreeWidget *list)
{
    QStringList out;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        out << list->topLevelItem(i)->text(0);
    return out;
}

void choose(QComboBox *combo, const QString &text)
{
    const int index = combo->findText(text);
    QVERIFY2(index >= 0, qPrintable(text));
    combo->setCurrentIndex(index);
}

// The list's double click on an item, as the view reports it.
void doubleClick(QTreeWidget *list, QTreeWidgetItem *item)
{
    list->setCurrentItem(item);
    emit list->itemDoubleClicked(item, 0);
}

} // namespace

class tst_frmSearchResources : public QObject
{
    Q_OBJECT

private:
    testing::MsgBoxRecorder m_boxes;
    std::unique_ptr<testing::ViewerShell> m_shell;

    frmSearchResources *open(std::unique_ptr<content::Database> db)
    {
        modGlobal::gDatabasePath.clear();
        modGlobal::gDatabase = std::move(db);
        frmSearchResources *search = nullptr;
        platform::guarded([&] { search = frmSearchResources::instance(); });
        return search;
    }

private slots:
    void initTestCase() { finding::registerFindingLinks(*Session::current()); }

    void init()
    {
        m_boxes.install();
        m_shell = std::make_unique<testing::ViewerShell>();
        m_shell->show();
        modGlobal::gDataFolder = u"/nowhere"_s;
        testing::FakeViewer::registerAll(*Session::current());
    }

    void cleanup()
    {
        if (frmSearchResources *search = frmSearchResources::instance(false))
            delete search;
        m_shell.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        modGlobal::gDatabase.reset();
    }

    void everyBoxStartsOnItsBlankAllEntryAndEveryResourceIsListed()
    {
        frmSearchResources *search = open(findingcontent::build());
        QVERIFY(search);
        QCOMPARE(search->windowTitle(), u"Αναζήτηση"_s);
        for (QComboBox *combo : {search->cmbResType, search->cmbAuthor, search->cmbMuseum, search->cmbKeyWord,
                 search->cmbTime, search->cmbPlace}) {
            QCOMPARE(combo->currentIndex(), combo->count() - 1);
            QCOMPARE(combo->currentText(), QString());
            QCOMPARE(combo->currentData().toInt(), 0);
        }
        QCOMPARE(search->cmbResType->count(), 3);
        QCOMPARE(search->cmbResType->itemText(0), u"Φωτογραφία"_s);
        QCOMPARE(search->cmbResType->itemData(1).toInt(), 2);
        QCOMPARE(search->cmbAuthor->count(), 6);
        QCOMPARE(search->lvwResources->topLevelItemCount(), 14);
        QVERIFY(!search->SQL().contains(u"WHERE"_s));
        QCOMPARE(search->palette().color(QPalette::Window), QColor(243, 195, 112));
        QCOMPARE(search->Frame1->palette().color(QPalette::Window), QColor(254, 232, 176));
        QCOMPARE(search->Label1->text(), u"Τύπος πηγής:"_s);
        QCOMPARE(search->Label6->text(), u"Τόπος:"_s);
        QVERIFY(qobject_cast<QMdiSubWindow *>(search->parentWidget()));
        QVERIFY(m_boxes.isEmpty());
    }

    void everyPickNarrowsTheListAtOnceInGreekOrder()
    {
        frmSearchResources *search = open(findingcontent::build());
        choose(search->cmbResType, u"Κείμενο"_s);
        QCOMPARE(texts(search->lvwResources), findingcontent::dictionaryOrder());
        QCOMPARE(frmSearchResources::IconKey(search->lvwResources->topLevelItem(0)), u"keimeno"_s);
        choose(search->cmbResType, QString());
        QCOMPARE(search->lvwResources->topLevelItemCount(), 14);
    }

    void choosingAKeywordAndAnAuthorJoinsThemWithAnd()
    {
        frmSearchResources *search = open(findingcontent::build());
        choose(search->cmbKeyWord, u"Δημοκρατία"_s);
        choose(search->cmbAuthor, u"x' OR '1'='1"_s);
        QVERIFY(search->SQL().contains(
            u"WHERE RelKeywordResource.KeywordID= 9 AND  Resources.Author = 'x'' OR ''1''=''1'"_s));
        QCOMPARE(texts(search->lvwResources), QStringList {u"x' OR '1'='1"_s});
        QCOMPARE(frmSearchResources::Tag(search->lvwResources->topLevelItem(0)), u"302"_s);
    }

    void theApostropheOfAMuseumFindsItsRow()
    {
        frmSearchResources *search = open(findingcontent::build());
        choose(search->cmbMuseum, u"Μουσεί' Αρχαίας Αγοράς"_s);
        QCOMPARE(texts(search->lvwResources), QStringList {u"Μουσεί' Αρχαίας Αγοράς"_s});
        QVERIFY(m_boxes.isEmpty());
    }

    void choosingTheSameEntryTwiceRunsNoQuery()
    {
        frmSearchResources *search = open(findingcontent::build());
        choose(search->cmbPlace, u"Αθήνα"_s);
        const int searches = search->searchCount();
        search->cmbPlace_Click();
        search->cmbPlace_Click();
        QCOMPARE(search->searchCount(), searches);
        QCOMPARE(search->lvwResources->topLevelItemCount(), 5);
    }

    void twoCriteriaThatExcludeEachOtherGiveAnEmptyListAndNoMessage()
    {
        frmSearchResources *search = open(findingcontent::build());
        choose(search->cmbResType, u"Κείμενο"_s);
        choose(search->cmbAuthor, u"Ο Σοφός"_s);
        QCOMPARE(search->lvwResources->topLevelItemCount(), 0);
        QVERIFY(m_boxes.isEmpty());
    }

    void exactlyEightAndNineResultsDifferInTheColumnsWidth()
    {
        testcontent::Builder b;
        for (int i = 0; i < 9; ++i)
            findingcontent::resource(b, 10 + i, 2, u"Κείμενο %1"_s.arg(i), QVariant());
        for (int i = 0; i < 8; ++i)
            findingcontent::resource(b, 30 + i, 1, QVariant(), u"Εικόνα %1"_s.arg(i));
        b.row(u"ResTypes"_s, {u"ResTypeID"_s, u"ResType"_s}, {1, u"Φωτογραφία"_s});
        b.row(u"ResTypes"_s, {u"ResTypeID"_s, u"ResType"_s}, {2, u"Κείμενο"_s});
        frmSearchResources *search = open(b.database());
        const int listWidth = platform::twipsFromPixelsX(search->lvwResources->width());
        choose(search->cmbResType, u"Κείμενο"_s);
        QCOMPARE(search->lvwResources->topLevelItemCount(), 9);
        QCOMPARE(search->lvwResources->columnWidth(0), platform::pixelsFromTwipsX(listWidth - 315));
        choose(search->cmbResType, u"Φωτογραφία"_s);
        QCOMPARE(search->lvwResources->topLevelItemCount(), 8);
        QCOMPARE(search->lvwResources->columnWidth(0), platform::pixelsFromTwipsX(listWidth - 90));
    }

    void aGhostedItemCannotBeOpenedAgainUntilItsWindowCloses()
    {
        frmSearchResources *search = open(findingcontent::build());
        choose(search->cmbResType, u"Κείμενο"_s);
        QTreeWidgetItem *item = search->lvwResources->topLevelItem(0);
        const qsizetype before = testing::FakeViewer::all().size();
        doubleClick(search->lvwResources, item);
        QVERIFY2(m_boxes.isEmpty(), m_boxes.isEmpty() ? "" : qPrintable(m_boxes.at(0).text));
        QCOMPARE(testing::FakeViewer::all().size(), before + 1);
        QPointer<testing::FakeViewer> viewer = testing::FakeViewer::all().last();
        QVERIFY(viewer->LoadedFromTheFormSearchResources);
        QCOMPARE(QString::number(viewer->ResourceID()), frmSearchResources::Tag(item));
        QCOMPARE(viewer->loads, 1);
        QCOMPARE(search->MyTextForm(), viewer.data());
        QVERIFY(viewer->isVisible());
        QVERIFY(frmSearchResources::Ghosted(item));

        doubleClick(search->lvwResources, item);
        search->lvwResources_DblClick();
        QCOMPARE(testing::FakeViewer::all().size(), before + 1);

        viewer->Unload();
        QVERIFY(!frmSearchResources::Ghosted(item));
        doubleClick(search->lvwResources, item);
        QCOMPARE(testing::FakeViewer::all().size(), before + 2);
        QVERIFY(frmSearchResources::Ghosted(item));
    }

    void aMapOpensNothingWithoutTheDrawingWindowAndItsPictureWithIt()
    {
        testcontent::Builder b;
        b.row(u"Resources"_s, {u"ResourceID"_s, u"ResTypeID"_s, u"Caption"_s, u"PicturePath"_s},
            {7, 5, u"Χάρτης της Αττικής"_s, u"attiki.jpg"_s});
        frmSearchResources *search = open(b.database());
        QTreeWidgetItem *item = search->lvwResources->topLevelItem(0);
        QCOMPARE(frmSearchResources::IconKey(item), u"xartis"_s);

        Session::current()->setViewerFactory(int(SourceViewer::Kind::Map), {});
        const qsizetype before = testing::FakeViewer::all().size();
        doubleClick(search->lvwResources, item);
        QCOMPARE(testing::FakeViewer::all().size(), before);
        QVERIFY(!frmSearchResources::Ghosted(item));
        QVERIFY(m_boxes.isEmpty());

        testing::FakeViewer::registerAll(*Session::current());
        doubleClick(search->lvwResources, item);
        QCOMPARE(testing::FakeViewer::all().size(), before + 1);
        testing::FakeViewer *map = testing::FakeViewer::all().last();
        QCOMPARE(map->mapPicture, u"/nowhere/Pictures/attiki.jpg"_s);
        QCOMPARE(map->mapCaption, u"Χάρτης της Αττικής"_s);
        QCOMPARE(map->scrollBars, 1);
        QCOMPARE(map->ResourceID(), 7);
        QCOMPARE(search->MyDrawingForm(), map);
        QVERIFY(frmSearchResources::Ghosted(item));
    }

    void soundAndVideoRowsMakeNoItemAndLeaveEveryTagAlone()
    {
        testcontent::Builder b;
        findingcontent::resource(b, 1, 3, u"Ήχος πρώτος"_s, QVariant());
        findingcontent::resource(b, 2, 2, u"Κείμενο"_s, QVariant());
        findingcontent::resource(b, 3, 4, u"Βίντεο"_s, QVariant());
        findingcontent::resource(b, 4, 5, QVariant(), u"Χάρτης"_s);
        b.row(u"ResTypes"_s, {u"ResTypeID"_s, u"ResType"_s}, {3, u"Ήχος"_s});
        b.row(u"ResTypes"_s, {u"ResTypeID"_s, u"ResType"_s}, {4, u"Βίντεο"_s});
        frmSearchResources *search = open(b.database());
        QVERIFY(m_boxes.isEmpty());
        QCOMPARE(texts(search->lvwResources), QStringList({u"Κείμενο"_s, u"Χάρτης"_s}));
        QCOMPARE(frmSearchResources::Tag(search->lvwResources->topLevelItem(0)), u"2"_s);
        QCOMPARE(frmSearchResources::Tag(search->lvwResources->topLevelItem(1)), u"4"_s);
        // Picking the sound or the video type lists nothing, and says nothing.
        choose(search->cmbResType, u"Ήχος"_s);
        QCOMPARE(search->lvwResources->topLevelItemCount(), 0);
        choose(search->cmbResType, u"Βίντεο"_s);
        QCOMPARE(search->lvwResources->topLevelItemCount(), 0);
        QVERIFY(m_boxes.isEmpty());
    }

    void aTextListedJustBeforeASoundOpensItselfOnRealContent()
    {
        // The Jet test file lists its sound source right after the text 202.
        QTemporaryDir data;
        QVERIFY(QDir(data.path()).mkpath(u"piges"_s));
        QFile text(data.path() + u"/piges/pig01.rtf"_s);
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.write("{\\rtf1\\ansi The battle of Marathon.\\par}");
        text.close();
        registerViewingWindows(*Session::current());
        modGlobal::gDataFolder = data.path();
        frmSearchResources *search = open(
            content::Database::OpenDatabase(QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb")));
        QVERIFY(search);
        QVERIFY(m_boxes.isEmpty());
        QVERIFY(!search->FindItem(u"215"_s));
        QTreeWidgetItem *item = search->FindItem(u"202"_s);
        QVERIFY(item);
        QCOMPARE(item->text(0), u"Ιστορίαι, βιβλίο 6 (Ερατώ), 102-117"_s);
        const qsizetype windows = m_shell->mdiArea()->subWindowList().size();
        doubleClick(search->lvwResources, item);
        QVERIFY2(m_boxes.isEmpty(), qPrintable(m_boxes.isEmpty() ? QString() : m_boxes.at(0).text));
        QCOMPARE(m_shell->mdiArea()->subWindowList().size(), windows + 1);
        QMdiSubWindow *opened = m_shell->mdiArea()->subWindowList().last();
        auto *viewer = qobject_cast<SourceViewer *>(opened->widget());
        QVERIFY(viewer);
        QCOMPARE(viewer->ResourceID(), 202);
        QVERIFY(frmSearchResources::Ghosted(item));
        opened->close();
        QVERIFY(!frmSearchResources::Ghosted(item));
        testing::FakeViewer::registerAll(*Session::current());
    }

    void aResultWhoseFileIsMissingGivesTheBoxAndLeavesNoWindowBehind()
    {
        testcontent::Builder b;
        b.row(u"Resources"_s, {u"ResourceID"_s, u"ResTypeID"_s, u"Caption"_s, u"PicturePath"_s},
            {1, 1, u"Φωτογραφία"_s, u"lost.jpg"_s});
        b.textResource(2, u"lost.rtf"_s, u"Κείμενο"_s);
        b.row(u"Resources"_s, {u"ResourceID"_s, u"ResTypeID"_s, u"Caption"_s, u"PicturePath"_s},
            {3, 5, u"Χάρτης"_s, u"lost.gif"_s});
        registerViewingWindows(*Session::current());
        Session::current()->setViewerFactory(
            int(SourceViewer::Kind::Map), [](Session &) -> QWidget * { return new frmDrawing; });
        frmSearchResources *search = open(b.database());
        QCOMPARE(search->lvwResources->topLevelItemCount(), 3);
        const auto viewers = [] {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            qsizetype count = 0;
            for (QWidget *widget : QApplication::allWidgets())
                count += qobject_cast<SourceViewer *>(widget) ? 1 : 0;
            return count;
        };
        const qsizetype before = viewers();
        const qsizetype windows = m_shell->mdiArea()->subWindowList().size();
        for (int i = 0; i < 3; ++i) {
            QTreeWidgetItem *item = search->lvwResources->topLevelItem(i);
            for (int attempt = 0; attempt < 2; ++attempt) {
                m_boxes.clear();
                doubleClick(search->lvwResources, item);
                QVERIFY2(m_boxes.size() == 1, qPrintable(item->text(0)));
                QVERIFY2(m_boxes.at(0).text.startsWith(u"Λάθος # "_s), qPrintable(m_boxes.at(0).text));
                QCOMPARE(m_boxes.at(0).style, 16);
                QVERIFY(!frmSearchResources::Ghosted(item));
                QCOMPARE(m_shell->mdiArea()->subWindowList().size(), windows);
                QCOMPARE(viewers(), before);
            }
        }
        testing::FakeViewer::registerAll(*Session::current());
    }

    void aFirstLoadThatFailedIsDoneAgainOnTheNextOpening()
    {
        // Content without its tables: the boxes cannot be filled.
        QVERIFY(!open(content::Database::fromConnection(content::sqlite::Connection::openMemory())));
        QCOMPARE(m_boxes.size(), 1);
        QVERIFY(!frmSearchResources::instance(false));
        frmSearchResources *search = open(findingcontent::build());
        QVERIFY(search);
        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(search->lvwResources->topLevelItemCount(), 14);
        QVERIFY(search->isVisible());
    }

    void aPupilFindsASampleSourceByKeywordAndOpensIt()
    {
        const QString path = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");
        if (!QFileInfo::exists(path))
            QSKIP("the sample course is not built");
        // The program's own viewers, not the stand-ins.
        registerViewingWindows(*Session::current());
        modGlobal::gDataFolder = QFileInfo(path).absolutePath();
        modGlobal::gDatabasePath = path;
        frmSearchResources *search = nullptr;
        QVERIFY(platform::guarded([&] { search = frmSearchResources::instance(); }));
        QVERIFY(search->cmbKeyWord->count() > 1);
        search->cmbKeyWord->setCurrentIndex(0);
        QVERIFY(search->lvwResources->topLevelItemCount() > 0);
        QTreeWidgetItem *item = search->lvwResources->topLevelItem(0);
        const int windows = m_shell->mdiArea()->subWindowList().size();
        doubleClick(search->lvwResources, item);
        QVERIFY(m_boxes.isEmpty());
        QVERIFY(frmSearchResources::Ghosted(item));
        QCOMPARE(m_shell->mdiArea()->subWindowList().size(), windows + 1);
        QMdiSubWindow *opened = m_shell->mdiArea()->subWindowList().last();
        auto *viewer = qobject_cast<SourceViewer *>(opened->widget());
        QVERIFY(viewer);
        QCOMPARE(QString::number(viewer->ResourceID()), frmSearchResources::Tag(item));
        opened->close();
        QVERIFY(!frmSearchResources::Ghosted(item));
        modGlobal::gDatabasePath.clear();
        testing::FakeViewer::registerAll(*Session::current());
    }
};

QTEST_MAIN(tst_frmSearchResources)
#include "tst_frmsearchresources.moc"
