// modEditor: finding and replacing in the document, one occurrence at a time.

#include "frmfind.h"
#include "modeditor.h"
#include "notesform.h"

#include <msgbox.h>
#include <richtextbox.h>

#include <QCheckBox>

namespace modEditor {

namespace {

QString quoted(const QString &text)
{
    return u'"' + text + u'"';
}

void RunSearch(bool replacing)
{
    frmNotes &form = notesForm();
    RichTextBox &notes = *form.notes;
    frmFind *find = frmFind::instance(true, &form);

    // Places reach the whole note, however long it is.
    const qint32 selStart = notes.SelStart();
    qint32 offset = selStart == LastFindStart ? 1 : 0;
    if (FindFirstTime)
        offset = 0;
    const qint32 start = selStart + offset;
    const QString findText = FindText;
    const QString text = notes.Text();
    int options = 0;
    if (find->ChWholeWord->isChecked())
        options += RichTextBox::FindWholeWord;
    if (find->chCase->isChecked())
        options += RichTextBox::FindMatchCase;
    const qint64 findLength = findText.size();

    qint64 result = 0;
    if (FindDirection == 1) {
        // Downwards the search begins one place after the start, so a hit at the caret
        // is passed over.
        result = notes.Find(findText, start + 1, int(text.size()), options);
    } else {
        // The box searches forwards only: upwards is a walk from the top that keeps the
        // last hit before the caret.
        const qint32 end = start == 0 ? 0 : start - 1;
        BackwardCursor = 0;
        qint64 previous = 1;
        result = 0;
        for (;;) {
            if (BackwardCursor > end || previous == result)
                break;
            if (result == -1) {
                result = previous - findLength;
                break;
            }
            result = notes.Find(findText, BackwardCursor, end, options);
            previous = BackwardCursor;
            BackwardCursor = qint32(findLength + result);
        }
    }

    if (result < 0) {
        const QString message = findText == LastFoundText && LastSearchFound
            ? QStringLiteral("Έχει ολοκληρωθεί η αναζήτηση της συμβολοσειράς ") + quoted(findText)
                + QStringLiteral(" στην καθορισμένη περιοχή κειμένου")
            : QStringLiteral("Η συμβολοσειρά ") + quoted(findText)
                + QStringLiteral(" δεν έχει βρεθεί στην καθορισμένη περιοχή κειμένου");
        platform::MsgBox(message, platform::vbOKOnly, platform::ProgramTitle.toString(), &form);
        LastSearchFound = false;
    } else {
        notes.setSelStart(int(result));
        notes.setSelLength(int(findLength));
        if (replacing)
            notes.setSelRTF(ReplaceText);
        form.activateWindow();
        form.setSimpleText(
            QStringLiteral("Γραμμή ") + QString::number(notes.GetLineFromChar(int(result)) + 1));
        LastSearchFound = true;
    }
    LastFindStart = notes.SelStart();
    FindFirstTime = false;
    LastFoundText = findText;
    notes.setFocus();
}

} // namespace

void FindNext()
{
    RunSearch(false);
}

void ReplaceNext()
{
    RichTextBox &notes = *notesForm().notes;
    notes.setFocus();
    // A selection that is the find text, exactly, is replaced, and the search waits for
    // the next press.
    if (notes.SelText() == FindText) {
        notes.setSelText(ReplaceText);
        return;
    }
    RunSearch(true);
}

} // namespace modEditor
