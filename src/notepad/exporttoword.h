#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>

// The notes go to the word processor (LibreOffice Writer) as a new, untitled document
// that the pupil then owns; the program does not wait for it. Also on the clipboard.
namespace exporttoword {

// Puts the RTF on the clipboard as rich text, with its plain text beside it.
void copyRichText(const QByteArray &rtf, const QString &plainText);

// Writes the RTF to a file of its own in a private temporary folder and starts the word
// processor on it as on a template. Returns false when there is no word processor or it
// did not start; nothing is shown either way. The copy is removed once the word
// processor has read it (the process started on it has ended, and a short grace has
// passed), or at the latest when the program ends.
bool openInWordProcessor(const QByteArray &rtf);

// The copies not yet removed, and their removal, which the program's end runs.
int handedCopies();
void removeHandedCopies();
// How long a copy stays after its reader has gone (tests shorten it).
void setReadGrace(std::chrono::milliseconds grace);

} // namespace exporttoword
