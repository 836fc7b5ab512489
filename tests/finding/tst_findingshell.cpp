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
#include <player.h>
#include <richtextbox.h>
#include <session.h>

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
    std::unique_ptr<testing::TestSession> m_s;
    MDIForm1 *m_shell = nullptr;

    Session &session() { return *m_s->session; }
    const QList<testing::ShownBox> &boxes() const { return m_s->host->boxes; }
    template<typename Form> Form *shown(Session::Window kind) { return session().window<Form>(kind, false); }

private slots:
    void initTestCase()
    {
        if (!QFileInfo::exists(testing::sampleCoursePath))
            QSKIP("the sample course is not built");
        m_s = std::make_unique<testing::TestSession>();
        m_shell = testing::showSampleShell(session());
        QVERIFY(m_shell);
    }

    void cleanupTestCase() { testing::endSampleShell(m_shell, m_s); }

    void aPupilFindsASourceByKeywordAndOpensIt()
    {
        m_shell->mnufacilities->trigger();
        frmSearchResources *search = shown<frmSearchResources>(Session::Window::SearchResources);
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
        QVERIFY(boxes().isEmpty());
        QVERIFY(frmSearchResources::Ghosted(item));
        auto *viewer = qobject_cast<SourceViewer *>(m_shell->mdiArea()->activeSubWindow()->widget());
        QVERIFY(viewer);
        QCOMPARE(QString::number(viewer->ResourceID()), frmSearchResources::Tag(item));
        testing::savePicture(m_shell, u"search-opened.png"_s);
        viewer->Unload();
        QVERIFY(!frmSearchResources::Ghosted(item));
        search->parentWidget()->close();
        QVERIFY(!shown<frmSearchResources>(Session::Window::SearchResources));
    }

    void theCatalogueMenuOpensAndClosesTheIndexWithItsMark()
    {
        m_shell->mnuCatalogue->trigger();
        frmIndex *index = shown<frmIndex>(Session::Window::Index);
        QVERIFY(index);
        QVERIFY(index->isVisible());
        QVERIFY(m_shell->mnuCatalogue->isChecked());
        QVERIFY(index->LvEnnoia->topLevelItemCount() > 20);
        testing::savePicture(m_shell, u"index.png"_s);
        m_shell->mnuCatalogue->trigger();
        QVERIFY(!shown<frmIndex>(Session::Window::Index));
        QVERIFY(!m_shell->mnuCatalogue->isChecked());
    }

    void aWordOfATextOpensItsTermAndThePupilHearsIt()
    {
        auto *text = new frmTextResource(session());
        text->setResourceID(104);
        text->Load();
        CenterAndShow(session(), text);
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
        frmIndex *index = shown<frmIndex>(Session::Window::Index);
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
        QVERIFY(boxes().isEmpty());
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
