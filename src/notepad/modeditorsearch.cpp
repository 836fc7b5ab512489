// modEditor: finding and replacing in the document, one occurrence at a time.

#include "frmfind.h"
#include "modeditor.h"
#include "notesform.h"

#include <msgbox.h>
#include <notepadstate.h>
#include <richtextbox.h>

#include <QCheckBox>

namespace modEditor {

namespace {

QString quoted(const QString &text)
{
    return u'"' + text + u'"';
}

void RunSearch(Session &session, bool replacing)
{
    frmNotes &form = notesForm(session);
    NotepadState &state = session.notepad();
    RichTextBox &notes = *form.notes;
    frmFind *find = frmFind::open(session);

    // Places reach the whole note, however long it is.
    const qint32 selStart = notes.SelStart();
    qint32 offset = selStart == state.LastFindStart ? 1 : 0;
    if (state.FindFirstTime)
        offset = 0;
    const qint32 start = selStart + offset;
    const QString findText = state.FindText;
    const QString text = notes.Text();
    int options = 0;
    if (find->ChWholeWord->isChecked())
        options += RichTextBox::FindWholeWord;
    if (find->chCase->isChecked())
        options += RichTextBox::FindMatchCase;
    const qint64 findLength = findText.size();

    qint64 result = 0;
    if (state.FindDirection == 1) {
        // Downwards the search begins one place after the start, so a hit at the caret
        // is passed over.
        result = notes.Find(findText, start + 1, int(text.size()), options);
    } else {
        // The box searches forwards only: upwards is a walk from the top that keeps the
        // last hit before the caret.
        const qint32 end = start == 0 ? 0 : start - 1;
        state.BackwardCursor = 0;
        qint64 previous = 1;
        result = 0;
        for (;;) {
            if (state.BackwardCursor > end || previous == result)
                break;
            if (result == -1) {
                result = previous - findLength;
                break;
            }
            result = notes.Find(findText, state.BackwardCursor, end, options);
            previous = state.BackwardCursor;
            state.BackwardCursor = qint32(findLength + result);
        }
    }

    if (result < 0) {
        const QString message = findText == state.LastFoundText && state.LastSearchFound
            ? QStringLiteral("Έχει ολοκληρωθεί η αναζήτηση της συμβολοσειράς ") + quoted(findText)
                + QStringLiteral(" στην καθορισμένη περιοχή κειμένου")
            : QStringLiteral("Η συμβολοσειρά ") + quoted(findText)
                + QStringLiteral(" δεν έχει βρεθεί στην καθορισμένη περιοχή κειμένου");
        platform::MsgBox(message, platform::vbOKOnly, platform::ProgramTitle.toString(), &form);
        state.LastSearchFound = false;
    } else {
        notes.setSelStart(int(result));
        notes.setSelLength(int(findLength));
        if (replacing)
            notes.setSelRTF(state.ReplaceText);
        form.activateWindow();
        form.setSimpleText(
            QStringLiteral("Γραμμή ") + QString::number(notes.GetLineFromChar(int(result)) + 1));
        state.LastSearchFound = true;
    }
    state.LastFindStart = notes.SelStart();
    state.FindFirstTime = false;
    state.LastFoundText = findText;
    notes.setFocus();
}

} // namespace

void FindNext(Session &session)
{
    RunSearch(session, false);
}

void ReplaceNext(Session &session)
{
    const NotepadState &state = session.notepad();
    RichTextBox &notes = *notesForm(session).notes;
    notes.setFocus();
    // A selection that is the find text, exactly, is replaced, and the search waits for
    // the next press.
    if (notes.SelText() == state.FindText) {
        notes.setSelText(state.ReplaceText);
        return;
    }
    RunSearch(session, true);
}

} // namespace modEditor
