// The search window: its boxes, the list that each pick narrows, opening a result and
// the item's ghosting while the result's window is open.

#include "../support/testsession.h"
#include "../viewing/fakeviewers.h"
#include "../viewing/viewershell.h"
#include "findingcontent.h"

#include <database.h>
#include <errorpolicy.h>
#include <findingwindows.h>
#include <frmdrawing.h>
#include <frmsearchresources.h>
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
    std::unique_ptr<testing::TestSession> m_s;
    testing::ViewerShell *m_shell = nullptr; // the session's shell
    std::unique_ptr<QTemporaryDir> m_dir;

    Session &session() { return *m_s->session; }
    QList<testing::ShownBox> &boxes() { return m_s->host->boxes; }
    frmSearchResources *shownSearch()
    {
        return session().window<frmSearchResources>(Session::Window::SearchResources, false);
    }
    // A content file of the test's own, for the content it builds.
    QString contentFile() const { return m_dir->filePath(u"content.sqlite"_s); }

    // The search on the content given; `file`, when the content was written to one, is
    // what a double click opens its source from.
    frmSearchResources *open(std::unique_ptr<content::Database> db, const QString &file = QString())
    {
        session().content().database = std::move(db);
        if (!file.isEmpty())
            session().content().databasePath = file;
        frmSearchResources *search = nullptr;
        platform::guarded(
            [&] { search = session().window<frmSearchResources>(Session::Window::SearchResources); });
        return search;
    }

    void registerFakeViewers() { testing::FakeViewer::registerAll(session()); }
    void registerProgramViewers() { registerViewingWindows(session()); }
    void setViewer(SourceViewer::Kind kind, std::function<SourceViewer *()> make)
    {
        session().setViewerFactory(
            int(kind), [make](Session &) -> QWidget * { return make ? make() : nullptr; });
    }

private slots:
    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        finding::registerFindingWindows(session());
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_shell = new testing::ViewerShell;
        session().setWindow(Session::Window::Shell, m_shell);
        m_shell->show();
        session().content().dataFolder = u"/nowhere"_s;
        registerFakeViewers();
    }

    void cleanup()
    {
        // The session closes its windows, the shell last, and the content.
        m_s.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_dir.reset();
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
        QVERIFY(boxes().isEmpty());
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
        QVERIFY(boxes().isEmpty());
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
        QVERIFY(boxes().isEmpty());
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
        frmSearchResources *search = open(findingcontent::build(contentFile()), contentFile());
        choose(search->cmbResType, u"Κείμενο"_s);
        QTreeWidgetItem *item = search->lvwResources->topLevelItem(0);
        const qsizetype before = testing::FakeViewer::all().size();
        doubleClick(search->lvwResources, item);
        QVERIFY2(boxes().isEmpty(), boxes().isEmpty() ? "" : qPrintable(boxes().at(0).text));
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
        testcontent::Builder b(contentFile());
        b.row(u"Resources"_s, {u"ResourceID"_s, u"ResTypeID"_s, u"Caption"_s, u"PicturePath"_s},
            {7, 5, u"Χάρτης της Αττικής"_s, u"attiki.jpg"_s});
        frmSearchResources *search = open(b.database(), contentFile());
        QTreeWidgetItem *item = search->lvwResources->topLevelItem(0);
        QCOMPARE(frmSearchResources::IconKey(item), u"xartis"_s);

        setViewer(SourceViewer::Kind::Map, {});
        const qsizetype before = testing::FakeViewer::all().size();
        doubleClick(search->lvwResources, item);
        QCOMPARE(testing::FakeViewer::all().size(), before);
        QVERIFY(!frmSearchResources::Ghosted(item));
        QVERIFY(boxes().isEmpty());

        registerFakeViewers();
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
        QVERIFY(boxes().isEmpty());
        QCOMPARE(texts(search->lvwResources), QStringList({u"Κείμενο"_s, u"Χάρτης"_s}));
        QCOMPARE(frmSearchResources::Tag(search->lvwResources->topLevelItem(0)), u"2"_s);
        QCOMPARE(frmSearchResources::Tag(search->lvwResources->topLevelItem(1)), u"4"_s);
        // Picking the sound or the video type lists nothing, and says nothing.
        choose(search->cmbResType, u"Ήχος"_s);
        QCOMPARE(search->lvwResources->topLevelItemCount(), 0);
        choose(search->cmbResType, u"Βίντεο"_s);
        QCOMPARE(search->lvwResources->topLevelItemCount(), 0);
        QVERIFY(boxes().isEmpty());
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
        registerProgramViewers();
        session().content().dataFolder = data.path();
        const QString jet = QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb");
        frmSearchResources *search = open(content::Database::OpenDatabase(jet), jet);
        QVERIFY(search);
        QVERIFY(boxes().isEmpty());
        QVERIFY(!search->FindItem(u"215"_s));
        QTreeWidgetItem *item = search->FindItem(u"202"_s);
        QVERIFY(item);
        QCOMPARE(item->text(0), u"Ιστορίαι, βιβλίο 6 (Ερατώ), 102-117"_s);
        const qsizetype windows = m_shell->mdiArea()->subWindowList().size();
        doubleClick(search->lvwResources, item);
        QVERIFY2(boxes().isEmpty(), qPrintable(boxes().isEmpty() ? QString() : boxes().at(0).text));
        QCOMPARE(m_shell->mdiArea()->subWindowList().size(), windows + 1);
        QMdiSubWindow *opened = m_shell->mdiArea()->subWindowList().last();
        auto *viewer = qobject_cast<SourceViewer *>(opened->widget());
        QVERIFY(viewer);
        QCOMPARE(viewer->ResourceID(), 202);
        QVERIFY(frmSearchResources::Ghosted(item));
        opened->close();
        QVERIFY(!frmSearchResources::Ghosted(item));
    }

    void aResultWhoseFileIsMissingGivesTheBoxAndLeavesNoWindowBehind()
    {
        testcontent::Builder b(contentFile());
        b.row(u"Resources"_s, {u"ResourceID"_s, u"ResTypeID"_s, u"Caption"_s, u"PicturePath"_s},
            {1, 1, u"Φωτογραφία"_s, u"lost.jpg"_s});
        b.textResource(2, u"lost.rtf"_s, u"Κείμενο"_s);
        b.row(u"Resources"_s, {u"ResourceID"_s, u"ResTypeID"_s, u"Caption"_s, u"PicturePath"_s},
            {3, 5, u"Χάρτης"_s, u"lost.gif"_s});
        registerProgramViewers();
        setViewer(SourceViewer::Kind::Map, [this] { return new frmDrawing(session()); });
        frmSearchResources *search = open(b.database(), contentFile());
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
                boxes().clear();
                doubleClick(search->lvwResources, item);
                QVERIFY2(boxes().size() == 1, qPrintable(item->text(0)));
                QVERIFY2(boxes().at(0).text.startsWith(u"Λάθος # "_s), qPrintable(boxes().at(0).text));
                QCOMPARE(boxes().at(0).style, 16);
                QVERIFY(!frmSearchResources::Ghosted(item));
                QCOMPARE(m_shell->mdiArea()->subWindowList().size(), windows);
                QCOMPARE(viewers(), before);
            }
        }
    }

    void aFirstLoadThatFailedIsDoneAgainOnTheNextOpening()
    {
        // Content without its tables: the boxes cannot be filled.
        QVERIFY(!open(content::Database::fromConnection(content::sqlite::Connection::openMemory())));
        QCOMPARE(boxes().size(), 1);
        QVERIFY(!shownSearch());
        frmSearchResources *search = open(findingcontent::build());
        QVERIFY(search);
        QCOMPARE(boxes().size(), 1);
        QCOMPARE(search->lvwResources->topLevelItemCount(), 14);
        QVERIFY(search->isVisible());
    }

    void aPupilFindsASampleSourceByKeywordAndOpensIt()
    {
        const QString path = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");
        if (!QFileInfo::exists(path))
            QSKIP("the sample course is not built");
        // The program's own viewers, not the stand-ins.
        registerProgramViewers();
        session().content().dataFolder = QFileInfo(path).absolutePath();
        session().content().databasePath = path;
        frmSearchResources *search = open(nullptr, path);
        QVERIFY(search);
        QVERIFY(search->cmbKeyWord->count() > 1);
        search->cmbKeyWord->setCurrentIndex(0);
        QVERIFY(search->lvwResources->topLevelItemCount() > 0);
        QTreeWidgetItem *item = search->lvwResources->topLevelItem(0);
        const int windows = m_shell->mdiArea()->subWindowList().size();
        doubleClick(search->lvwResources, item);
        QVERIFY(boxes().isEmpty());
        QVERIFY(frmSearchResources::Ghosted(item));
        QCOMPARE(m_shell->mdiArea()->subWindowList().size(), windows + 1);
        QMdiSubWindow *opened = m_shell->mdiArea()->subWindowList().last();
        auto *viewer = qobject_cast<SourceViewer *>(opened->widget());
        QVERIFY(viewer);
        QCOMPARE(QString::number(viewer->ResourceID()), frmSearchResources::Tag(item));
        opened->close();
        QVERIFY(!frmSearchResources::Ghosted(item));
    }
};

QTEST_MAIN(tst_frmSearchResources)
#include "tst_frmsearchresources.moc"
