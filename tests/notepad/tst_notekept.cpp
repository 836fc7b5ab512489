// No way of leaving loses a note: "Ναι" to the question and then a cancelled "save as"
// keeps the note, and the shell with it, whichever way the pupil was leaving; "Νέο" and
// "Άνοιγμα" over a changed note keep it the same way.

#include "../app/shellcontent.h"
#include "notestest.h"

#include <childwindows.h>
#include <frmsmallbutton.h>
#include <mdiform1.h>
#include <tlb.h>

#include <QPointer>
#include <QScopeGuard>
#include <QTemporaryDir>

using namespace testing;

class tst_NoteKept : public QObject, public NotesFixture
{
    Q_OBJECT

    ShellContent m_content;
    int m_startScreens = 0;

    MDIForm1 *openShellWithAChangedNote()
    {
        auto *shell = session().window<MDIForm1>(Session::Window::Shell);
        shell->setSelectedActivity(106);
        shell->show();
        shell->TlbMain_ButtonClick(QStringLiteral("Notes"));
        frmNotes::open(session(), false)->notes->setText(QStringLiteral("σημείωση που μένει"));
        return shell;
    }

private slots:
    void init()
    {
        beginSession();
        QVERIFY(m_content.open(session()));
        registerChildWindows(session());
        session().setWindowFactory(Session::Window::StartScreen, [this](Session &) {
            ++m_startScreens;
            return new QWidget;
        });
        m_startScreens = 0;
        host().ends = 0;
    }
    void cleanup()
    {
        closeAll(session());
        for (int i = 0; i < 3; ++i)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (QWidget *w : QApplication::topLevelWidgets())
            delete w;
        endSession();
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
        QPointer<frmNotes> notes = frmNotes::open(session(), false);
        Dialogs dialogs(host()); // cancels
        host().boxes.clear();
        host().answers = {platform::vbYes, platform::vbYes};
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

        QCOMPARE(host().boxes.size(), 1);
        QCOMPARE(host().boxes.first().title, QStringLiteral("Κλείσιμο Σημειωματαρίου"));
        QCOMPARE(dialogs.shown.size(), 1);
        QVERIFY(notes);
        QVERIFY(notes->isVisible());
        QCOMPARE(notes->notes->Text(), QStringLiteral("σημείωση που μένει"));
        QVERIFY(shell->mnuStudNotes->isChecked());
        QVERIFY(guard);
        QVERIFY(shell->isVisible());
        QCOMPARE(session().shell(false), shell);
        QCOMPARE(m_startScreens, 0);
        QCOMPARE(host().ends, 0);
        for (const QPointer<frmSmallButton> &tile : shell->Tiles())
            QVERIFY(tile);
    }

    void newAnsweredYesWithACancelledSaveAsKeepsTheText()
    {
        openShellWithAChangedNote();
        frmNotes *form = frmNotes::open(session(), false);
        Dialogs dialogs(host());
        host().boxes.clear();
        host().answers = {platform::vbYes, platform::vbYes};
        form->mnuNew->trigger();
        QCOMPARE(host().boxes.size(), 1);
        QCOMPARE(dialogs.shown.size(), 1);
        QCOMPARE(form->notes->Text(), QStringLiteral("σημείωση που μένει"));
    }

    void openOverAChangedNoteAsksFirst()
    {
        openShellWithAChangedNote();
        frmNotes *form = frmNotes::open(session(), false);
        QTemporaryDir dir;
        const QString other = dir.filePath(QStringLiteral("άλλο.txt"));
        {
            QFile f(other);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("allo");
        }

        // Yes, then the save cancelled: nothing opens and the note stays.
        {
            QList<DialogKind> kinds;
            Dialogs dialogs(host(), [&kinds](DialogKind kind, SeenDialog &, QPrinter *) {
                kinds.append(kind);
                return false;
            });
            host().boxes.clear();
            host().answers = {platform::vbYes, platform::vbYes};
            form->mnuOpen->trigger();
            QCOMPARE(host().boxes.size(), 1);
            QCOMPARE(host().boxes.first().text, QStringLiteral("Θέλετε να αποθηκεύσετε το παρόν έγγραφο;"));
            QCOMPARE(host().boxes.first().style, int(platform::vbYesNo));
            QCOMPARE(kinds.size(), 1);
            QCOMPARE(form->notes->Text(), QStringLiteral("σημείωση που μένει"));
        }
        // No: the file opens over it.
        {
            Dialogs dialogs(host(), [&other](DialogKind, SeenDialog &dialog, QPrinter *) {
                dialog.FileName = other;
                return true;
            });
            host().boxes.clear();
            host().answers = {platform::vbNo, platform::vbNo};
            form->mnuOpen->trigger();
            QCOMPARE(host().boxes.size(), 1);
            QCOMPARE(dialogs.shown.size(), 1);
            QCOMPARE(form->notes->Text(), QStringLiteral("allo"));
        }
        // Yes with a file to save to: saved, then the open goes on.
        {
            const QString kept = dir.filePath(QStringLiteral("σημείωση.rtf"));
            form->notes->setText(QStringLiteral("δεύτερη"));
            state().CurrentFile = kept;
            Dialogs dialogs(host(), [&other](DialogKind, SeenDialog &dialog, QPrinter *) {
                dialog.FileName = other;
                return true;
            });
            host().boxes.clear();
            host().answers = {platform::vbYes, platform::vbYes};
            form->mnuOpen->trigger();
            QVERIFY(QFile::exists(kept));
            QCOMPARE(form->notes->Text(), QStringLiteral("allo"));
        }
    }

    void anUnchangedNoteOpensWithoutAQuestion()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        QVERIFY(!form->NotesDirty);
        Dialogs dialogs(host());
        host().boxes.clear();
        host().answers = {platform::vbYes, platform::vbYes};
        form->mnuOpen->trigger();
        QVERIFY(host().boxes.isEmpty());
        QCOMPARE(dialogs.shown.size(), 1);
    }
};

QTEST_MAIN(tst_NoteKept)
#include "tst_notekept.moc"
