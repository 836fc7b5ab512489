// modEditor: files, printing, the clipboard, the toggles and the font dialog.

#include "modeditor.h"

#include "frmnotes.h"
#include "notesform.h"

#include <errorpolicy.h>
#include <logging.h>
#include <msgbox.h>
#include <notepadstate.h>
#include <richtextbox.h>
#include <runtimeerror.h>
#include <session.h>
#include <workkeeper.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCoreApplication>
#include <QLineEdit>
#include <QPainter>
#include <QPrinter>
#include <QScopeGuard>
#include <QToolBar>

#include <cmath>

namespace modEditor {

namespace {

// The hourglass for as long as the scope lasts, also when a save fails.
auto hourglass()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    return qScopeGuard([] { QApplication::restoreOverrideCursor(); });
}

// A page of the printer in twips: its paper, and the corner of its printable area.
struct PageTwips
{
    double width = 0;
    double height = 0;
    double leftOffset = 0;
    double topOffset = 0;
};

PageTwips pageTwips(const QPrinter &printer)
{
    const QPageLayout layout = printer.pageLayout();
    const QRectF full = layout.fullRectPoints();
    const QRectF paint = printer.fullPage() ? full : layout.paintRectPoints();
    return {full.width() * 20, full.height() * 20, paint.left() * 20, paint.top() * 20};
}

// The control that has the focus, as the clipboard commands reach it: a text field of
// the find window, or else the document.
struct ActiveControl
{
    QLineEdit *field = nullptr;
    RichTextBox *box = nullptr;

    QString SelText() const { return field ? field->selectedText() : box->SelText(); }
    void setSelText(const QString &text) const
    {
        if (field)
            field->insert(text);
        else
            box->setSelText(text);
    }
    void setFocus() const
    {
        if (field)
            field->setFocus();
        else
            box->setFocus();
    }
};

ActiveControl activeControl(Session &session)
{
    if (auto *field = qobject_cast<QLineEdit *>(QApplication::focusWidget()))
        return {field, nullptr};
    return {nullptr, notesForm(session).notes};
}

// One of the character toggles: with no selection the attribute at the caret and its
// button change together; over a selection the button is left to the selection's event.
void toggle(Session &session, const QString &key, std::optional<bool> (RichTextBox::*read)() const,
    void (RichTextBox::*write)(bool))
{
    frmNotes &form = notesForm(session);
    RichTextBox &notes = *form.notes;
    const bool on = (notes.*read)() == true;
    (notes.*write)(!on);
    if (notes.SelLength() == 0)
        form.setButtonValue(key, on ? 0 : 1);
}

} // namespace

// --- Files ----------------------------------------------------------------------------------

namespace {

// Asks whether to save the note before it is replaced. False when the pupil said "Yes"
// and nothing was written (the save dialog cancelled, the file not written): the note
// must then stay, or it would be lost.
bool SaveBeforeReplacing(Session &session, const QString &title)
{
    if (platform::MsgBox(QStringLiteral("Θέλετε να αποθηκεύσετε το παρόν έγγραφο;"), platform::vbYesNo, title,
            &notesForm(session))
        != platform::vbYes)
        return true;
    NotepadState &state = session.notepad();
    state.SaveFailed = false;
    FileSave(session);
    return !state.SaveFailed;
}

} // namespace

void FileNew(Session &session)
{
    // Asked always, changed or not.
    if (!SaveBeforeReplacing(session, QStringLiteral("Εισαγωγή νέου εγγράφου")))
        return;
    // The remembered file stays: saving the new text writes over the file opened before.
    notesForm(session).notes->setText(QString());
    notesForm(session).Recovery->discarded();
}

QString AskFileToOpen(Session &session)
{
    frmNotes &form = notesForm(session);
    try {
        form.CMDialog1.DialogTitle = QStringLiteral("Άνοιγμα κειμένου ...");
        form.CMDialog1.Filter = QStringLiteral("*.RTF|*.Rtf|*.TXT|*.Txt");
        form.CMDialog1.CancelError = true;
        form.CMDialog1.ShowOpen();
        return form.CMDialog1.FileName;
    } catch (const platform::RuntimeError &) {
        return {};
    }
}

void FileOpen(Session &session)
{
    // A changed note is not replaced unasked.
    if (notesForm(session).NotesDirty && !SaveBeforeReplacing(session, QStringLiteral("Άνοιγμα κειμένου")))
        return;
    // Cancelling forgets the remembered file.
    QString &currentFile = session.notepad().CurrentFile;
    currentFile = AskFileToOpen(session);
    if (currentFile.isEmpty())
        return;
    RichTextBox &notes = *notesForm(session).notes;
    notes.LoadFile(currentFile);
    notes.setVisible(true);
    notesForm(session).Recovery->saved();
}

void FileSave(Session &session)
{
    NotepadState &state = session.notepad();
    if (state.CurrentFile.isEmpty()) {
        FileSaveAs(session);
        return;
    }
    const auto restore = hourglass();
    state.SaveFailed = true;
    notesForm(session).notes->SaveFile(state.CurrentFile);
    state.SaveFailed = false;
    notesForm(session).Recovery->saved();
}

void FileSaveAs(Session &session)
{
    frmNotes &form = notesForm(session);
    CommonDialog &dialog = form.CMDialog1;
    bool &saveFailed = session.notepad().SaveFailed;
    saveFailed = false;
    platform::resumeNext([&] {
        dialog.DialogTitle = QStringLiteral("Σώσιμο κειμένου ...");
        dialog.Flags = 9220;
        dialog.DefaultExt = QStringLiteral(".rtf");
        dialog.Filter = QStringLiteral("Rich Text Format files (*.rtf) |*.rtf");
        dialog.Flags = dialog.Flags | CommonDialog::OverwritePrompt;
    });
    // The proposal is a file named after the window, in the folder the dialogs start in.
    dialog.FileName = dialog.startFolder() + u'/' + form.windowTitle();
    dialog.CancelError = true;
    try {
        dialog.ShowSave();
    } catch (const platform::RuntimeError &e) {
        // Nothing written: a note that was to be kept by this save is kept open instead.
        if (e.number() == platform::errors::CommonDialogCancelled) {
            saveFailed = true;
            return;
        }
    }
    // The name chosen is not remembered: the next FileSave asks again. A failed save is
    // passed over, and the status line reports the save all the same.
    const auto restore = hourglass();
    saveFailed = !platform::resumeNext([&] { form.notes->SaveFile(dialog.FileName); });
    if (!saveFailed)
        form.Recovery->saved();
    form.setSimpleText(QStringLiteral("Σώσιμο εγγράφου ως ") + dialog.FileTitle);
}

// --- Printing -------------------------------------------------------------------------------

QPrinter &Printer(Session &session)
{
    std::shared_ptr<QPrinter> &printer = session.notepad().printer;
    if (!printer)
        printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    return *printer;
}

QPrinter *PrepareForPrinter(Session &session, RichTextBox &rtf, int leftMarginWidth, int rightMarginWidth)
{
    QPrinter &printer = Printer(session);
    const PageTwips page = pageTwips(printer);
    const double leftMargin = leftMarginWidth - page.leftOffset;
    const double rightMargin = (page.width - rightMarginWidth) - page.leftOffset;
    rtf.setTargetDevice(int(std::lround(rightMargin - leftMargin)));
    return &printer;
}

void PrintRichText(Session &session, RichTextBox &rtf, int leftMarginWidth, int topMarginHeight,
    int rightMarginWidth, int bottomMarginHeight)
{
    QPrinter &printer = Printer(session);
    const PageTwips page = pageTwips(printer);
    const QRectF drawing(QPointF(leftMarginWidth - page.leftOffset, topMarginHeight - page.topOffset),
        QPointF((page.width - rightMarginWidth) - page.leftOffset,
            (page.height - bottomMarginHeight) - page.topOffset));
    QPainter painter(&printer);
    int pages = 1;
    if (painter.isActive()) {
        const int textLength = rtf.TextLength();
        int next = 0;
        for (;;) {
            next = rtf.FormatRange(&painter, drawing, next, true);
            if (next >= textLength)
                break;
            printer.newPage();
            ++pages;
        }
        painter.end();
    }
    rtf.FormatRangeDone();
    if (const auto &observer = session.notepad().printJobObserver)
        observer(pages);
}

void PrintDocument(Session &session)
{
    frmNotes &form = notesForm(session);
    RichTextBox &notes = *form.notes;
    CommonDialog &dialog = form.CMDialog1;
    try {
        dialog.Flags = 258;
        if (notes.SelLength() != 0)
            dialog.Flags += CommonDialog::PrintSelection;
        dialog.DialogTitle = QStringLiteral("Εκτύπωση κειμένου ως ...");
        dialog.CancelError = true;
        QPrinter &printer = Printer(session);
        dialog.ShowPrinter(printer);
        const int copies = dialog.Copies;
        // The copies are printed here, one job each; the printer itself makes one.
        printer.setCopyCount(1);
        if (notes.SelLength() == 0) {
            for (int copy = 1; copy <= copies; ++copy)
                PrintRichText(session, notes, 1440, 1440, 1440, 1440);
        } else {
            notes.SelPrint(&printer);
            if (const auto &observer = session.notepad().printJobObserver)
                observer(0);
        }
    } catch (const platform::RuntimeError &e) {
        // Cancelled, or the printer failed: nothing more is done.
        if (e.number() != platform::errors::CommonDialogCancelled)
            platform::logPassedOver(&e, std::source_location::current());
    }
}

// --- Clipboard ------------------------------------------------------------------------------

void EditCopy(Session &session)
{
    const ActiveControl control = activeControl(session);
    QClipboard *clipboard = QApplication::clipboard();
    clipboard->clear();
    clipboard->setText(control.SelText());
}

void EditCut(Session &session)
{
    EditCopy(session);
    activeControl(session).setSelText(QString());
}

void EditPaste(Session &session)
{
    activeControl(session).setSelText(QApplication::clipboard()->text());
}

void EditDelete(Session &session)
{
    const ActiveControl control = activeControl(session);
    control.setSelText(QString());
    control.setFocus();
}

void SelectAllText(Session &session)
{
    RichTextBox &notes = *notesForm(session).notes;
    notes.setSelStart(0);
    notes.setSelLength(notes.TextLength());
}

// --- Character and paragraph format -----------------------------------------------------------

void ToggleBold(Session &session)
{
    toggle(session, QStringLiteral("Bold"), &RichTextBox::SelBold, &RichTextBox::setSelBold);
}

void ToggleItalic(Session &session)
{
    toggle(session, QStringLiteral("Italic"), &RichTextBox::SelItalic, &RichTextBox::setSelItalic);
}

void ToggleUnderline(Session &session)
{
    toggle(session, QStringLiteral("Underline"), &RichTextBox::SelUnderline, &RichTextBox::setSelUnderline);
}

void ToggleBullet(Session &session)
{
    RichTextBox &notes = *notesForm(session).notes;
    notes.setSelBullet(!(notes.SelBullet() == true));
}

void SetAlignment(Session &session, qint16 alignment)
{
    frmNotes &form = notesForm(session);
    if (alignment >= 0 && alignment <= 2) {
        form.setButtonValue(QStringLiteral("Left"), alignment == 0 ? 1 : 0);
        form.setButtonValue(QStringLiteral("Right"), alignment == 1 ? 1 : 0);
        form.setButtonValue(QStringLiteral("Center"), alignment == 2 ? 1 : 0);
    }
    form.Toolbar1->update();
    form.notes->setSelAlignment(alignment);
}

void ChooseFont(Session &session)
{
    frmNotes &form = notesForm(session);
    CommonDialog &dialog = form.CMDialog1;
    dialog.CancelError = true;
    // Cancelling, or any failure on the way, ends it without a word.
    platform::resumeNext([&] {
        dialog.Flags = 459527;
        dialog.ShowFont();
        RichTextBox &notes = *form.notes;
        // The size goes in as a whole number, rounded half to even.
        notes.setSelFontSize(std::nearbyint(dialog.FontSize));
        notes.setSelBold(dialog.FontBold);
        notes.setSelItalic(dialog.FontItalic);
        notes.setSelStrikeThru(dialog.FontStrikethru);
        notes.setSelUnderline(dialog.FontUnderline);
        notes.setSelColor(dialog.Color);
        notes.setSelFontName(dialog.FontName);
    });
}

} // namespace modEditor
