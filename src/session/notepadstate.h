#pragma once

#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>

class QPrinter;
namespace exporttoword {
class HandedCopies;
}

// What the notepad remembers between its windows and dialogs for as long as the session
// runs: the file, the last find and replace, the paragraph and bullet dialogs' answers.
struct NotepadState
{
    // The path given by the last open dialog; the next FileSave writes there.
    QString CurrentFile;
    // The notes window's colour palette is up.
    bool FontPaletteShown = false;
    // The last save wrote no file: its error showed or passed silently, or its save
    // dialog was cancelled; closing keeps such a note open rather than let it go unsaved.
    bool SaveFailed = false;

    // Finding.
    QString FindText;
    QString ReplaceText;
    qint16 MatchCaseSetting = 0;
    qint16 WholeWordSetting = 0;
    qint16 FindDirection = 0; // 0 up, 1 down
    qint32 LastFindStart = 0;
    bool FindFirstTime = false;
    qint32 BackwardCursor = 0;
    QString LastFoundText;
    bool LastSearchFound = false;
    bool ReplaceRequested = false;

    // The paragraph dialog's fields that outlive it: only OK clears the flags.
    bool LeftChanged = false;
    bool RightChanged = false;
    bool HangingChanged = false;
    bool FirstLineChanged = false;
    QString Indentation;
    QString RightIndentation;
    QString HangingIndentation;

    // The bullet dialog's, likewise.
    bool BulletChanged = false;
    bool TextChanged = false;
    QString BulIndentation;
    QString BulTextIndent;

    // The folder of the last file chosen in a notepad's file dialog.
    QString lastFolder;

    // The notepad's printer, made at its first use; it keeps its settings from one
    // print to the next and goes with the session, before the application.
    std::shared_ptr<QPrinter> printer;
    // Told of each print job as it ends, with its number of pages.
    std::function<void(int pages)> printJobObserver;

    // The notes handed to the word processor, removed at the latest with the session.
    std::shared_ptr<exporttoword::HandedCopies> handedCopies;
};
