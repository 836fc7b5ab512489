// No way of leaving loses a note: "Ναι" to the question and then a cancelled "save as"
// keeps the note, and the shell with it, whichever way the pupil was leaving; "Νέο" and
// "Άνοιγμα" over a changed note keep it the same way.

#include "../app/shellcontent.h"
#include "../support/msgboxrecorder.h"
#include "../support/testsession.h"
#include "notestest.h"

#include <childwindows.h>
#include <frmsmallbutton.h>
#include <mdiform1.h>
#include <modglobal.h>
#include <tlb.h>

#include <QPointer>
#include <QScopeGuard>
#include <QTemporaryDir>

using namespace testing;

class tst_NoteKept : public QObject
{
    Q_OBJECT

    TestSession m_session;
    ShellContent m_content;
    MsgBoxRecorder m_boxes;
    int m_startScreens = 0;

    MDIForm1 *openShellWithAChangedNote()
    {
        auto *shell = static_cast<MDIForm1 *>(ShellWindow::instance());
        shell->setSelectedActivity(106);
        shell->show();
        shell->TlbMain_ButtonClick(QStringLiteral("Notes"));
        frmNotes::instance(false)->notes->setText(QStringLiteral("σημείωση που μένει"));
        return shell;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_content.open(m_session));
        registerChildWindows(m_session);
        m_session->setWindowFactory(Session::Window::StartScreen, [this](Session &) {
            ++m_startScreens;
            return new QWidget;
        });
    }
    void cleanupTestCase() { modGlobal::gDatabase.reset(); }
    void init()
    {
        m_boxes.install();
        m_startScreens = 0;
        m_session.host->ends = 0;
        modEditor::CurrentFile.clear();
    }
    void cleanup()
    {
        platform::setMsgBoxHook({});
        CommonDialog::setHook({});
        closeAll();
        for (int i = 0; i < 3; ++i)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (QWidget *w : QApplication::topLevelWidgets())
            delete w;
    }

    void yesWithACancelledSaveAsKeepsTheNoteAndTheShell_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("menu Έξοδος") << QStringLiteral("menu exit");
        QTest::newRow("menu Επιστροφή") << QStringLiteral("menu back");
        QTest::newRow("toolbar first") << QStringLiteral("first");
        QTest::newRow("toolbar prev") << QStringLiteral("prev");
        QTest::newRow("toolbar exit") << QStringLiteral("exit");
        QTest::newRow("the shell's close") << QStringLiteral("close");
        QTest::newRow("the notes' own frame") << QStringLiteral("frame");
    }

    void yesWithACancelledSaveAsKeepsTheNoteAndTheShell()
    {
        QFETCH(QString, way);
        MDIForm1 *shell = openShellWithAChangedNote();
        QPointer<MDIForm1> guard(shell);
        QPointer<frmNotes> notes = frmNotes::instance(false);
        Dialogs dialogs; // cancels
        m_boxes.install();
        m_boxes.answers = {platform::vbYes, platform::vbYes};
        if (way == u"menu exit")
            shell->mnuExit->trigger();
        else if (way == u"menu back")
            shell->mnuPrev->trigger();
        else if (way == u"close")
            shell->close();
        else if (way == u"frame")
            notes->subWindow()->close();
        else
            emit shell->TlbMain->ButtonClick(way);
        for (int i = 0; i < 3; ++i)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(m_boxes.first().title, QStringLiteral("Κλείσιμο Σημειωματαρίου"));
        QCOMPARE(dialogs.shown.size(), 1);
        QVERIFY(notes);
        QVERIFY(notes->isVisible());
        QCOMPARE(notes->notes->Text(), QStringLiteral("σημείωση που μένει"));
        QVERIFY(shell->mnuStudNotes->isChecked());
        QVERIFY(guard);
        QVERIFY(shell->isVisible());
        QCOMPARE(ShellWindow::existing(), shell);
        QCOMPARE(m_startScreens, 0);
        QCOMPARE(m_session.host->ends, 0);
        for (const QPointer<frmSmallButton> &tile : shell->Tiles())
            QVERIFY(tile);
    }

    void newAnsweredYesWithACancelledSaveAsKeepsTheText()
    {
        openShellWithAChangedNote();
        frmNotes *form = frmNotes::instance(false);
        Dialogs dialogs;
        m_boxes.install();
        m_boxes.answers = {platform::vbYes, platform::vbYes};
        form->mnuNew->trigger();
        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(dialogs.shown.size(), 1);
        QCOMPARE(form->notes->Text(), QStringLiteral("σημείωση που μένει"));
    }

    void openOverAChangedNoteAsksFirst()
    {
        openShellWithAChangedNote();
        frmNotes *form = frmNotes::instance(false);
        QTemporaryDir dir;
        const QString other = dir.filePath(QStringLiteral("άλλο.txt"));
        {
            QFile f(other);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("allo");
        }

        // Yes, then the save cancelled: nothing opens and the note stays.
        {
            QList<CommonDialog::Kind> kinds;
            Dialogs dialogs([&kinds](CommonDialog::Kind kind, CommonDialog &, QPrinter *) {
                kinds.append(kind);
                return false;
            });
            m_boxes.install();
            m_boxes.answers = {platform::vbYes, platform::vbYes};
            form->mnuOpen->trigger();
            QCOMPARE(m_boxes.size(), 1);
            QCOMPARE(m_boxes.first().text, QStringLiteral("Θέλετε να αποθηκεύσετε το παρόν έγγραφο;"));
            QCOMPARE(m_boxes.first().style, int(platform::vbYesNo));
            QCOMPARE(kinds.size(), 1);
            QCOMPARE(form->notes->Text(), QStringLiteral("σημείωση που μένει"));
        }
        // No: the file opens over it.
        {
            Dialogs dialogs([&other](CommonDialog::Kind, CommonDialog &dialog, QPrinter *) {
                dialog.FileName = other;
                return true;
            });
            m_boxes.install();
            m_boxes.answers = {platform::vbNo, platform::vbNo};
            form->mnuOpen->trigger();
            QCOMPARE(m_boxes.size(), 1);
            QCOMPARE(dialogs.shown.size(), 1);
            QCOMPARE(form->notes->Text(), QStringLiteral("allo"));
        }
        // Yes with a file to save to: saved, then the open goes on.
        {
            const QString kept = dir.filePath(QStringLiteral("σημείωση.rtf"));
            form->notes->setText(QStringLiteral("δεύτερη"));
            modEditor::CurrentFile = kept;
            Dialogs dialogs([&other](CommonDialog::Kind, CommonDialog &dialog, QPrinter *) {
                dialog.FileName = other;
                return true;
            });
            m_boxes.install();
            m_boxes.answers = {platform::vbYes, platform::vbYes};
            form->mnuOpen->trigger();
            QVERIFY(QFile::exists(kept));
            QCOMPARE(form->notes->Text(), QStringLiteral("allo"));
        }
    }

    void anUnchangedNoteOpensWithoutAQuestion()
    {
        NotesShell shell;
        frmNotes *form = shell.openNotes();
        QVERIFY(!form->NotesDirty);
        Dialogs dialogs;
        m_boxes.install();
        m_boxes.answers = {platform::vbYes, platform::vbYes};
        form->mnuOpen->trigger();
        QVERIFY(m_boxes.isEmpty());
        QCOMPARE(dialogs.shown.size(), 1);
    }
};

QTEST_MAIN(tst_NoteKept)
#include "tst_notekept.moc"
