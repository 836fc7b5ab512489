#pragma once

#include <QString>
#include <QtGlobal>

#include <functional>

class QPrinter;
class RichTextBox;

// Every operation on the one document of the notepad: new, open, save, print, the
// clipboard, the character and paragraph toggles, the font dialog, and finding and
// replacing. The procedures work on the single frmNotes; without one they raise the
// run-time error 424.
namespace modEditor {

// The path given by the last open dialog; the next FileSave writes there.
inline QString CurrentFile;
// The notes window's colour palette is up.
inline bool FontPaletteShown = false;
// The last save wrote no file: its error showed or passed silently, or its save dialog
// was cancelled; closing keeps such a note open rather than let it go unsaved.
inline bool SaveFailed = false;

// Finding, kept for as long as the program runs.
inline QString FindText;
inline QString ReplaceText;
inline qint16 MatchCaseSetting = 0;
inline qint16 WholeWordSetting = 0;
inline qint16 FindDirection = 0; // 0 up, 1 down
inline qint32 LastFindStart = 0;
inline bool FindFirstTime = false;
inline qint32 BackwardCursor = 0;
inline QString LastFoundText;
inline bool LastSearchFound = false;
inline bool ReplaceRequested = false;

void FileNew();
void FileOpen();
QString AskFileToOpen();
void FileSave();
void FileSaveAs();

// Margins in twips. PrepareForPrinter makes the box wrap its lines at the width the
// page leaves between the margins and returns the printer that stays bound to it.
QPrinter *PrepareForPrinter(RichTextBox &rtf, int leftMarginWidth, int rightMarginWidth);
// Prints the whole text as one job, a page at a time from the place the last page ended.
void PrintRichText(
    RichTextBox &rtf, int leftMarginWidth, int topMarginHeight, int rightMarginWidth, int bottomMarginHeight);
void PrintDocument();
// The printer of the program, made at its first use.
QPrinter &Printer();

void EditCopy();
void EditCut();
void EditPaste();
void EditDelete();
void SelectAllText();

void ToggleBold();
void ToggleItalic();
void ToggleUnderline();
void ToggleBullet();
// 0 left, 1 right, 2 centre.
void SetAlignment(qint16 alignment);
void ChooseFont();

void FindNext();
void ReplaceNext();

// Tests learn of each print job as it ends, with its number of pages.
void setPrintJobObserver(std::function<void(int pages)> observer);

} // namespace modEditor
