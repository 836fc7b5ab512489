// The notes window: its menus and toolbar, its feedback of the selection, its status
// line, and its closing question however it closes.

#include "notestest.h"

#include <frmcolors.h>
#include <twips.h>

#include <QClipboard>
#include <QImage>
#include <QMenuBar>
#include <QMimeData>
#include <QTemporaryDir>
#include <QToolBar>

using namespace testing;

class tst_frmNotes : public QObject, public NotesFixture
{
    Q_OBJECT

private slots:
    void init() { beginSession(); }
    void cleanup()
    {
        closeAll(session());
        endSession();
    }

    void menusHaveTheirCaptionsInOrder()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        QCOMPARE(form->windowTitle(), QStringLiteral("Σημειωματάριο"));
        QStringList menus;
        for (QAction *menu : form->menuBar->actions())
            menus.append(menu->text());
        QCOMPARE(menus,
            QStringList({QStringLiteral("Αρχείο"), QStringLiteral("Επεξεργασία"), QStringLiteral("Εισαγωγή"),
                QStringLiteral("Μορφοποίηση")}));
        QStringList file;
        for (QAction *item : form->mnuFile->actions())
            file.append(item->isSeparator() ? QStringLiteral("-") : item->text());
        QCOMPARE(file,
            QStringList({QStringLiteral("Νέο"), QStringLiteral("Άνοιγμα..."), QStringLiteral("-"),
                QStringLiteral("Σώσιμο κειμένου"), QStringLiteral("Σώσιμο κειμένου ως..."),
                QStringLiteral("-"), QStringLiteral("Εκτύπωση"), QStringLiteral("-"),
                QStringLiteral("Έξοδος")}));
        QStringList edit;
        for (QAction *item : form->mnuEdit->actions())
            edit.append(item->isSeparator() ? QStringLiteral("-") : item->text());
        QCOMPARE(edit,
            QStringList({QStringLiteral("Αποκοπή"), QStringLiteral("Αντιγραφή"), QStringLiteral("Επικόλληση"),
                QStringLiteral("-"), QStringLiteral("Διαγραφή"), QStringLiteral("Επιλογή όλων"),
                QStringLiteral("-"), QStringLiteral("Εύρεση..."), QStringLiteral("Αντικατάσταση...")}));
        QCOMPARE(form->mnuInsPicture->text(), QStringLiteral("Εισαγωγή Εικόνας..."));
        QCOMPARE(form->mnuFonts->text(), QStringLiteral("Γραμματοσειράς..."));
        QCOMPARE(form->mnuParagraph->text(), QStringLiteral("Παραγράφου..."));
        QCOMPARE(form->mnuBullets->text(), QStringLiteral("Κουκίδων..."));
    }

    void toolbarHasItsKeysAtTheirPlacesWithSeparatorsCounted()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        QVERIFY(form->Buttons(28));
        QVERIFY(!form->Buttons(29));
        for (int separator : {6, 9, 15, 17, 21, 26})
            QVERIFY2(form->Buttons(separator)->isSeparator(), qPrintable(QString::number(separator)));
        QCOMPARE(form->Buttons(1)->objectName(), QStringLiteral("New"));
        QCOMPARE(form->Buttons(5)->objectName(), QStringLiteral("Exit"));
        QCOMPARE(form->Buttons(7)->objectName(), QStringLiteral("Word"));
        QCOMPARE(form->Buttons(16)->objectName(), QStringLiteral("Undo"));
        QCOMPARE(form->Buttons(23)->objectName(), QStringLiteral("Center"));
        QCOMPARE(form->Buttons(28)->objectName(), QStringLiteral("SetFontColor"));
        QCOMPARE(form->Buttons(5)->toolTip(), QStringLiteral("Ελαχιστοποίηση παραθύρου"));
        QCOMPARE(form->Buttons(23)->toolTip(), QStringLiteral("Κεντραρισμένη Στοίχιση"));
        QCOMPARE(form->Buttons(28)->toolTip(), QStringLiteral("Χρωματισμός κειμένου"));
        for (int i = 1; i <= 28; ++i) {
            if (!form->Buttons(i)->isSeparator())
                QVERIFY2(!form->Buttons(i)->icon().isNull(), qPrintable(form->Buttons(i)->objectName()));
        }
    }

    void loadingSetsTheFontChecksTheShellAndPlacesTheWindow()
    {
        NotesShell shell(session());
        shell.show();
        frmNotes *form = shell.openNotes();
        QVERIFY(shell.studNotesChecked());
        QCOMPARE(form->notes->font().family(), QStringLiteral("Times New Roman"));
        QCOMPARE(form->notes->font().pointSize(), 12);
        QVERIFY(!form->NotesDirty);
        const int areaWidth = shell.mdiArea()->viewport()->width();
        QCOMPARE(form->subWindow()->width(),
            platform::pixelsFromTwipsX(platform::twipsFromPixelsX(areaWidth) - 400));
        QCOMPARE(form->subWindow()->height(), 200);
    }

    void anyEditAlsoNewOrOpenSetsNotesDirtyAndSavingNeverClearsIt()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        QVERIFY(!form->NotesDirty);
        QTest::keyClicks(form->notes, QStringLiteral("Kalimera"));
        QVERIFY(form->NotesDirty);

        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("σημειώσεις.rtf"));
        state().CurrentFile = file;
        modEditor::FileSave(session());
        QVERIFY(QFile::exists(file));
        QVERIFY(form->NotesDirty);

        form->NotesDirty = false;
        Dialogs dialogs(host(), [&](DialogKind, SeenDialog &dialog, QPrinter *) {
            dialog.FileName = file;
            return true;
        });
        modEditor::FileOpen(session());
        QVERIFY(form->NotesDirty);
        form->NotesDirty = false;
        Boxes boxes(host(), platform::vbNo);
        modEditor::FileNew(session());
        QVERIFY(form->NotesDirty);

        // Closing after a save asks again.
        form->close();
        QCOMPARE(boxes.size(), 2);
        QCOMPARE(boxes.last().text, QStringLiteral("Θέλετε να αποθηκευτεί το παρόν έγγραφο;"));
        QCOMPARE(boxes.last().title, QStringLiteral("Κλείσιμο Σημειωματαρίου"));
        QCOMPARE(boxes.last().style, int(platform::vbYesNo));
    }

    void closingUnchangedAsksNothingAndUnchecksTheShell()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        state().CurrentFile = QStringLiteral("/tmp/x.rtf");
        Boxes boxes(host());
        form->close();
        QVERIFY(boxes.isEmpty());
        QVERIFY(!shell.studNotesChecked());
        QVERIFY(state().CurrentFile.isEmpty());
        QVERIFY(!frmNotes::open(session(), false));
    }

    void closingAnsweredYesSavesAndTheWindowClosesEitherWay()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("a.rtf"));
        for (int answer : {int(platform::vbYes), int(platform::vbNo)}) {
            NotesShell shell(session());
            frmNotes *form = shell.openNotes();
            form->notes->setText(QStringLiteral("κείμενο"));
            state().CurrentFile = file;
            QFile::remove(file);
            Boxes boxes(host(), answer);
            QPointer<QMdiSubWindow> sub = form->subWindow();
            // Closed by its frame, as the shell closes its children.
            sub->close();
            QCOMPARE(boxes.size(), 1);
            QCOMPARE(QFile::exists(file), answer == platform::vbYes);
            QTRY_VERIFY(!sub);
            QVERIFY(!frmNotes::open(session(), false));
        }
    }

    void aNoteWhoseSaveFailsAtClosingStaysOpen()
    {
        // A file that cannot be written: the save's error shows, or save-as passes it by,
        // and either way the note stays on screen instead of going unsaved.
        const QString unwritable = QStringLiteral("/nonexistent-folder/σημειώσεις.rtf");
        for (bool saveAs : {false, true}) {
            NotesShell shell(session());
            frmNotes *form = shell.openNotes();
            form->notes->setText(QStringLiteral("κείμενο"));
            state().CurrentFile = saveAs ? QString() : unwritable;
            Dialogs dialogs(host(), [&](DialogKind, SeenDialog &dialog, QPrinter *) {
                dialog.FileName = unwritable;
                return true;
            });
            Boxes boxes(host(), platform::vbYes);
            QPointer<QMdiSubWindow> sub = form->subWindow();
            QVERIFY(!sub->close());
            QCOMPARE(boxes.first().title, QStringLiteral("Κλείσιμο Σημειωματαρίου"));
            QCOMPARE(boxes.size(), saveAs ? 1 : 2);
            if (!saveAs)
                QVERIFY(boxes.at(1).text.startsWith(QStringLiteral("Λάθος # 75")));
            QCOMPARE(dialogs.shown.size(), saveAs ? 1 : 0);
            QTest::qWait(1);
            QVERIFY(sub && sub->isVisible());
            QCOMPARE(frmNotes::open(session(), false), form);
            QCOMPARE(form->notes->Text(), QStringLiteral("κείμενο"));
            QVERIFY(shell.studNotesChecked());
            QCOMPARE(state().CurrentFile, saveAs ? QString() : unwritable);

            // Answered no, it closes as ever.
            boxes.answer = platform::vbNo;
            QVERIFY(sub->close());
            QTRY_VERIFY(!sub);
            QVERIFY(!frmNotes::open(session(), false));
        }
    }

    void mnuExitUnloadsAndTheExitKeyMinimises()
    {
        NotesShell shell(session());
        shell.show();
        frmNotes *form = shell.openNotes();
        QPointer<QMdiSubWindow> sub = form->subWindow();
        form->Buttons(5)->trigger();
        QVERIFY(sub->isMinimized());
        QVERIFY(shell.studNotesChecked());
        QCOMPARE(frmNotes::open(session(), false), form);

        form->mnuExit->trigger();
        QVERIFY(!shell.studNotesChecked());
        QTRY_VERIFY(!sub);
    }

    void resizingOrMinimisingClosesAnOpenPaletteWhichIsNotReopened()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        for (bool minimise : {false, true}) {
            form->button(QStringLiteral("SetFontColor"))->trigger();
            QVERIFY(state().FontPaletteShown);
            QVERIFY(form->frmFontColors->isVisible());
            if (minimise)
                form->subWindow()->showMinimized();
            else
                form->subWindow()->resize(form->subWindow()->width() - 30, form->subWindow()->height() + 20);
            QVERIFY(!state().FontPaletteShown);
            QVERIFY(!form->frmFontColors->isVisible());
            QTest::qWait(20);
            QVERIFY(!form->frmFontColors->isVisible());
        }
    }

    void openingTwiceGivesTheOneInstanceAndAfterUnloadAFreshOne()
    {
        NotesShell shell(session());
        frmNotes *first = shell.openNotes();
        first->notes->setText(QStringLiteral("πρώτο"));
        QCOMPARE(shell.openNotes(), first);
        QVERIFY(shell.studNotesChecked());
        first->NotesDirty = false;
        first->close();
        QVERIFY(!shell.studNotesChecked());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        frmNotes *second = shell.openNotes();
        QVERIFY(shell.studNotesChecked());
        // The text is not kept.
        QCOMPARE(second->notes->Text(), QString());
    }

    void aPartlyBoldSelectionShowsBoldUpAndThePressMakesItAllBold()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("μισό έντονο"));
        select(*form->notes, 0, 4);
        form->notes->setSelBold(true);
        select(*form->notes, 0, 11);
        QCOMPARE(form->buttonValue(QStringLiteral("Bold")), 0);
        form->button(QStringLiteral("Bold"))->trigger();
        QCOMPARE(form->notes->SelBold(), std::optional<bool>(true));
        select(*form->notes, 5, 3);
        QCOMPARE(form->buttonValue(QStringLiteral("Bold")), 1);
    }

    void selectionChangeKeepsTheStateKeysInStep()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("α\nβ\nγ"));
        select(*form->notes, 2, 1);
        form->notes->setSelAlignment(RichTextBox::AlignCenter);
        form->notes->setSelItalic(true);
        form->notes->setSelUnderline(true);
        form->notes->setSelBullet(true);
        select(*form->notes, 4, 1);
        form->notes->setSelAlignment(RichTextBox::AlignRight);
        select(*form->notes, 2, 1);
        QCOMPARE(form->buttonValue(QStringLiteral("Center")), 1);
        QCOMPARE(form->buttonValue(QStringLiteral("Left")), 0);
        QCOMPARE(form->buttonValue(QStringLiteral("Italic")), 1);
        QCOMPARE(form->buttonValue(QStringLiteral("Underline")), 1);
        QCOMPARE(form->buttonValue(QStringLiteral("Bullets")), 1);
        select(*form->notes, 4, 1);
        QCOMPARE(form->buttonValue(QStringLiteral("Right")), 1);
        QCOMPARE(form->buttonValue(QStringLiteral("Bullets")), 0);
        // Mixed alignment: all three up.
        select(*form->notes, 0, 5);
        QCOMPARE(form->buttonValue(QStringLiteral("Left")), 0);
        QCOMPARE(form->buttonValue(QStringLiteral("Center")), 0);
        QCOMPARE(form->buttonValue(QStringLiteral("Right")), 0);
    }

    void theKeysTipStandsInTheStatusLineOnlyWhileItsActionRuns()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        QString during;
        host().onBox = [&](const ShownBox &) { during = form->SimpleText(); };
        host().answers = {platform::vbNo};
        form->button(QStringLiteral("New"))->trigger();
        host().onBox = {};
        QCOMPARE(during, QStringLiteral("Καινούριο έγγραφο"));
        QCOMPARE(form->SimpleText(), QString());
    }

    void theUndoKeyUndoesTheLastChange()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("αβγ"));
        form->notes->setSelStart(3);
        QTest::keyClicks(form->notes, QStringLiteral("d"));
        QCOMPARE(form->notes->Text(), QStringLiteral("αβγd"));
        form->button(QStringLiteral("Undo"))->trigger();
        QCOMPARE(form->notes->Text(), QStringLiteral("αβγ"));
    }

    void droppingABitmapPastesTheClipboardAndOtherDataIsIgnored()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        QApplication::clipboard()->setText(QStringLiteral("από το πρόχειρο"));
        QMimeData text;
        text.setText(QStringLiteral("σύρθηκε"));
        form->notes_OLEDragDrop(&text);
        QCOMPARE(form->notes->Text(), QString());
        QMimeData picture;
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(Qt::red);
        picture.setImageData(image);
        form->notes_OLEDragDrop(&picture);
        QCOMPARE(form->notes->Text(), QStringLiteral("από το πρόχειρο"));
        // With a picture on the clipboard, the picture lands.
        QApplication::clipboard()->setImage(image);
        form->notes_OLEDragDrop(&picture);
        QCOMPARE(form->notes->Text().right(1), QString(QChar(QChar::ObjectReplacementCharacter)));
    }

    void pictureInsertionPutsThePictureAtTheCaretAndCancelIsQuiet()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("αβ"));
        form->notes->setSelStart(1);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("εικόνα.bmp"));
        QImage image(10, 6, QImage::Format_RGB32);
        image.fill(Qt::blue);
        QVERIFY(image.save(path));
        Boxes boxes(host());
        {
            Dialogs cancel(host());
            form->mnuInsPicture->trigger();
            QCOMPARE(cancel.titles, QStringList({QStringLiteral("Εισαγωγή εικόνας")}));
        }
        QCOMPARE(form->notes->TextLength(), 2);
        Dialogs choose(host(), [&](DialogKind kind, SeenDialog &dialog, QPrinter *) {
            if (kind != DialogKind::Open || dialog.Flags != 6144 || dialog.FilterIndex != 1)
                return false;
            dialog.FileName = path;
            return true;
        });
        form->mnuInsPicture->trigger();
        QCOMPARE(form->notes->TextLength(), 3);
        QCOMPARE(form->notes->Text().at(1), QChar(QChar::ObjectReplacementCharacter));
        QVERIFY(boxes.isEmpty());
    }

    void thePalettesColourGoesToTheSelection()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("χρώμα"));
        select(*form->notes, 0, 5);
        form->frmFontColors_NewColor(0x0000FF);
        QCOMPARE(form->notes->SelColor(), std::optional<quint32>(0x0000FF));
    }

    void theColourKeyShowsThePaletteBelowItsKeyAndAPickColoursTheSelection()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("χρώμα"));
        select(*form->notes, 0, 5);
        form->button(QStringLiteral("SetFontColor"))->trigger();
        QVERIFY(state().FontPaletteShown);
        QCOMPARE(form->SimpleText(), QString());
        frmColors *palette = form->frmFontColors;
        QVERIFY(palette && palette->isVisible());
        const QWidget *key = form->Toolbar1->widgetForAction(form->button(QStringLiteral("SetFontColor")));
        const QPoint keyOnScreen = key->mapToGlobal(QPoint(0, 0));
        QVERIFY(std::abs(palette->frameGeometry().left() - keyOnScreen.x()) < 12);
        QVERIFY(palette->frameGeometry().top() > keyOnScreen.y() + key->height());
        // The third cell of the first row: RGB(51, 51, 0).
        QTest::mousePress(palette, Qt::LeftButton, {}, QPoint(50, 10));
        QTest::mouseRelease(palette, Qt::LeftButton, {}, QPoint(50, 10));
        QCOMPARE(form->notes->SelColor(), std::optional<quint32>(0x003333));
        QVERIFY(!palette->isVisible());
        // One object for the window's life: the next showing marks the last pick.
        form->button(QStringLiteral("SetFontColor"))->trigger();
        QCOMPARE(form->frmFontColors.data(), palette);
        QCOMPARE(palette->SelectedIndex(), 3);
    }
};

QTEST_MAIN(tst_frmNotes)
#include "tst_frmnotes.moc"
