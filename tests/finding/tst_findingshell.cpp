// The search and the index in the program's own shell on the sample course: the menu
// opens them, a pupil finds a source by keyword and opens it, a word of a text opens its
// term, and a term's sound plays. Pictures of both windows land in the test output folder.

#include "sampleshell.h"

#include <btn.h>
#include <childwindows.h>
#include <chotword.h>
#include <colhotwords.h>
#include <database.h>
#include <frmindex.h>
#include <frmmediaplayer.h>
#include <frmsearchresources.h>
#include <frmtextresource.h>
#include <mdiform1.h>
#include <modglobal.h>
#include <player.h>
#include <richtextbox.h>

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

class tst_FindingShell : public QObject
{
    Q_OBJECT

private:
    testing::TestSession m_session;
    testing::MsgBoxRecorder m_boxes;
    MDIForm1 *m_shell = nullptr;

private slots:
    void initTestCase()
    {
        if (!QFileInfo::exists(testing::sampleCoursePath))
            QSKIP("the sample course is not built");
        m_shell = testing::showSampleShell(m_session, m_boxes);
        QVERIFY(m_shell);
    }

    void cleanupTestCase()
    {
        if (m_shell)
            m_shell->close();
        modGlobal::gDatabase.reset();
    }

    void aPupilFindsASourceByKeywordAndOpensIt()
    {
        m_shell->mnufacilities->trigger();
        frmSearchResources *search = frmSearchResources::instance(false);
        QVERIFY(search);
        QVERIFY(search->isVisible());
        QCOMPARE(search->parentWidget()->parentWidget()->parentWidget(), m_shell->mdiArea());
        const int keyword = search->cmbKeyWord->findText(u"Μάρμαρο"_s);
        QVERIFY(keyword >= 0);
        search->cmbKeyWord->setCurrentIndex(keyword);
        QVERIFY(search->lvwResources->topLevelItemCount() > 0);
        testing::savePicture(m_shell, u"search-marmaro.png"_s);

        QTreeWidgetItem *item = search->lvwResources->topLevelItem(0);
        search->lvwResources->setCurrentItem(item);
        emit search->lvwResources->itemDoubleClicked(item, 0);
        QVERIFY(m_boxes.isEmpty());
        QVERIFY(frmSearchResources::Ghosted(item));
        auto *viewer = qobject_cast<SourceViewer *>(m_shell->mdiArea()->activeSubWindow()->widget());
        QVERIFY(viewer);
        QCOMPARE(QString::number(viewer->ResourceID()), frmSearchResources::Tag(item));
        testing::savePicture(m_shell, u"search-opened.png"_s);
        viewer->Unload();
        QVERIFY(!frmSearchResources::Ghosted(item));
        search->parentWidget()->close();
        QVERIFY(!frmSearchResources::instance(false));
    }

    void theCatalogueMenuOpensAndClosesTheIndexWithItsMark()
    {
        m_shell->mnuCatalogue->trigger();
        frmIndex *index = frmIndex::instance(false);
        QVERIFY(index);
        QVERIFY(index->isVisible());
        QVERIFY(m_shell->mnuCatalogue->isChecked());
        QVERIFY(index->LvEnnoia->topLevelItemCount() > 20);
        testing::savePicture(m_shell, u"index.png"_s);
        m_shell->mnuCatalogue->trigger();
        QVERIFY(!frmIndex::instance(false));
        QVERIFY(!m_shell->mnuCatalogue->isChecked());
    }

    void aWordOfATextOpensItsTermAndThePupilHearsIt()
    {
        auto *text = new frmTextResource;
        text->setResourceID(104);
        text->Load();
        modGlobal::CenterAndShow(text);
        const CHotWord *term = nullptr;
        for (const CHotWord &word : *text->hotWords()) {
            if (word.HotwordType() == 0 && word.phrase() == u"Μίνωας") {
                term = &word;
                break;
            }
        }
        QVERIFY(term);
        text->rtbTextResource->setSelStart(term->First() + 1);
        text->rtbTextResource_MouseUp(1, 0, 0, 0);
        frmIndex *index = frmIndex::instance(false);
        QVERIFY(index);
        QVERIFY(index->isVisible());
        QVERIFY(m_shell->mnuCatalogue->isChecked());
        QCOMPARE(index->LvEnnoia->currentItem()->text(0), u"Μίνωας"_s);
        // The buttons still belong to the first term of the list until the pupil clicks
        // the term itself.
        const QRect place = index->LvEnnoia->visualItemRect(index->LvEnnoia->currentItem());
        QTest::mouseClick(index->LvEnnoia->viewport(), Qt::LeftButton, {}, place.center());
        QVERIFY(index->cmdSound->isEnabled());

        index->cmdSound_Click();
        QVERIFY(m_boxes.isEmpty());
        frmMediaPlayer *player = index->mediaPlayer();
        QVERIFY(player);
        QVERIFY(player->fileName().endsWith(u"/Sounds/term_minoas.wav"_s));
        QTRY_COMPARE_WITH_TIMEOUT(player->player()->playbackState(), media::Player::PlayingState, 10000);
        testing::savePicture(m_shell, u"index-sound.png"_s);
        index->parentWidget()->close();
        QVERIFY(!m_shell->mnuCatalogue->isChecked());
    }
};

QTEST_MAIN(tst_FindingShell)
#include "tst_findingshell.moc"
