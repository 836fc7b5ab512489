#pragma once

#include <QByteArray>
#include <QString>

// The notes go to the word processor (LibreOffice Writer) as a new, untitled document
// that the pupil then owns; the program does not wait for it. Also on the clipboard.
namespace exporttoword {

// Puts the RTF on the clipboard as rich text, with its plain text beside it.
void copyRichText(const QByteArray &rtf, const QString &plainText);

// Writes the RTF to a file of its own in a private temporary folder and starts the word
// processor on it as on a template. Returns false when there is no word processor or it
// did not start; nothing is shown either way.
bool openInWordProcessor(const QByteArray &rtf);

} // namespace exporttoword
