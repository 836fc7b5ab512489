#include "rtf.h"

#include "rtfcodepages.h"
#include "rtfreader.h"
#include "rtfsinks.h"
#include "rtfwriter.h"

#include <QStringDecoder>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextFragment>
#include <QUrl>

#include <algorithm>

namespace richtext {

bool TextRun::sameFormat(const TextRun &other) const
{
    return color == other.color && colorIsAuto == other.colorIsAuto && bold == other.bold
        && italic == other.italic && underline == other.underline && strike == other.strike
        && size == other.size && background == other.background && hasBackground == other.hasBackground
        && font == other.font;
}

bool isRtf(const QByteArray &data)
{
    qsizetype i = 0;
    // A byte-order mark or leading white space is tolerated, as word processors do.
    if (data.startsWith("\xEF\xBB\xBF"))
        i = 3;
    while (i < data.size()
        && (data.at(i) == ' ' || data.at(i) == '\r' || data.at(i) == '\n' || data.at(i) == '\t'))
        ++i;
    return data.mid(i, 5) == "{\\rtf";
}

namespace {

// Bytes that are not RTF read as plain text, as the rich-edit control reads them: UTF-8
// when they are valid UTF-8, else the Greek code page; each line a paragraph.
void readPlainBytes(const QByteArray &data, RtfSink &sink)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8(data);
    if (utf8.hasError()) {
        const codepages::CodePage &greek = codepages::codePage(1253);
        text.resize(0);
        text.reserve(data.size());
        for (const char c : data)
            text.append(QChar(greek.decode(static_cast<unsigned char>(c))));
    }
    if (text.startsWith(QChar(u'\uFEFF')))
        text.remove(0, 1);
    const CharState chars;
    const ParaState para;
    QString line;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        if (c == u'\r' || c == u'\n') {
            if (c == u'\r' && i + 1 < text.size() && text.at(i + 1) == u'\n')
                ++i;
            if (!line.isEmpty())
                sink.text(line, chars);
            line.resize(0);
            sink.paragraphEnd(chars, para);
            continue;
        }
        if ((c < 0x20 && c != u'\t') || c == u'\u2029' || c == u'\uFDD0' || c == u'\uFDD1')
            continue;
        line.append(QChar(c));
    }
    if (!line.isEmpty())
        sink.text(line, chars);
    sink.finish(para);
}

template<typename Sink> void readInto(const QByteArray &data, Sink &sink)
{
    if (!isRtf(data)) {
        readPlainBytes(data, sink);
        return;
    }
    RtfReader reader(data, sink);
    sink.setTables(&reader.tables());
    reader.read();
}

} // namespace

PlainText readPlainText(const QByteArray &rtf)
{
    PlainText out;
    out.text.reserve(rtf.size() / 3);
    PlainTextSink sink(out);
    readInto(rtf, sink);
    return out;
}

void readDocument(const QByteArray &rtf, QTextDocument *document)
{
    if (!document)
        return;
    const bool undo = document->isUndoRedoEnabled();
    document->setUndoRedoEnabled(false);
    document->clear();
    {
        QTextCursor cursor(document);
        cursor.beginEditBlock();
        DocumentSink sink(cursor);
        readInto(rtf, sink);
        cursor.endEditBlock();
    }
    document->setUndoRedoEnabled(undo);
    document->setModified(false);
}

void insertRtf(QTextCursor &cursor, const QByteArray &rtf)
{
    if (cursor.isNull())
        return;
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    DocumentSink sink(cursor);
    sink.setApplyFinal(false);
    readInto(rtf, sink);
    cursor.endEditBlock();
}

QTextDocumentFragment readFragment(const QByteArray &rtf)
{
    QTextDocument document;
    readDocument(rtf, &document);
    return QTextDocumentFragment(&document);
}

QByteArray rtfFromString(const QString &rtf)
{
    QByteArray out;
    out.reserve(rtf.size() + 16);
    for (const QChar qc : rtf) {
        const char16_t c = qc.unicode();
        if (c < 0x80) {
            out.append(static_cast<char>(c));
            continue;
        }
        const int byte = codepages::greekByte(c);
        if (byte >= 0)
            out.append(static_cast<char>(byte));
        else
            out.append("\\u" + QByteArray::number(static_cast<qint16>(c)) + '?');
    }
    return out;
}

int runIndexAt(const PlainText &plain, int place)
{
    const auto &runs = plain.runs;
    if (place < 0 || runs.empty())
        return -1;
    const auto it = std::upper_bound(
        runs.begin(), runs.end(), place, [](int p, const TextRun &run) { return p < run.start; });
    if (it == runs.begin())
        return -1;
    const auto index = static_cast<int>(std::distance(runs.begin(), it)) - 1;
    const TextRun &run = runs[static_cast<std::size_t>(index)];
    return place < run.start + run.length ? index : -1;
}

QByteArray runToJson(const TextRun &run)
{
    QByteArray out = "{\"start\":" + QByteArray::number(run.start);
    out += ",\"length\":" + QByteArray::number(run.length);
    out += ",\"color\":" + (run.colorIsAuto ? QByteArray("\"auto\"") : QByteArray::number(run.color));
    out += QByteArray(",\"bold\":") + (run.bold ? "true" : "false");
    out += QByteArray(",\"italic\":") + (run.italic ? "true" : "false");
    out += QByteArray(",\"underline\":") + (run.underline ? "true" : "false");
    out += ",\"font\":\"";
    for (const QChar c : run.font) {
        if (c == u'"' || c == u'\\')
            out += '\\' + QString(c).toLatin1();
        else if (c.unicode() < 0x20)
            out += "\\u" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
        else
            out += QString(c).toUtf8();
    }
    out += "\",\"size\":" + QByteArray::number(run.size, 'g', 10) + '}';
    return out;
}

QByteArray writeDocument(const QTextDocument &document)
{
    RtfWriter writer(document);
    return writer.write();
}

QByteArray writeFragment(const QTextDocumentFragment &fragment)
{
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertFragment(fragment);
    return writeDocument(document);
}

QByteArray writeSelection(const QTextCursor &cursor)
{
    QTextDocument document;
    if (const QTextDocument *source = cursor.document())
        document.setDefaultFont(source->defaultFont());
    QTextCursor into(&document);
    into.insertFragment(cursor.selection());
    // A fragment carries the names of its pictures but not the pictures themselves.
    if (const QTextDocument *source = cursor.document()) {
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                const QTextCharFormat format = it.fragment().charFormat();
                if (!format.isImageFormat())
                    continue;
                const QUrl name(format.toImageFormat().name());
                const QVariant picture = source->resource(QTextDocument::ImageResource, name);
                if (picture.isValid())
                    document.addResource(QTextDocument::ImageResource, name, picture);
            }
        }
    }
    return writeDocument(document);
}

} // namespace richtext
