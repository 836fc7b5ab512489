#pragma once

#include "rtf.h"
#include "rtfstate.h"

#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextListFormat>

#include <unordered_map>
#include <vector>

class QTextList;

namespace richtext {

struct CharStateHash
{
    std::size_t operator()(const CharState &s) const noexcept
    {
        std::size_t h = std::size_t(s.font) * 1000003u;
        h ^= std::size_t(s.halfPoints) * 9176u + std::size_t(s.foreground) * 131u + std::size_t(s.background);
        h ^= std::size_t(s.bold) | std::size_t(s.italic) << 1 | std::size_t(s.underline) << 2
            | std::size_t(s.strike) << 3 | std::size_t(s.hidden) << 4 | std::size_t(s.vertical + 1) << 5;
        return h;
    }
};

// Plain text and formatting runs, without a document: what tools and the hot-word model
// need, as fast as the bytes can be read.
class PlainTextSink final : public RtfSink
{
public:
    explicit PlainTextSink(PlainText &out)
        : m_out(out)
    {
    }
    void setTables(const RtfTables *tables) { m_tables = tables; }

    bool wantsPictures() const override { return false; }
    void text(const QString &chunk, const CharState &chars) override;
    void paragraphEnd(const CharState &chars, const ParaState &para) override;
    void picture(const RtfPicture &picture, const CharState &chars) override;
    void finish(const ParaState &para) override;

private:
    void append(const QChar *chars, qsizetype length, const CharState &state);
    const TextRun &runFormat(const CharState &state);

    PlainText &m_out;
    const RtfTables *m_tables = nullptr;
    std::unordered_map<CharState, TextRun, CharStateHash> m_formats;
    CharState m_lastState;
    const TextRun *m_lastFormat = nullptr;
};

// Builds into a QTextDocument at a cursor: text with its character formats, paragraph
// formats, lists and pictures (as resources of the document).
class DocumentSink final : public RtfSink
{
public:
    explicit DocumentSink(QTextCursor &cursor);
    void setTables(const RtfTables *tables) { m_tables = tables; }
    // Whether the paragraph the text ends in gives its format to the block it ends in;
    // not so when inserting into the middle of a paragraph.
    void setApplyFinal(bool apply) { m_applyFinal = apply; }

    bool wantsPictures() const override { return true; }
    void text(const QString &chunk, const CharState &chars) override;
    void paragraphEnd(const CharState &chars, const ParaState &para) override;
    void picture(const RtfPicture &picture, const CharState &chars) override;
    void finish(const ParaState &para) override;

private:
    const QTextCharFormat &charFormat(const CharState &state);
    void applyParagraph(const ParaState &para);

    QTextCursor &m_cursor;
    const RtfTables *m_tables = nullptr;
    std::unordered_map<CharState, QTextCharFormat, CharStateHash> m_formats;
    CharState m_lastState;
    const QTextCharFormat *m_lastFormat = nullptr;
    QTextList *m_list = nullptr;
    ParaState m_listPara;
    bool m_applyFinal = true;
};

// The block format and the list style that a paragraph of RTF becomes.
QTextBlockFormat blockFormatFor(const ParaState &para);
QTextListFormat::Style listStyleFor(ListKind kind);

} // namespace richtext
