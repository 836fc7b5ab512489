#pragma once

#include "rtfkeywords.h"
#include "rtfstate.h"
#include "rtftokenizer.h"

#include <QByteArray>
#include <QString>

#include <string_view>
#include <unordered_map>
#include <vector>

namespace richtext::codepages {
class CodePage;
}

namespace richtext {

// Walks the groups of an RTF text, keeps the state of each group and the destinations
// (tables, pictures, lists, fields, objects), and hands the body to a sink.
class RtfReader final
{
public:
    RtfReader(const QByteArray &data, RtfSink &sink);
    RtfReader(const RtfReader &) = delete;
    RtfReader &operator=(const RtfReader &) = delete;

    void read();
    const RtfTables &tables() const { return m_tables; }

private:
    enum class Dest : quint8 { Body, FontTable, ColorTable, Pict, Pn, ListTable, ListOverrideTable, Held };

    struct Frame
    {
        CharState chars;
        ParaState para;
        Dest dest = Dest::Body;
        Dest resume = Dest::Body; // what \result or \ud return to inside a held group
        int uc = 1;
    };

    struct PictData
    {
        enum Format : quint8 { Unknown, Png, Jpeg, Dib, Wmf, Emf };
        Format format = Unknown;
        QByteArray data;
        int nibble = -1;
        int picw = 0, pich = 0, goalw = 0, goalh = 0, scalex = 100, scaley = 100;
    };

    struct ListLevel
    {
        int nfc = 0;
        int start = 1;
    };
    struct WordList
    {
        int id = 0;
        std::vector<ListLevel> levels;
    };
    struct ListOverride
    {
        int listId = 0;
        int number = 0;
    };

    void openGroup();
    void closeGroup();
    void skipCurrentGroup();
    void handleWord(std::string_view word, bool hasParam, int param);
    void handlePictWord(Kw keyword, int param);
    void handleTableWord(Dest dest, Kw keyword, int param);
    void handleText(std::string_view bytes);
    void handleByte(unsigned char byte);
    void handleSymbol(unsigned char symbol);
    void appendChar(char16_t ch);
    void flush();
    void endParagraph();
    void finishPicture();
    void commitFontName();
    void resolveList(ParaState &para) const;
    const codepages::CodePage &currentCodePage();

    Frame &top() { return m_stack.back(); }

    RtfTokenizer m_tokenizer;
    RtfSink &m_sink;
    RtfTables m_tables;
    std::vector<Frame> m_stack;
    int m_skip = 0; // fallback characters still to pass over after \u
    bool m_star = false;
    bool m_started = false;

    QString m_buffer;
    CharState m_bufferState;
    int m_lead = -1; // pending lead byte of a double-byte character

    const codepages::CodePage *m_codePage = nullptr;
    int m_codePageFont = -2;

    // Font and colour table entries being read.
    int m_fontNumber = -1;
    QByteArray m_fontName;
    ColorEntry m_color;

    PictData m_pict;
    CharState m_pictChars; // where the picture stands
    ParaState m_pn;
    ParaState m_finalPara; // of the paragraph the document ends in, kept past its group
    int m_pendingTabKind = 0;
    std::vector<WordList> m_lists;
    std::vector<ListOverride> m_overrides;
    mutable std::unordered_map<int, int> m_overrideIndex; // \ls number to list id
    mutable std::unordered_map<int, std::size_t> m_listIndex; // list id to its place
    mutable bool m_listIndexValid = false;
};

} // namespace richtext
