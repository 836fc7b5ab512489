// The document operations: files, printing, the clipboard, the toggles and the font.

#include "notestest.h"

#include <errorpolicy.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFontDialog>
#include <QImage>
#include <QLineEdit>
#include <QMimeData>
#include <QPrinter>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>
#include <QTimer>

#include <functional>

using namespace testing;

namespace {

QString run(const QString &program, const QStringList &args)
{
    QProcess process;
    process.start(program, args);
    process.waitForFinished(60000);
    return QString::fromUtf8(process.readAllStandardOutput());
}

// A printer dialog answered with PDF output to the file.
Dialogs::Answer printToPdf(const QString &pdf, int copies = 1)
{
    return [pdf, copies](DialogKind kind, SeenDialog &dialog, QPrinter *printer) {
        if (kind != DialogKind::Print)
            return false;
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(pdf);
        printer->setPageSize(QPageSize(QPageSize::A4));
        dialog.Copies = copies;
        return true;
    };
}

} // namespace

class tst_modEditor : public QObject, public NotesFixture
{
    Q_OBJECT

private slots:
    void init() { beginSession(); }
    void cleanup()
    {
        closeAll(session());
        endSession();
    }

    void cancellingTheOpenDialogForgetsTheFileAndKeepsTheText()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("μένει"));
        state().CurrentFile = QStringLiteral("/tmp/παλιό.rtf");
        {
            Dialogs cancel(host());
            Boxes dontSave(host(), platform::vbNo);
            modEditor::FileOpen(session());
            QCOMPARE(cancel.titles, QStringList({QStringLiteral("Άνοιγμα κειμένου ...")}));
        }
        QVERIFY(state().CurrentFile.isEmpty());
        QCOMPARE(form->notes->Text(), QStringLiteral("μένει"));
        Dialogs next(host());
        modEditor::FileSave(session());
        QCOMPARE(next.shown, QList<DialogKind>({DialogKind::Save}));
    }

    void afterSaveAsTheNextSaveAsksAgainAndTheNoteStaysChanged()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("κείμενο"));
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("νέο.rtf"));
        QString proposal;
        int flags = 0;
        QString defaultExt;
        Dialogs dialogs(host(), [&](DialogKind, SeenDialog &dialog, QPrinter *) {
            proposal = dialog.FileName;
            flags = dialog.Flags;
            defaultExt = dialog.DefaultExt;
            dialog.FileName = file;
            return true;
        });
        modEditor::FileSaveAs(session());
        QCOMPARE(flags, 9222);
        QCOMPARE(defaultExt, QStringLiteral(".rtf"));
        QVERIFY(proposal.endsWith(QStringLiteral("/Σημειωματάριο")));
        QCOMPARE(dialogs.titles, QStringList({QStringLiteral("Σώσιμο κειμένου ...")}));
        QVERIFY(QFile::exists(file));
        QCOMPARE(form->SimpleText(), QStringLiteral("Σώσιμο εγγράφου ως νέο.rtf"));
        QVERIFY(form->NotesDirty);
        QVERIFY(state().CurrentFile.isEmpty());
        modEditor::FileSave(session());
        QCOMPARE(dialogs.shown.size(), 2);
    }

    void cancellingSaveAsWritesNothing()
    {
        NotesShell shell(session());
        shell.openNotes()->notes->setText(QStringLiteral("κείμενο"));
        Dialogs cancel(host());
        modEditor::FileSaveAs(session());
        QCOMPARE(frmNotes::open(session(), false)->SimpleText(), QString());
    }

    void aFailingSaveIsTheRunTimeErrorAndAFailingSaveAsPassesSilently()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("κείμενο"));
        const QString nowhere = QStringLiteral("/nonexistent-folder/σημειώσεις.rtf");
        state().CurrentFile = nowhere;
        Boxes boxes(host());
        form->mnuSave->trigger();
        QCOMPARE(boxes.size(), 1);
        QVERIFY2(boxes.first().text.startsWith(QStringLiteral("Λάθος # 75")), qPrintable(boxes.first().text));
        QCOMPARE(boxes.first().style, int(platform::vbCritical));

        Dialogs dialogs(host(), [&](DialogKind, SeenDialog &dialog, QPrinter *) {
            dialog.FileName = nowhere;
            return true;
        });
        form->mnuSaveAs->trigger();
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(form->SimpleText(), QStringLiteral("Σώσιμο εγγράφου ως σημειώσεις.rtf"));
    }

    void afterOpenNewAndSaveTheOldFileHoldsTheNewText()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("παλιό.rtf"));
        form->notes->setText(QStringLiteral("παλιό κείμενο"));
        form->notes->SaveFile(file);
        Dialogs dialogs(host(), [&](DialogKind, SeenDialog &dialog, QPrinter *) {
            dialog.FileName = file;
            return true;
        });
        {
            Boxes dontSave(host(), platform::vbNo);
            modEditor::FileOpen(session());
        }
        QCOMPARE(form->notes->Text(), QStringLiteral("παλιό κείμενο"));
        QCOMPARE(state().CurrentFile, file);
        {
            Boxes boxes(host(), platform::vbNo);
            modEditor::FileNew(session());
            QCOMPARE(boxes.size(), 1);
            QCOMPARE(boxes.first().text, QStringLiteral("Θέλετε να αποθηκεύσετε το παρόν έγγραφο;"));
            QCOMPARE(boxes.first().title, QStringLiteral("Εισαγωγή νέου εγγράφου"));
        }
        QCOMPARE(form->notes->Text(), QString());
        form->notes->setText(QStringLiteral("νέο κείμενο"));
        modEditor::FileSave(session());
        RichTextBox reread;
        reread.LoadFile(file);
        QCOMPARE(reread.Text(), QStringLiteral("νέο κείμενο"));
    }

    void newAsksEvenWhenUnchangedAndYesSavesFirst()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("α.rtf"));
        state().CurrentFile = file;
        form->notes->setText(QStringLiteral("πριν"));
        Boxes boxes(host(), platform::vbYes);
        modEditor::FileNew(session());
        QCOMPARE(boxes.size(), 1);
        RichTextBox reread;
        reread.LoadFile(file);
        QCOMPARE(reread.Text(), QStringLiteral("πριν"));
        QCOMPARE(state().CurrentFile, file);
        modEditor::FileNew(session());
        QCOMPARE(boxes.size(), 2);
    }

    void newAfterASaveThatCannotWriteKeepsTheText()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        const QString unwritable = QStringLiteral("/nonexistent-folder/σημειώσεις.rtf");
        form->notes->setText(QStringLiteral("κείμενο"));
        Boxes boxes(host(), platform::vbYes);
        Dialogs dialogs(host(), [&](DialogKind, SeenDialog &dialog, QPrinter *) {
            dialog.FileName = unwritable;
            return true;
        });
        // Save-as passes the failure by without a word; the note stays.
        modEditor::FileNew(session());
        QCOMPARE(dialogs.shown.size(), 1);
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(form->notes->Text(), QStringLiteral("κείμενο"));
        // The remembered file that cannot be written: the error shows and the note stays.
        state().CurrentFile = unwritable;
        QVERIFY(!platform::guarded([this] { modEditor::FileNew(session()); }));
        QCOMPARE(boxes.size(), 3);
        QCOMPARE(form->notes->Text(), QStringLiteral("κείμενο"));
        // "Yes" and then a cancelled save-as: nothing was kept, so the note stays too.
        state().CurrentFile.clear();
        dialogs.answer = {};
        modEditor::FileNew(session());
        QCOMPARE(form->notes->Text(), QStringLiteral("κείμενο"));
        // "No" lets it go.
        boxes.answer = platform::vbNo;
        modEditor::FileNew(session());
        QCOMPARE(form->notes->Text(), QString());
    }

    void aPlainTextFileOpens()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("σημείωμα.txt"));
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(QStringLiteral("πρώτη\nδεύτερη\n").toUtf8());
        out.close();
        Dialogs dialogs(host(), [&](DialogKind, SeenDialog &dialog, QPrinter *) {
            dialog.FileName = file;
            return true;
        });
        modEditor::FileOpen(session());
        QCOMPARE(form->notes->Text(), QStringLiteral("πρώτη\nδεύτερη\n"));
        QCOMPARE(form->notes->font().family(), QStringLiteral("Times New Roman"));
    }

    void savedClosedAndReopenedTheNoteKeepsItsFormatsAndPictures()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("μορφές.rtf"));
        const QString picture = dir.filePath(QStringLiteral("p.png"));
        QImage image(12, 9, QImage::Format_RGB32);
        image.fill(Qt::darkGreen);
        QVERIFY(image.save(picture));
        {
            NotesShell shell(session());
            frmNotes *form = shell.openNotes();
            RichTextBox &notes = *form->notes;
            notes.setText(QStringLiteral(
                "έντονο πλάγιο υπογραμμισμένο κόκκινο μεγάλο\nκέντρο\nεσοχή\nκουκίδα\nεικόνα "));
            select(notes, 0, 6);
            notes.setSelBold(true);
            select(notes, 7, 6);
            notes.setSelItalic(true);
            select(notes, 14, 14);
            notes.setSelUnderline(true);
            select(notes, 29, 7);
            notes.setSelColor(0x0000FF);
            select(notes, 37, 6);
            notes.setSelFontName(QStringLiteral("DejaVu Sans"));
            notes.setSelFontSize(20);
            select(notes, 45, 1);
            notes.setSelAlignment(RichTextBox::AlignCenter);
            select(notes, 52, 1);
            notes.setSelIndent(700);
            notes.setSelRightIndent(300);
            notes.setSelHangingIndent(200);
            select(notes, 58, 1);
            notes.setSelBullet(true);
            notes.setSelStart(notes.TextLength());
            notes.InsertPicture(picture);
            state().CurrentFile = file;
            modEditor::FileSave(session());
            form->NotesDirty = false;
            form->close();
        }
        closeAll(session());
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        Dialogs dialogs(host(), [&](DialogKind, SeenDialog &dialog, QPrinter *) {
            dialog.FileName = file;
            return true;
        });
        modEditor::FileOpen(session());
        RichTextBox &notes = *form->notes;
        QCOMPARE(notes.Text().left(60),
            QStringLiteral("έντονο πλάγιο υπογραμμισμένο κόκκινο μεγάλο\nκέντρο\nεσοχή\nκουκίδα\nεικ")
                .left(60));
        select(notes, 0, 6);
        QCOMPARE(notes.SelBold(), std::optional<bool>(true));
        select(notes, 7, 6);
        QCOMPARE(notes.SelItalic(), std::optional<bool>(true));
        QCOMPARE(notes.SelBold(), std::optional<bool>(false));
        select(notes, 14, 14);
        QCOMPARE(notes.SelUnderline(), std::optional<bool>(true));
        select(notes, 29, 7);
        QCOMPARE(notes.SelColor(), std::optional<quint32>(0x0000FF));
        QCOMPARE(notes.SelFontName(), std::optional<QString>(QStringLiteral("Times New Roman")));
        QCOMPARE(notes.SelFontSize(), std::optional<double>(12));
        select(notes, 37, 6);
        QCOMPARE(notes.SelFontName(), std::optional<QString>(QStringLiteral("DejaVu Sans")));
        QCOMPARE(notes.SelFontSize(), std::optional<double>(20));
        select(notes, 45, 1);
        QCOMPARE(notes.SelAlignment(), std::optional<int>(RichTextBox::AlignCenter));
        select(notes, 52, 1);
        QCOMPARE(notes.SelIndent(), std::optional<int>(700));
        QCOMPARE(notes.SelRightIndent(), std::optional<int>(300));
        QCOMPARE(notes.SelHangingIndent(), std::optional<int>(200));
        QCOMPARE(notes.SelBullet(), std::optional<bool>(false));
        select(notes, 58, 1);
        QCOMPARE(notes.SelBullet(), std::optional<bool>(true));
        QCOMPARE(notes.Text().right(1), QString(QChar(QChar::ObjectReplacementCharacter)));
        // The picture comes back with its pixels.
        const QTextBlock last = notes.document()->lastBlock();
        bool found = false;
        for (auto it = last.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            if (!format.isImageFormat())
                continue;
            const QImage back
                = notes.document()
                      ->resource(QTextDocument::ImageResource, QUrl(format.toImageFormat().name()))
                      .value<QImage>();
            QCOMPARE(back.size(), image.size());
            QCOMPARE(back.pixelColor(3, 3), QColor(Qt::darkGreen));
            found = true;
        }
        QVERIFY(found);
    }

    void theScreenWrapsAsThePageBetweenOneInchMargins()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        modEditor::Printer(session()).setPageSize(QPageSize(QPageSize::A4));
        QPrinter *context = modEditor::PrepareForPrinter(session(), *form->notes, 1440, 1440);
        QCOMPARE(context, &modEditor::Printer(session()));
        const int paperTwips = qRound(QPageSize(QPageSize::A4).size(QPageSize::Point).width() * 20);
        QCOMPARE(form->notes->targetDeviceWidth(), paperTwips - 2880);
    }

    void aThreePageNotePrintsToPdfAsThreePagesWithOneInchMargins()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
            QSKIP("poppler-utils (pdftotext, pdfinfo) are not installed");
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        QStringList lines;
        // About fifty lines of 12 points fill a page between one-inch margins.
        for (int i = 1; i <= 125; ++i)
            lines.append(QStringLiteral("Γραμμή σημειώσεων αριθμός %1").arg(i));
        form->notes->setText(lines.join(u'\n'));
        form->notes->setSelStart(0);
        QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("notes.pdf"));
        QList<int> jobs;
        state().printJobObserver = [&](int pages) { jobs.append(pages); };
        Dialogs dialogs(host(), printToPdf(pdf));
        form->mnuPrint->trigger();
        QCOMPARE(dialogs.titles, QStringList({QStringLiteral("Εκτύπωση κειμένου ως ...")}));
        QCOMPARE(jobs, QList<int>({3}));

        const QString info = run(QStringLiteral("pdfinfo"), {pdf});
        QVERIFY2(info.contains(QRegularExpression(QStringLiteral("Pages:\\s+3\\b"))), qPrintable(info));
        QVERIFY2(info.contains(QStringLiteral("(A4)")), qPrintable(info));
        QString text
            = run(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
        QStringList printed;
        for (const QString &line : text.split(u'\n')) {
            if (!line.trimmed().isEmpty())
                printed.append(line.trimmed().replace(u'\f', QString()));
        }
        printed.removeAll(QString());
        if (printed != lines)
            qInfo().noquote() << printed.mid(45, 20).join(u'|');
        QCOMPARE(printed, lines);

        // Every word stands at least one inch (72 points) from the paper's edges.
        const QString boxes
            = run(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), pdf, QStringLiteral("-")});
        const QRegularExpression word(
            QStringLiteral("xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\" xMax=\"([0-9.]+)\" yMax=\"([0-9.]+)\""));
        double minX = 1e9, minY = 1e9, maxY = 0;
        for (auto it = word.globalMatch(boxes); it.hasNext();) {
            const auto m = it.next();
            minX = std::min(minX, m.captured(1).toDouble());
            minY = std::min(minY, m.captured(2).toDouble());
            maxY = std::max(maxY, m.captured(4).toDouble());
        }
        QVERIFY2(std::abs(minX - 72) < 2, qPrintable(QString::number(minX)));
        QVERIFY2(minY >= 71 && minY < 80, qPrintable(QString::number(minY)));
        QVERIFY2(maxY <= 841.9 - 71, qPrintable(QString::number(maxY)));
    }

    void anEmptyNotePrintsOneBlankPage()
    {
        NotesShell shell(session());
        shell.openNotes();
        QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("empty.pdf"));
        QList<int> jobs;
        state().printJobObserver = [&](int pages) { jobs.append(pages); };
        Dialogs dialogs(host(), printToPdf(pdf));
        frmNotes::open(session(), false)->button(QStringLiteral("Print"))->trigger();
        QCOMPARE(jobs, QList<int>({1}));
        QVERIFY(QFileInfo(pdf).size() > 0);
        if (!QStandardPaths::findExecutable(QStringLiteral("pdfinfo")).isEmpty())
            QVERIFY(run(QStringLiteral("pdfinfo"), {pdf})
                        .contains(QRegularExpression(QStringLiteral("Pages:\\s+1\\b"))));
    }

    void copiesPrintOneJobEachButASelectionPrintsOnce()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("λίγο κείμενο"));
        QTemporaryDir dir;
        QList<int> jobs;
        state().printJobObserver = [&](int pages) { jobs.append(pages); };
        {
            Dialogs dialogs(host(), printToPdf(dir.filePath(QStringLiteral("a.pdf")), 3));
            form->mnuPrint->trigger();
        }
        QCOMPARE(jobs.size(), 3);
        jobs.clear();
        {
            Dialogs dialogs(host(), printToPdf(dir.filePath(QStringLiteral("b.pdf")), 0));
            form->mnuPrint->trigger();
        }
        QCOMPARE(jobs.size(), 0);
        select(*form->notes, 0, 4);
        int flags = 0;
        {
            Dialogs dialogs(host(), [&](DialogKind kind, SeenDialog &dialog, QPrinter *printer) {
                flags = dialog.Flags;
                return printToPdf(dir.filePath(QStringLiteral("c.pdf")), 3)(kind, dialog, printer);
            });
            form->mnuPrint->trigger();
        }
        QCOMPARE(flags, 259);
        QCOMPARE(jobs.size(), 1);
        QVERIFY(QFileInfo(dir.filePath(QStringLiteral("c.pdf"))).size() > 0);
    }

    void aCancelledPrintPrintsNothing()
    {
        NotesShell shell(session());
        shell.openNotes()->notes->setText(QStringLiteral("κείμενο"));
        int jobs = 0;
        state().printJobObserver = [&](int) { ++jobs; };
        Boxes boxes(host());
        Dialogs cancel(host());
        frmNotes::open(session(), false)->mnuPrint->trigger();
        QCOMPARE(jobs, 0);
        QVERIFY(boxes.isEmpty());
    }

    void copyOfFormattedTextLosesItsFormatting()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("έντονο απλό"));
        select(*form->notes, 0, 6);
        form->notes->setSelBold(true);
        form->notes->setFocus();
        modEditor::EditCopy(session());
        const QMimeData *data = QApplication::clipboard()->mimeData();
        QCOMPARE(data->text(), QStringLiteral("έντονο"));
        QVERIFY(!data->hasHtml());
        QCOMPARE(data->formats(), QStringList({QStringLiteral("text/plain")}));
        form->notes->setSelStart(11);
        modEditor::EditPaste(session());
        QCOMPARE(form->notes->Text(), QStringLiteral("έντονο απλόέντονο"));
        select(*form->notes, 11, 6);
        QCOMPARE(form->notes->SelBold(), std::optional<bool>(false));
    }

    void cutDeleteAndSelectAllWorkOnTheDocumentOrOnAFocusedField()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("ένα δύο τρία"));
        select(*form->notes, 4, 4);
        modEditor::EditCut(session());
        QCOMPARE(form->notes->Text(), QStringLiteral("ένα τρία"));
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("δύο "));
        select(*form->notes, 0, 4);
        modEditor::EditDelete(session());
        QCOMPARE(form->notes->Text(), QStringLiteral("τρία"));
        modEditor::SelectAllText(session());
        QCOMPARE(form->notes->SelLength(), 4);

        QLineEdit field;
        field.setText(QStringLiteral("πεδίο"));
        field.show();
        field.activateWindow();
        field.setFocus();
        QTRY_VERIFY(field.hasFocus());
        field.selectAll();
        modEditor::EditCopy(session());
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("πεδίο"));
        QCOMPARE(form->notes->Text(), QStringLiteral("τρία"));
    }

    void togglesWithoutASelectionSetTheirButtonAndOverOneLeaveIt()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("αβγ"));
        form->notes->setSelStart(3);
        modEditor::ToggleItalic(session());
        QCOMPARE(form->buttonValue(QStringLiteral("Italic")), 1);
        QCOMPARE(form->notes->SelItalic(), std::optional<bool>(true));
        modEditor::ToggleItalic(session());
        QCOMPARE(form->buttonValue(QStringLiteral("Italic")), 0);
        select(*form->notes, 0, 3);
        form->setButtonValue(QStringLiteral("Underline"), 0);
        modEditor::ToggleUnderline(session());
        QCOMPARE(form->notes->SelUnderline(), std::optional<bool>(true));
        QCOMPARE(form->buttonValue(QStringLiteral("Underline")), 0);
        modEditor::ToggleBullet(session());
        QCOMPARE(form->notes->SelBullet(), std::optional<bool>(true));
        modEditor::ToggleBullet(session());
        QCOMPARE(form->notes->SelBullet(), std::optional<bool>(false));
    }

    void setAlignmentSetsTheThreeKeysAndTheParagraphs()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("α\nβ"));
        select(*form->notes, 0, 3);
        modEditor::SetAlignment(session(), 1);
        QCOMPARE(form->buttonValue(QStringLiteral("Right")), 1);
        QCOMPARE(form->buttonValue(QStringLiteral("Left")), 0);
        QCOMPARE(form->notes->SelAlignment(), std::optional<int>(RichTextBox::AlignRight));
        modEditor::SetAlignment(session(), 2);
        QCOMPARE(form->buttonValue(QStringLiteral("Center")), 1);
        QCOMPARE(form->buttonValue(QStringLiteral("Right")), 0);
    }

    void theFontDialogAppliesItsChoiceAndCancelChangesNothing()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("γράμματα"));
        select(*form->notes, 0, 8);
        form->notes->setSelColor(0x00FF00);
        {
            Dialogs cancel(host());
            modEditor::ChooseFont(session());
        }
        QCOMPARE(form->notes->SelColor(), std::optional<quint32>(0x00FF00));
        int flags = 0;
        Dialogs dialogs(host(), [&flags](DialogKind, SeenDialog &dialog, QPrinter *) {
            flags = dialog.Flags;
            dialog.FontName = QStringLiteral("DejaVu Sans");
            dialog.FontSize = 14.5;
            dialog.FontBold = true;
            dialog.FontItalic = false;
            dialog.FontStrikethru = true;
            dialog.FontUnderline = true;
            dialog.Color = 0x800000;
            return true;
        });
        modEditor::ChooseFont(session());
        QCOMPARE(flags, 459527);
        QCOMPARE(form->notes->SelFontName(), std::optional<QString>(QStringLiteral("DejaVu Sans")));
        QCOMPARE(form->notes->SelFontSize(), std::optional<double>(14));
        QCOMPARE(form->notes->SelBold(), std::optional<bool>(true));
        QCOMPARE(form->notes->SelStrikeThru(), std::optional<bool>(true));
        QCOMPARE(form->notes->SelUnderline(), std::optional<bool>(true));
        QCOMPARE(form->notes->SelColor(), std::optional<quint32>(0x800000));
    }

    void theFontDialogHasItsOwnTitleAndOffersTheColour()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("γράμματα"));
        select(*form->notes, 0, 8);
        // The title the file dialog was given before stays with the file dialog.
        form->CMDialog1.DialogTitle = QStringLiteral("Αποθήκευση ως");
        // The desktop's own dialog, answered below as the user would.
        host().onDialog = [](const platform::DialogRequest &request) {
            return platform::DesktopHost().dialog(request, nullptr);
        };
        QString title;
        QString family;
        QStringList colours;
        int tries = 0;
        std::function<void()> answer = [&] {
            QFontDialog *dialog = nullptr;
            for (QWidget *widget : QApplication::topLevelWidgets())
                if (auto *font = qobject_cast<QFontDialog *>(widget); font && font->isVisible())
                    dialog = font;
            if (!dialog) {
                if (++tries < 100)
                    QTimer::singleShot(20, answer);
                return;
            }
            title = dialog->windowTitle();
            family = dialog->currentFont().family();
            if (auto *box = dialog->findChild<QComboBox *>(QStringLiteral("cmbColor"))) {
                for (int i = 0; i < box->count(); ++i)
                    colours << box->itemText(i);
                box->setCurrentIndex(box->findText(QStringLiteral("Κόκκινο")));
            }
            dialog->accept();
        };
        QTimer::singleShot(0, answer);
        modEditor::ChooseFont(session());
        QCOMPARE(title, CommonDialog::FontDialogTitle);
        QCOMPARE(title, QStringLiteral("Γραμματοσειρά"));
        // The designed "Times New Roman" is chosen as the family that stands in for it.
        QCOMPARE(family, QFontInfo(QFont(QStringLiteral("Times New Roman"))).family());
        QCOMPARE(colours.size(), 16);
        QCOMPARE(colours.first(), QStringLiteral("Μαύρο"));
        QCOMPARE(form->notes->SelColor(), std::optional<quint32>(0x0000FF));
    }
};

QTEST_MAIN(tst_modEditor)
#include "tst_modeditor.moc"
