// The "Ήχος" key of the shell and F9 read what the pupil is looking at: the text viewer's
// selection or its whole text, the open tip, the index's explanation, the notepad's
// selection or its note, a photograph's caption and legend.

#include "../speech/recordingspeaker.h"
#include "../support/testsession.h"
#include "shownboxes.h"
#include "childwindows.h"
#include "mdiform1.h"

#include <btn.h>
#include <database.h>
#include <frmindex.h>
#include <frmnotes.h>
#include <frmresphoto.h>
#include <frmtextresource.h>
#include <frmtooltips.h>
#include <main_routine.h>
#include <msgbox.h>
#include <readaloud.h>
#include <richtextbox.h>
#include <session.h>
#include <tlb.h>
#include <words.h>

#include <QApplication>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString SamplePath = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");

} // namespace

class tst_ReadAloudWindows : public QObject
{
    Q_OBJECT

    QPointer<MDIForm1> m_shell;
    std::unique_ptr<testing::SpeakingSession> m_session;
    testing::RecordingSpeaker *m_speaker = nullptr;

    speech::ReadAloud &reader() { return m_session->reader(); }
    Session &session() { return m_session->session; }
    QStringList boxes() const { return testing::boxTexts(*m_session->session.host); }

    // The toolbar's key, pressed with the mouse.
    void pressSoundKey()
    {
        Btn *sound = nullptr;
        for (Btn *b : m_shell->TlbMain->Btn1) {
            if (b && b->Tag() == u"Sound")
                sound = b;
        }
        QVERIFY(sound);
        QTest::mouseClick(sound, Qt::LeftButton, {}, QPoint(sound->width() / 2, sound->height() / 2));
    }

    void showInShell(QWidget *child)
    {
        CenterAndShow(session(), child);
        auto *sub = qobject_cast<QMdiSubWindow *>(child->parentWidget());
        QVERIFY(sub);
        m_shell->area->setActiveSubWindow(sub);
        child->setFocus();
    }

    // A session with the shell on the sample's activity, and a speaker with or without an
    // engine behind it.
    void start(bool engine)
    {
        m_session = std::make_unique<testing::SpeakingSession>(engine);
        m_speaker = m_session->speaker;
        session().content().database = content::Database::OpenDatabase(SamplePath);
        session().content().dataFolder = QFileInfo(SamplePath).absolutePath();
        registerChildWindows(session());
        session().setWindowFactory(Session::Window::StartScreen, [](Session &) { return nullptr; });
        m_shell = new MDIForm1(session());
        m_shell->setSelectedActivity(1001);
        m_shell->show();
        m_shell->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_shell));
    }

private slots:
    void initTestCase()
    {
        if (!QFileInfo::exists(SamplePath))
            QSKIP("the sample course is not built");
    }

    void init() { start(true); }

    void cleanup()
    {
        if (frmToolTips *tip = session().window<frmToolTips>(Session::Window::Tip, false))
            tip->close();
        if (auto *notes = session().window<frmNotes>(Session::Window::Notes, false))
            notes->NotesDirty = false;
        if (m_shell) {
            for (QMdiSubWindow *sub : m_shell->area->subWindowList())
                sub->close();
            delete m_shell;
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        const QStringList shown = boxes();
        m_session.reset();
        QVERIFY2(shown.isEmpty(), qPrintable(shown.join(u"; "_s)));
    }

    void theSoundKeyReadsTheWholeTextAndAgainStops()
    {
        auto *viewer = new frmTextResource(session());
        viewer->setResourceID(101);
        viewer->Load();
        showInShell(viewer);
        pressSoundKey();
        QCOMPARE(m_speaker->said, QStringList {viewer->rtbTextResource->Text().trimmed()});
        QVERIFY(m_speaker->said.first().size() > 100);
        pressSoundKey();
        QCOMPARE(m_speaker->stops, 1);
        QCOMPARE(m_speaker->said.size(), 1);
    }

    void theTextViewersSelectionIsReadAlone()
    {
        auto *viewer = new frmTextResource(session());
        viewer->setResourceID(101);
        viewer->Load();
        showInShell(viewer);
        viewer->rtbTextResource->setSelStart(10);
        viewer->rtbTextResource->setSelLength(25);
        QTest::keyClick(viewer->rtbTextResource, Qt::Key_F9);
        QCOMPARE(m_speaker->said, QStringList {viewer->rtbTextResource->Text().mid(10, 25)});
    }

    void theViewerMarksTheWordBeingSaidAndEscapeTakesTheMarkAway()
    {
        auto *viewer = new frmTextResource(session());
        viewer->setResourceID(101);
        viewer->Load();
        showInShell(viewer);
        RichTextBox *box = viewer->rtbTextResource;
        const int before = int(box->extraSelections().size());
        QTest::keyClick(box, Qt::Key_F9);
        QCOMPARE(reader().boxBeingRead(), box);
        const QString said = m_speaker->said.first();
        const QList<speech::Word> words = speech::findWords(said);
        QVERIFY(words.size() > 20);
        m_speaker->reach(20);
        const int place = int(box->Text().indexOf(said)) + words.at(20).start;
        QCOMPARE(reader().markedWord(), place);
        QCOMPARE(box->extraSelections().size(), before + 1);
        QTest::keyClick(box, Qt::Key_Escape);
        QCOMPARE(reader().markedWord(), -1);
        QCOMPARE(box->extraSelections().size(), before);
        QVERIFY(viewer->isVisible());
    }

    void theNotepadReadsFromItsCursorWithCtrlF9()
    {
        auto *notes = session().window<frmNotes>(Session::Window::Notes);
        showInShell(notes);
        notes->notes->setText(u"Πρώτη σημείωση. Δεύτερη σημείωση."_s);
        notes->notes->setSelStart(16);
        QTest::keyClick(notes->notes, Qt::Key_F9, Qt::ControlModifier);
        QCOMPARE(m_speaker->said, QStringList {u"Δεύτερη σημείωση."_s});
        QCOMPARE(reader().markedWord(), 16);
        QTest::keyClick(notes->notes, Qt::Key_Escape);
        QCOMPARE(reader().markedWord(), -1);
    }

    void theIndexMarksTheWordInItsExplanation()
    {
        auto *index = session().window<frmIndex>(Session::Window::Index);
        showInShell(index);
        index->DisplayHotword(u"Νάξος"_s, u"Το μεγαλύτερο νησί των Κυκλάδων."_s, QString());
        pressSoundKey();
        m_speaker->reach(2);
        QCOMPARE(reader().boxBeingRead(), index->rtfExp);
        QCOMPARE(reader().markedWord(), 14);
        m_speaker->finish();
        QCOMPARE(reader().markedWord(), -1);
    }

    void theOpenTipIsReadAndEscapeStopsBeforeItCloses()
    {
        frmToolTips *tip = session().window<frmToolTips>(Session::Window::Tip);
        tip->setTipText(u"Πέτρωμα της Νάξου, σκληρό, που γυάλιζε τα μάρμαρα."_s);
        tip->Show(m_shell);
        QTest::keyClick(tip, Qt::Key_F9);
        QCOMPARE(m_speaker->said, QStringList {u"Πέτρωμα της Νάξου, σκληρό, που γυάλιζε τα μάρμαρα."_s});
        QTest::keyClick(tip, Qt::Key_Escape);
        QCOMPARE(m_speaker->stops, 1);
        QVERIFY(
            session().window<frmToolTips>(Session::Window::Tip, false) == tip && tip->isVisible());
        QTest::keyClick(tip, Qt::Key_Escape);
        QTRY_VERIFY(!session().window<frmToolTips>(Session::Window::Tip, false));
    }

    // The tip paints its text itself: the word being said is painted over it.
    void theTipMarksTheWordBeingSaid()
    {
        const QString text = u"Πέτρωμα της Νάξου, σκληρό, που γυάλιζε τα μάρμαρα."_s;
        frmToolTips *tip = session().window<frmToolTips>(Session::Window::Tip);
        tip->setTipText(text);
        tip->Show(m_shell);
        QVERIFY(QTest::qWaitForWindowExposed(tip));
        QTest::keyClick(tip, Qt::Key_F9);
        const QList<speech::Word> words = speech::findWords(text);
        // The first word at once, where the voice begins.
        QCOMPARE(tip->highlightedStart(), words.at(0).start);
        m_speaker->reach(3);
        QCOMPARE(reader().markedWord(), words.at(3).start);
        QCOMPARE(tip->highlightedStart(), words.at(3).start);
        QCOMPARE(tip->highlightedLength(), words.at(3).length);
        QCOMPARE(text.mid(tip->highlightedStart(), tip->highlightedLength()), u"σκληρό"_s);
        const QRect word = tip->highlightArea().boundingRect();
        QVERIFY(!word.isEmpty());
        const QImage shown = tip->grab().toImage();
        int yellow = 0;
        for (int y = word.top(); y <= word.bottom(); ++y) {
            for (int x = word.left(); x <= word.right(); ++x)
                yellow += QColor(shown.pixel(x, y)) == speech::readingWordBackground() ? 1 : 0;
        }
        QVERIFY2(yellow > word.width() * word.height() / 2, qPrintable(QString::number(yellow)));
        QVERIFY(QColor(shown.pixel(word.left() - 3, word.center().y())) != speech::readingWordBackground());
        m_speaker->reach(5);
        QCOMPARE(text.mid(tip->highlightedStart(), tip->highlightedLength()), u"γυάλιζε"_s);
        // The end of the text takes the mark away.
        m_speaker->finish();
        QCOMPARE(tip->highlightedStart(), -1);
        QCOMPARE(reader().markedWord(), -1);
        QVERIFY(tip->isVisible());
    }

    void escapeTakesTheTipsMarkAwayAndTheTipStays()
    {
        const QString text = u"  Το μεγαλύτερο νησί των Κυκλάδων."_s;
        frmToolTips *tip = session().window<frmToolTips>(Session::Window::Tip);
        tip->setTipText(text);
        tip->Show(m_shell);
        QTest::keyClick(tip, Qt::Key_F9);
        m_speaker->reach(2);
        // Its place in the tip's own text, the leading spaces counted.
        QCOMPARE(text.mid(tip->highlightedStart(), tip->highlightedLength()), u"νησί"_s);
        QTest::keyClick(tip, Qt::Key_Escape);
        QCOMPARE(m_speaker->stops, 1);
        QCOMPARE(tip->highlightedStart(), -1);
        QVERIFY(tip->highlightArea().isEmpty());
        QVERIFY(tip->isVisible());
    }

    void aTipClosedWhileItIsReadTakesNoMore()
    {
        QPointer<frmToolTips> tip = session().window<frmToolTips>(Session::Window::Tip);
        tip->setTipText(u"Πέτρωμα της Νάξου, σκληρό, που γυάλιζε τα μάρμαρα."_s);
        tip->Show(m_shell);
        QTest::keyClick(tip, Qt::Key_F9);
        m_speaker->reach(1);
        tip->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(tip.isNull());
        // The voice goes on; there is no window to mark the words in.
        m_speaker->reach(2);
        QCOMPARE(reader().markedWord(), -1);
        QTest::keyClick(m_shell, Qt::Key_Escape);
        m_speaker->finish();
        QCOMPARE(reader().markedWord(), -1);
    }

    void aTipThatClosedAsTheKeyWasReachedIsHeardOnly()
    {
        const QString text = u"Πέτρωμα της Νάξου, σκληρό, που γυάλιζε τα μάρμαρα."_s;
        QPointer<frmToolTips> tip = session().window<frmToolTips>(Session::Window::Tip);
        tip->setTipText(text);
        tip->Show(m_shell);
        QTRY_VERIFY(tip->isActiveWindow());
        m_shell->activateWindow();
        QTRY_VERIFY(!session().window<frmToolTips>(Session::Window::Tip, false));
        pressSoundKey();
        QCOMPARE(m_speaker->said, QStringList {text});
        m_speaker->reach(1);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(tip.isNull());
        m_speaker->reach(2);
        QCOMPARE(reader().markedWord(), -1);
        m_speaker->finish();
    }

    void theIndexReadsItsExplanation()
    {
        auto *index = session().window<frmIndex>(Session::Window::Index);
        showInShell(index);
        index->DisplayHotword(u"Νάξος"_s, u"Το μεγαλύτερο νησί των Κυκλάδων."_s, QString());
        pressSoundKey();
        QCOMPARE(m_speaker->said, QStringList {u"Το μεγαλύτερο νησί των Κυκλάδων."_s});
    }

    void theNotepadReadsItsSelectionOrElseItsNote()
    {
        auto *notes = session().window<frmNotes>(Session::Window::Notes);
        showInShell(notes);
        notes->notes->setText(u"Πρώτη σημείωση. Δεύτερη σημείωση."_s);
        pressSoundKey();
        pressSoundKey();
        notes->notes->setSelStart(16);
        notes->notes->setSelLength(17);
        pressSoundKey();
        QCOMPARE(
            m_speaker->said, (QStringList {u"Πρώτη σημείωση. Δεύτερη σημείωση."_s, u"Δεύτερη σημείωση."_s}));
    }

    void aPhotographsCaptionAndLegendAreRead()
    {
        auto *viewer = new frmResPhoto(session());
        viewer->setResourceID(121);
        viewer->Load();
        showInShell(viewer);
        pressSoundKey();
        QCOMPARE(m_speaker->said.size(), 1);
        const QString said = m_speaker->said.first();
        QVERIFY(!viewer->rtfCaption->Text().isEmpty());
        QVERIFY(said.startsWith(viewer->rtfCaption->Text().trimmed()));
        QVERIFY(said.endsWith(viewer->rtfLezanda->Text().trimmed()));
    }

    void withoutAnEngineTheKeyStaysAndSaysSoOnce()
    {
        m_session.reset();
        start(false);
        testing::RecordingSpeaker *mute = m_speaker;
        auto *viewer = new frmTextResource(session());
        viewer->setResourceID(101);
        viewer->Load();
        showInShell(viewer);
        pressSoundKey();
        pressSoundKey();
        QCOMPARE(mute->said, QStringList());
        QCOMPARE(boxes(), QStringList {speech::ReadAloud::noEngineMessage()});
        m_session->session.host->boxes.clear();
    }
};

QTEST_MAIN(tst_ReadAloudWindows)
#include "tst_readaloud_windows.moc"
