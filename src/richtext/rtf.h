#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

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
    // 0x00BBGGRR; colorAuto for the "auto" colour (which reads as black, 0).
    quint32 color = 0;
    bool colorIsAuto = true;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    QString font;
    double size = 12.0; // points
};

struct PlainText
{
    QString text;               // paragraphs end with "\n"
    std::vector<TextRun> runs;  // consecutive, covering text
};

// True when the bytes look like RTF ("{\rtf").
bool isRtf(const QByteArray &data);

// Never throws, never hangs: malformed input gives what could be read.
PlainText readPlainText(const QByteArray &rtf);
void readDocument(const QByteArray &rtf, QTextDocument *document);
// Inserts RTF at the cursor of an existing document (for SelRTF).
QTextDocumentFragment readFragment(const QByteArray &rtf);

QByteArray writeDocument(const QTextDocument &document);
QByteArray writeFragment(const QTextDocumentFragment &fragment);

} // namespace richtext
