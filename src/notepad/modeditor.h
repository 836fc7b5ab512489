#pragma once

#include <QString>
#include <QtGlobal>

class QPrinter;
class RichTextBox;
class Session;

// Every operation on the one document of the notepad: new, open, save, print, the
// clipboard, the character and paragraph toggles, the font dialog, and finding and
// replacing. The procedures work on the session's single frmNotes; without one they raise
// the run-time error 424. What they remember is the session's NotepadState.
namespace modEditor {

void FileNew(Session &session);
void FileOpen(Session &session);
QString AskFileToOpen(Session &session);
void FileSave(Session &session);
void FileSaveAs(Session &session);

// Margins in twips. PrepareForPrinter makes the box wrap its lines at the width the
// page leaves between the margins and returns the printer that stays bound to it.
QPrinter *PrepareForPrinter(Session &session, RichTextBox &rtf, int leftMarginWidth, int rightMarginWidth);
// Prints the whole text as one job, a page at a time from the place the last page ended.
void PrintRichText(Session &session, RichTextBox &rtf, int leftMarginWidth, int topMarginHeight,
    int rightMarginWidth, int bottomMarginHeight);
void PrintDocument(Session &session);
// The notepad's printer, made at its first use; the session owns it.
QPrinter &Printer(Session &session);

void EditCopy(Session &session);
void EditCut(Session &session);
void EditPaste(Session &session);
void EditDelete(Session &session);
void SelectAllText(Session &session);

void ToggleBold(Session &session);
void ToggleItalic(Session &session);
void ToggleUnderline(Session &session);
void ToggleBullet(Session &session);
// 0 left, 1 right, 2 centre.
void SetAlignment(Session &session, qint16 alignment);
void ChooseFont(Session &session);

void FindNext(Session &session);
void ReplaceNext(Session &session);

} // namespace modEditor
