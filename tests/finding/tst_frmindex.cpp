// The index window: tabs, lists, the term's explanation and buttons, the hot word's
// call, the picture window and the media player it opens, and the shell's mark.

#include "../support/testsession.h"
#include "../viewing/viewershell.h"
#include "findingcontent.h"

#include <btn.h>
#include <database.h>
#include <errorpolicy.h>
#include <findingwindows.h>
#include <frmfoto.h>
#include <frmindex.h>
#include <frmmediaplayer.h>
#include <richtextbox.h>
#include <session.h>
#include <viewingwindows.h>
#include <sqliteconnection.h>

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {

// What a text viewer's index word does; false while no index has registered.
bool openIndexLink(
    Session &session, qint32 indexType, const QString &term, const QString &explanation, const QString &picture)
{
    const auto &open = session.links().openIndex;
    if (!open)
        return false;
    open(indexType, term, explanation, picture);
    return true;
}

QStringList terms(const QTreeWidget *list)
{
    QStringList out;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        out << list->topLevelItem(i)->text(0);
    return out;
}

void click(QTreeWidget *list, int row)
{
    QTreeWidgetItem *item = list->topLevelItem(row);
    list->scrollToItem(item);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
}

// Index content with files: terms of two types, one with picture, sound and video (and a
// video that is missing), one without explanation, and a type with no terms.
std::unique_ptr<content::Database> indexContent()
{
    testcontent::Builder b;
    b.row(u"EuretirioTypes"_s, {u"EuretirioTypeID"_s, u"EuretirioType"_s}, {1, u"Πρόσωπα"_s});
    b.row(u"EuretirioTypes"_s, {u"EuretirioTypeID"_s, u"EuretirioType"_s}, {3, u"Τόποι"_s});
    b.row(u"EuretirioTypes"_s, {u"EuretirioTypeID"_s, u"EuretirioType"_s}, {4, u"Κενό"_s});
    b.term(
        1, u"Περικλής"_s, u"Αθηναίος πολιτικός."_s, 1, u"pericles.png"_s, u"pericles.wav"_s, u"lost.webm"_s);
    b.term(2, u"Αριστείδης"_s, u"Ο δίκαιος."_s, 1);
    b.term(3, u"Δήλος"_s, u"Νησί των Κυκλάδων."_s, 3, QVariant(), QVariant(), u"delos.webm"_s);
    b.term(4, u"Νάξος"_s, QVariant(), 3, u"naxos.png"_s);
    return b.database();
}

void writeWav(const QString &path)
{
    // A tenth of a second of silence, 8 kHz mono 8-bit.
    const int samples = 800;
    QByteArray data;
    auto u32 = [&](quint32 v) { data.append(reinterpret_cast<const char *>(&v), 4); };
    auto u16 = [&](quint16 v) { data.append(reinterpret_cast<const char *>(&v), 2); };
    data.append("RIFF");
    u32(36 + samples);
    data.append("WAVEfmt ");
    u32(16);
    u16(1);
    u16(1);
    u32(8000);
    u32(8000);
    u16(1);
    u16(8);
    data.append("data");
    u32(samples);
    data.append(QByteArray(samples, char(0x80)));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(data);
}

} // namespace

class tst_frmIndex : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<testing::TestSession> m_s;
    testing::ViewerShell *m_shell = nullptr; // the session's shell
    QTemporaryDir m_data;

    Session &session() { return *m_s->session; }
    QList<testing::ShownBox> &boxes() { return m_s->host->boxes; }
    frmIndex *shownIndex() { return session().window<frmIndex>(Session::Window::Index, false); }

    frmIndex *open()
    {
        frmIndex *index = nullptr;
        platform::guarded([&] {
            index = session().window<frmIndex>(Session::Window::Index);
            CenterAndShow(session(), index);
        });
        return index;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_data.isValid());
        QDir(m_data.path()).mkpath(u"Sounds"_s);
        QDir(m_data.path()).mkpath(u"Photos"_s);
        writeWav(m_data.path() + u"/Sounds/pericles.wav"_s);
        QImage picture(40, 20, QImage::Format_RGB32);
        picture.fill(Qt::darkRed);
        QVERIFY(picture.save(m_data.path() + u"/Photos/pericles.png"_s));
    }

    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        registerViewingWindows(session());
        finding::registerFindingWindows(session());
        m_shell = new testing::ViewerShell;
        session().setWindow(Session::Window::Shell, m_shell);
        m_shell->show();
        session().content().dataFolder = m_data.path();
        session().content().database = indexContent();
    }

    void cleanup()
    {
        if (frmIndex *index = shownIndex())
            index->close();
        // The session closes its windows, the shell last, and the content.
        m_s.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void loadShowsTheTabsAndAllTermsInOrderAndMarksTheShell()
    {
        frmIndex *index = open();
        QVERIFY(index);
        QCOMPARE(index->windowTitle(), u"Ευρετήριο"_s);
        QCOMPARE(index->tbs->count(), 4);
        QCOMPARE(index->tbs->tabText(0), u"Αλφαβητικό"_s);
        QCOMPARE(index->tbs->tabData(0).toString(), u"tab0"_s);
        QCOMPARE(index->tbs->tabData(2).toString(), u"tab3"_s);
        QCOMPARE(index->tbs->currentIndex(), 0);
        QCOMPARE(
            terms(index->LvEnnoia), QStringList({u"Αριστείδης"_s, u"Δήλος"_s, u"Νάξος"_s, u"Περικλής"_s}));
        // The first term is shown; the buttons were disabled after it.
        QCOMPARE(index->LvEnnoia->currentItem()->text(0), u"Αριστείδης"_s);
        QCOMPARE(index->rtfExp->Text(), u"Ο δίκαιος."_s);
        QVERIFY(!index->cmdPicture->isEnabled());
        QVERIFY(!index->cmdSound->isEnabled());
        QVERIFY(!index->cmdVideo->isEnabled());
        QVERIFY(m_shell->toggleChecked(ShellWindow::Toggle::Catalogue));
        index->close();
        QVERIFY(!m_shell->toggleChecked(ShellWindow::Toggle::Catalogue));
        QVERIFY(!shownIndex());
    }

    void aTermsClickShowsItsExplanationAndButtons()
    {
        frmIndex *index = open();
        click(index->LvEnnoia, 3);
        QCOMPARE(index->rtfExp->Text(), u"Αθηναίος πολιτικός."_s);
        QVERIFY(index->cmdPicture->isEnabled());
        QCOMPARE(index->cmdPicture->Tag(), u"pericles.png"_s);
        QVERIFY(index->cmdSound->isEnabled());
        QVERIFY(index->cmdVideo->isEnabled());
        QCOMPARE(index->SoundPath, m_data.path() + u"/Sounds/pericles.wav"_s);
        click(index->LvEnnoia, 1);
        QVERIFY(!index->cmdPicture->isEnabled());
        QVERIFY(!index->cmdSound->isEnabled());
        QVERIFY(index->cmdVideo->isEnabled());
    }

    void theArrowKeysMoveTheItemClickAlong()
    {
        frmIndex *index = open();
        QCOMPARE(index->LvEnnoia->currentItem()->text(0), u"Αριστείδης"_s);
        QTest::keyClick(index->LvEnnoia, Qt::Key_End);
        QCOMPARE(index->LvEnnoia->currentItem()->text(0), u"Περικλής"_s);
        QCOMPARE(index->rtfExp->Text(), u"Αθηναίος πολιτικός."_s);
        QVERIFY(index->cmdSound->isEnabled());
        QTest::keyClick(index->LvEnnoia, Qt::Key_Up);
        QTest::keyClick(index->LvEnnoia, Qt::Key_Up);
        QCOMPARE(index->LvEnnoia->currentItem()->text(0), u"Δήλος"_s);
        QVERIFY(!index->cmdSound->isEnabled());
    }

    void aTermWithNullExplanationKeepsTheOneBefore()
    {
        frmIndex *index = open();
        click(index->LvEnnoia, 1);
        QCOMPARE(index->rtfExp->Text(), u"Νησί των Κυκλάδων."_s);
        click(index->LvEnnoia, 2);
        QCOMPARE(index->LvEnnoia->currentItem()->text(0), u"Νάξος"_s);
        QCOMPARE(index->rtfExp->Text(), u"Νησί των Κυκλάδων."_s);
        QVERIFY(index->cmdPicture->isEnabled());
    }

    void aTabListsItsTypeAndTheCurrentTabRefillsNothing()
    {
        frmIndex *index = open();
        index->tbs->setCurrentIndex(2);
        QCOMPARE(index->currentType(), 3);
        QCOMPARE(terms(index->LvEnnoia), QStringList({u"Δήλος"_s, u"Νάξος"_s}));
        click(index->LvEnnoia, 1);
        QCOMPARE(index->LvEnnoia->currentItem()->text(0), u"Νάξος"_s);
        // The tab already chosen: the list stays as it is, with its choice.
        const QRect tab = index->tbs->tabRect(2);
        QTest::mouseClick(index->tbs, Qt::LeftButton, {}, tab.center());
        QCOMPARE(index->tbs->currentIndex(), 2);
        QCOMPARE(index->LvEnnoia->currentItem()->text(0), u"Νάξος"_s);
    }

    void anEmptyTypeListsNothingAndTheButtonsKeepTheirState()
    {
        frmIndex *index = open();
        click(index->LvEnnoia, 3);
        QVERIFY(index->cmdSound->isEnabled());
        index->tbs->setCurrentIndex(3);
        QCOMPARE(index->currentType(), 4);
        QCOMPARE(index->LvEnnoia->topLevelItemCount(), 0);
        QCOMPARE(index->rtfExp->Text(), QString());
        QVERIFY(index->cmdPicture->isEnabled());
        QVERIFY(index->cmdSound->isEnabled());
        QVERIFY(index->cmdVideo->isEnabled());
    }

    void anIndexWordOpensTheIndexOnItsTypesTabAtTheTerm()
    {
        QVERIFY(openIndexLink(session(), 3, u"ΝΆΞΟΣ"_s, u"Από τον λόγο του κειμένου."_s, QString()));
        frmIndex *index = shownIndex();
        QVERIFY(index);
        QVERIFY(index->isVisible());
        QCOMPARE(index->tbs->currentIndex(), 2);
        QCOMPARE(index->currentType(), 3);
        QCOMPARE(index->LvEnnoia->currentItem()->text(0), u"Νάξος"_s);
        QVERIFY(index->LvEnnoia->currentItem()->isSelected());
        QCOMPARE(index->rtfExp->Text(), u"Από τον λόγο του κειμένου."_s);
        QVERIFY(!index->cmdPicture->isEnabled());
        QCOMPARE(index->cmdPicture->Tag(), QString());
    }

    void anIndexWordWithoutTypeOpensOnTheAlphabeticalTab()
    {
        frmIndex *index = open();
        index->tbs->setCurrentIndex(2);
        QVERIFY(openIndexLink(session(), 0, u"Περικλής"_s, u"Εξήγηση."_s, u"pericles.png"_s));
        QCOMPARE(index->tbs->currentIndex(), 0);
        QCOMPARE(index->currentType(), 0);
        QCOMPARE(index->LvEnnoia->topLevelItemCount(), 4);
        QCOMPARE(index->LvEnnoia->currentItem()->text(0), u"Περικλής"_s);
        QVERIFY(index->cmdPicture->isEnabled());
        QCOMPARE(index->cmdPicture->Tag(), u"pericles.png"_s);
    }

    void anIndexWordNotInItsTypesListSelectsNothingButShowsTheExplanation()
    {
        // "Περικλής" is a term of type 1, not of type 3.
        QVERIFY(openIndexLink(session(), 3, u"Περικλής"_s, u"Από τον λόγο του κειμένου."_s, QString()));
        frmIndex *index = shownIndex();
        QVERIFY(index);
        QCOMPARE(index->currentType(), 3);
        QCOMPARE(terms(index->LvEnnoia), QStringList({u"Δήλος"_s, u"Νάξος"_s}));
        // The word selects no term: the choice stays the one that filling the list made.
        const QList<QTreeWidgetItem *> selected = index->LvEnnoia->selectedItems();
        QCOMPARE(selected.size(), 1);
        QCOMPARE(selected.first()->text(0), u"Δήλος"_s);
        QCOMPARE(index->rtfExp->Text(), u"Από τον λόγο του κειμένου."_s);
        QVERIFY(index->rtfExp->isVisible());
        QVERIFY(!index->cmdPicture->isEnabled());
    }

    void aFirstLoadThatFailedIsDoneAgainOnTheNextOpening()
    {
        // Content without its tables: the tabs cannot be filled.
        session().content().database
            = content::Database::fromConnection(content::sqlite::Connection::openMemory());
        QVERIFY(!open());
        QCOMPARE(boxes().size(), 1);
        QVERIFY(!shownIndex());
        // An index word meets the same failure, and keeps no half-made window either.
        platform::guarded([this] { openIndexLink(session(), 3, u"Νάξος"_s, u"Εξήγηση."_s, QString()); });
        QCOMPARE(boxes().size(), 2);
        QVERIFY(!shownIndex());
        session().content().database = indexContent();
        frmIndex *index = open();
        QVERIFY(index);
        QCOMPARE(index->tbs->count(), 4);
        QCOMPARE(index->LvEnnoia->topLevelItemCount(), 4);
        QVERIFY(index->isVisible());
    }

    void anIndexWordFindsTheFirstTermThatBeginsWithItsWholeWords()
    {
        frmIndex *index = open();
        index->LvEnnoia->topLevelItem(1)->setText(0, u"Δήλος (νησί)"_s);
        index->LvEnnoia->topLevelItem(2)->setText(0, u"Δήλος, το ιερό"_s);
        index->DisplayHotword(u"δήλος"_s, u"Από το κείμενο."_s, QString());
        QCOMPARE(index->LvEnnoia->currentItem(), index->LvEnnoia->topLevelItem(1));
        QVERIFY(index->LvEnnoia->topLevelItem(1)->isSelected());
        // Part of a word is no word.
        index->LvEnnoia->setCurrentItem(index->LvEnnoia->topLevelItem(0));
        index->DisplayHotword(u"Περικλ"_s, u"Από το κείμενο."_s, QString());
        QCOMPARE(index->LvEnnoia->currentItem(), index->LvEnnoia->topLevelItem(0));
    }

    void thePictureButtonShowsTheTermsPicture()
    {
        frmIndex *index = open();
        click(index->LvEnnoia, 3);
        QTest::mouseClick(index->cmdPicture, Qt::LeftButton);
        QVERIFY(boxes().isEmpty());
        QPointer<frmFoto> foto = index->pictureWindow();
        QVERIFY(foto);
        QVERIFY(foto->isVisible());
        QCOMPARE(foto->size(), QSize(40, 20));
        // Another term closes it.
        click(index->LvEnnoia, 0);
        QTRY_VERIFY_WITH_TIMEOUT(!foto || !foto->isVisible(), 5000);
    }

    void theSoundButtonPlaysInACentredPlayerAndAnotherTermUnloadsIt()
    {
        frmIndex *index = open();
        click(index->LvEnnoia, 3);
        QTest::mouseClick(index->cmdSound, Qt::LeftButton);
        QVERIFY(boxes().isEmpty());
        QPointer<frmMediaPlayer> player = index->mediaPlayer();
        QVERIFY(player);
        QCOMPARE(index->MediaKind, 0);
        QCOMPARE(player->windowTitle(), u"Ήχος ευρετηρίου"_s);
        QCOMPARE(player->fileName(), m_data.path() + u"/Sounds/pericles.wav"_s);
        auto *sub = qobject_cast<QMdiSubWindow *>(player->parentWidget());
        QVERIFY(sub);
        const QWidget *area = m_shell->mdiArea()->viewport();
        QVERIFY(qAbs(sub->x() - (area->width() - sub->width()) / 2) <= 1);
        QVERIFY(qAbs(sub->y() - (area->height() - sub->height()) / 2) <= 1);
        click(index->LvEnnoia, 0);
        QTRY_VERIFY_WITH_TIMEOUT(!player, 5000);
    }

    void anotherPressOfTheSoundButtonStopsTheSoundPlaying()
    {
        frmIndex *index = open();
        click(index->LvEnnoia, 3);
        QTest::mouseClick(index->cmdSound, Qt::LeftButton);
        QPointer<frmMediaPlayer> first = index->mediaPlayer();
        QVERIFY(first);
        QTest::mouseClick(index->cmdSound, Qt::LeftButton);
        QPointer<frmMediaPlayer> second = index->mediaPlayer();
        QVERIFY(second);
        QVERIFY(second != first);
        QTRY_VERIFY_WITH_TIMEOUT(!first, 5000);
        second->Unload();
    }

    void theEnterKeyOnTheChosenTermLeavesItsSoundPlaying()
    {
        frmIndex *index = open();
        click(index->LvEnnoia, 3);
        QTest::mouseClick(index->cmdSound, Qt::LeftButton);
        QPointer<frmMediaPlayer> player = index->mediaPlayer();
        QVERIFY(player);
        index->LvEnnoia->setFocus();
        QTest::keyClick(index->LvEnnoia, Qt::Key_Return);
        QTest::keyClick(index->LvEnnoia, Qt::Key_Enter);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(player);
        QVERIFY(index->cmdSound->isEnabled());
        player->Unload();
    }

    void aMissingVideoGivesItsWarning()
    {
        frmIndex *index = open();
        click(index->LvEnnoia, 3);
        QTest::mouseClick(index->cmdVideo, Qt::LeftButton);
        QCOMPARE(boxes().size(), 1);
        QCOMPARE(boxes().at(0).text, u"Το αρχείο βίντεο δεν βρέθηκε !!!"_s);
        QCOMPARE(boxes().at(0).style, 48);
        QCOMPARE(boxes().at(0).title, u"Tremidia"_s);
        QVERIFY(!index->mediaPlayer());
    }

    void aMissingSoundGivesItsWarning()
    {
        frmIndex *index = open();
        click(index->LvEnnoia, 3);
        index->SoundPath = m_data.path() + u"/Sounds/nothing.wav"_s;
        index->cmdSound_Click();
        QCOMPARE(boxes().size(), 1);
        QCOMPARE(boxes().at(0).text, u"Το αρχείο ήχου δεν βρέθηκε !!!"_s);
        QCOMPARE(boxes().at(0).style, 48);
    }

    void theFittedPictureFillsPicture1KeepingItsShape()
    {
        frmIndex *index = open();
        index->Picture1->resize(200, 100);
        QPixmap picture(50, 50);
        picture.fill(Qt::blue);
        index->FitPicture(picture);
        QCOMPARE(index->Image1->geometry(), QRect(50, 0, 100, 100));
    }
};

QTEST_MAIN(tst_frmIndex)
#include "tst_frmindex.moc"
