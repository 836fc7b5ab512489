// The notepad in the real shell: opened by "Σημειωματάριο" and the key "Notes", its check
// kept in step, its question asked when the pupil leaves the shell; and a picture of it
// for a person to look at.

#include "../app/shellcontent.h"
#include "../support/testsession.h"
#include "notestest.h"

#include <childwindows.h>
#include <mdiform1.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPointer>
#include <QScopeGuard>
#include <QTemporaryDir>

using namespace testing;

class tst_NotesShell : public QObject, public NotesFixture
{
    Q_OBJECT

    ShellContent m_content;

    MDIForm1 *openShell()
    {
        auto *shell = session().window<MDIForm1>(Session::Window::Shell);
        shell->setSelectedActivity(113);
        shell->show();
        return shell;
    }

private slots:
    void init()
    {
        beginSession();
        QVERIFY(m_content.open(session()));
        registerChildWindows(session());
        session().setWindowFactory(Session::Window::StartScreen, [](Session &) { return nullptr; });
    }
    void cleanup()
    {
        closeAll(session());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        endSession();
    }

    void theMenuOpensTheNotesChecksItselfAndClosesThemWithTheQuestion()
    {
        MDIForm1 *shell = openShell();
        QVERIFY(!shell->mnuStudNotes->isChecked());
        shell->mnuStudNotes->trigger();
        frmNotes *form = frmNotes::open(session(), false);
        QVERIFY(form);
        QVERIFY(form->isVisible());
        QVERIFY(shell->mnuStudNotes->isChecked());
        // The key opens the same one.
        shell->TlbMain_ButtonClick(QStringLiteral("Notes"));
        QCOMPARE(frmNotes::open(session(), false), form);

        form->notes->setText(QStringLiteral("σημείωση"));
        Boxes boxes(host(), platform::vbNo);
        shell->mnuStudNotes->trigger();
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().title, QStringLiteral("Κλείσιμο Σημειωματαρίου"));
        QVERIFY(!shell->mnuStudNotes->isChecked());
        QVERIFY(!frmNotes::open(session(), false));
        shell->close();
    }

    void leavingTheShellAsksToSaveTheChangedNote_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("menu Έξοδος") << QStringLiteral("menu exit");
        QTest::newRow("menu Επιστροφή") << QStringLiteral("menu back");
        QTest::newRow("toolbar first") << QStringLiteral("first");
        QTest::newRow("toolbar prev") << QStringLiteral("prev");
        QTest::newRow("toolbar exit") << QStringLiteral("exit");
        QTest::newRow("the shell's close") << QStringLiteral("close");
    }

    void leavingTheShellAsksToSaveTheChangedNote()
    {
        QFETCH(QString, way);
        const int endsBefore = host().ends;
        MDIForm1 *shell = openShell();
        QPointer<MDIForm1> guard(shell);
        shell->TlbMain_ButtonClick(QStringLiteral("Notes"));
        frmNotes::open(session(), false)->notes->setText(QStringLiteral("σημείωση"));

        // The pupil says yes: the note is saved where the pupil says, before the shell goes.
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("σημειώσεις.rtf"));
        Dialogs dialogs(host(), [&file](DialogKind, SeenDialog &dialog, QPrinter *) {
            dialog.FileName = file;
            return true;
        });
        Boxes boxes(host(), platform::vbYes);
        if (way == u"menu exit")
            shell->mnuExit->trigger();
        else if (way == u"menu back")
            shell->mnuPrev->trigger();
        else if (way == u"close")
            shell->close();
        else
            shell->TlbMain_ButtonClick(way);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().text, QStringLiteral("Θέλετε να αποθηκευτεί το παρόν έγγραφο;"));
        QCOMPARE(boxes.first().title, QStringLiteral("Κλείσιμο Σημειωματαρίου"));
        QVERIFY(!frmNotes::open(session(), false));
        QVERIFY(!guard);
        QCOMPARE(host().ends - endsBefore, way == u"exit" ? 1 : 0);
        QFile saved(file);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QVERIFY(saved.readAll().startsWith("{\\rtf1"));
    }

    void aFormattedNoteInTheShellForAPersonToSee()
    {
        MDIForm1 *shell = openShell();
        QVERIFY(QTest::qWaitForWindowExposed(shell));
        shell->TlbMain_ButtonClick(QStringLiteral("Notes"));
        frmNotes *form = frmNotes::open(session(), false);
        RichTextBox &notes = *form->notes;
        notes.setText(
            QStringLiteral("Οι σημειώσεις μου για τον Παρθενώνα\nΟ ναός χτίστηκε από τον Ικτίνο και τον "
                           "Καλλικράτη.\nΤα γλυπτά του Φειδία"));
        select(notes, 0, 35);
        form->button(QStringLiteral("Bold"))->trigger();
        form->button(QStringLiteral("Center"))->trigger();
        notes.setSelColor(0x80);
        select(notes, 57, 7);
        form->button(QStringLiteral("Italic"))->trigger();
        notes.setSelStart(90);
        QTest::qWait(50);
        QVERIFY(QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR)));
        QVERIFY(shell->grab().toImage().save(
            QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/notes-in-shell.png"), "PNG"));
        form->NotesDirty = false;
        shell->close();
    }
};

QTEST_MAIN(tst_NotesShell)
#include "tst_notes_shell.moc"
