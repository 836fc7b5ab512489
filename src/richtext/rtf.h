#pragma once

#include <QByteArray>
#include <QString>
#include <QTextFormat>

#include <vector>

class QTextCursor;
class QTextDocument;
class QTextDocumentFragment;

// Our RTF engine: a reader into QTextDocument (or straight into plain text with
// per-character formatting runs, for tools and the hot-word model) and a writer in
// the form the rich-edit control writes. Character places count one per character
// and one per paragraph end ("\n"), the same in the plain text and in the document.
namespace richtext {

struct TextRun
{
    int start = 0;
    int length = 0;
    // 0x00BBGGRR; colorIsAuto for the "auto" colour (which reads as black, 0).
    quint32 color = 0;
    bool colorIsAuto = true;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    QString font;
    double size = 12.0; // points
    // Highlight behind the text, 0x00BBGGRR, when hasBackground.
    quint32 background = 0;
    bool hasBackground = false;

    // Equal formatting, whatever the place.
    bool sameFormat(const TextRun &other) const;
};

struct PlainText
{
    QString text; // paragraphs end with "\n"
    std::vector<TextRun> runs; // consecutive, covering text
};

// True when the bytes look like RTF ("{\rtf").
bool isRtf(const QByteArray &data);

// Never throws, never hangs: malformed input gives what could be read. Bytes that are not
// RTF at all read as plain text (UTF-8, else code page 1253), one paragraph a line, as the
// rich-edit control takes them.
PlainText readPlainText(const QByteArray &rtf);
void readDocument(const QByteArray &rtf, QTextDocument *document);
// The RTF as a fragment, for pasting elsewhere; its pictures stay behind (see insertRtf).
QTextDocumentFragment readFragment(const QByteArray &rtf);
// Inserts RTF at the cursor, replacing its selection; pictures become resources of the
// cursor's document, which a bare fragment cannot carry.
void insertRtf(QTextCursor &cursor, const QByteArray &rtf);

// RTF held in a string, as the TextRTF and SelRTF properties take it, as the bytes the
// reader reads: characters of code page 1253 as its bytes (the control receives strings
// in the system's code page), any other character as a Unicode escape.
QByteArray rtfFromString(const QString &rtf);

// The index of the run that holds the character at place, or -1 past the end. Runs are
// sorted, so this is a binary search.
int runIndexAt(const PlainText &plain, int place);

// One run as a line of JSON, as the content tool prints it: start, length, color
// (0xBBGGRR as a number, or "auto"), bold, italic, underline, font, size.
QByteArray runToJson(const TextRun &run);

QByteArray writeDocument(const QTextDocument &document);
QByteArray writeFragment(const QTextDocumentFragment &fragment);
// The selection of the cursor, with its pictures taken from the cursor's document.
QByteArray writeSelection(const QTextCursor &cursor);

// A list paragraph keeps its first-line indent (twips, RTF's \fi) in this block property
// and shows its first line at the left indent, so that the bullet stands before the text
// as the rich-edit control draws it. Equal to QTextFormat::UserProperty + 0x5254.
inline constexpr int ListFirstLineIndentProperty = 0x100000 + 0x5254;

// A bulleted paragraph hides Qt's own list marker, which stands just before the text,
// because the box draws the bullet at the paragraph's indent (richtextbullets.h).
inline void hideListMarker(QTextBlockFormat &format)
{
    format.setProperty(QTextFormat::ListStyle, int(QTextListFormat::ListStyleUndefined));
}

inline void showListMarker(QTextBlockFormat &format)
{
    format.clearProperty(QTextFormat::ListStyle);
}

inline bool isListMarkerHidden(const QTextBlockFormat &format)
{
    return format.hasProperty(QTextFormat::ListStyle)
        && format.intProperty(QTextFormat::ListStyle) == int(QTextListFormat::ListStyleUndefined);
}

// The first number of a numbered list (RTF's \pnstart), kept in the list format since
// this Qt has no such member. Equal to QTextFormat::UserProperty + 0x5253.
inline constexpr int ListStartProperty = 0x100000 + 0x5253;

// Pictures read from RTF are document resources under names that start with this.
inline constexpr char16_t PictureResourcePrefix[] = u"rtf-picture:";
// A resource name for a picture put into a document, never given before in this program.
QString newPictureName();

} // namespace richtext
