#pragma once

#include <QByteArray>
#include <QString>

class QTextDocument;

// Files of rich text as the notes box opens and saves them, Widgets-free so that the
// content tool runs the very same steps. Failures throw platform::RuntimeError: 53 for
// a file that is not there, 75 for one that cannot be read or written.
namespace richtext {

// The font a notes document starts in, and that its plain text takes.
inline constexpr char16_t NotesFontFamily[] = u"Times New Roman";
inline constexpr int NotesFontPoints = 12;

// The bytes of a file, found without regard to the case of its folders and name.
QByteArray readFile(const QString &path);

// Text that is not valid UTF-8 is taken as the Greek Windows code page, in which the
// school's machines wrote their text files.
QString decodePlainText(const QByteArray &bytes);

// Replaces the document's content by the bytes: RTF when they are RTF and richText is
// set, else plain text, one paragraph a line, in the document's default font.
void loadDocument(QTextDocument &document, const QByteArray &bytes, bool richText = true);

// Writes the bytes aside and renames them over the file at the end, so that a save
// that fails or is killed halfway leaves the former file whole.
void writeFileWhole(const QString &path, const QByteArray &data);

} // namespace richtext
