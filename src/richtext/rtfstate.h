#pragma once

#include <QImage>
#include <QString>

#include <array>
#include <unordered_map>
#include <vector>

// What the RTF reader knows at a point of the text: character and paragraph properties as
// RTF numbers, the font and colour tables, and the interface through which the reader
// hands text, paragraph ends and pictures to what builds from them.
namespace richtext {

struct CharState
{
    int font = -1; // \f number; -1 for the default font
    int halfPoints = 24; // \fs
    int foreground = -1; // colour table index; -1 for none given
    int background = -1;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool hidden = false;
    qint8 vertical = 0; // 1 superscript, -1 subscript

    bool operator==(const CharState &) const = default;
};

enum class ListKind : quint8 { None, Bullet, Decimal, LowerAlpha, UpperAlpha, LowerRoman, UpperRoman };

struct TabStop
{
    int position = 0; // twips
    quint8 kind = 0; // 0 left, 1 centre, 2 right, 3 decimal

    bool operator==(const TabStop &) const = default;
};

struct ParaState
{
    static constexpr int MaxTabs = 32;

    quint8 alignment = 0; // 0 left, 1 centre, 2 right, 3 justified
    int leftIndent = 0; // twips
    int rightIndent = 0;
    int firstLineIndent = 0;
    int spaceBefore = 0;
    int spaceAfter = 0;
    int lineSpacing = 0; // \sl: 0 single; above 0 at least, below 0 exactly (twips)
    bool lineMultiple = false; // \slmult1: lineSpacing in 240ths of a line
    int tabCount = 0;
    std::array<TabStop, MaxTabs> tabs {};
    ListKind list = ListKind::None;
    int listStart = 1;
    int listLevel = 0;
    int listOverride = 0; // Word's \ls, resolved through the list tables at the paragraph end

    bool operator==(const ParaState &) const = default;
};

struct FontEntry
{
    QString name;
    int charset = -1;
    int codePage = 0;
};

struct ColorEntry
{
    quint32 value = 0; // 0x00BBGGRR
    bool isAuto = true;
};

struct RtfTables
{
    std::unordered_map<int, FontEntry> fonts;
    std::vector<ColorEntry> colors;
    int defaultFont = 0;
    int ansiCodePage = 1252;

    const FontEntry *font(int number) const
    {
        const auto it = fonts.find(number < 0 ? defaultFont : number);
        return it == fonts.end() ? nullptr : &it->second;
    }
    // False for "auto" and for an index the table does not have.
    bool color(int index, quint32 &value) const
    {
        if (index < 0 || index >= static_cast<int>(colors.size()) || colors[index].isAuto)
            return false;
        value = colors[index].value;
        return true;
    }
};

struct RtfPicture
{
    QImage image; // null when the data could not be decoded
    double width = 0; // logical pixels, as shown
    double height = 0;
};

class RtfSink
{
public:
    virtual ~RtfSink() = default;
    // Whether pictures are to be decoded; without, each counts as one place and no more.
    virtual bool wantsPictures() const = 0;
    virtual void text(const QString &chunk, const CharState &chars) = 0;
    virtual void paragraphEnd(const CharState &chars, const ParaState &para) = 0;
    virtual void picture(const RtfPicture &picture, const CharState &chars) = 0;
    // The paragraph that the text ends in, which has no paragraph mark of its own.
    virtual void finish(const ParaState &para) = 0;
};

inline int clampInt(int value, int low, int high)
{
    return value < low ? low : value > high ? high : value;
}

// The place a picture takes in the plain text, as in the document.
inline constexpr char16_t ObjectCharacter = u'\uFFFC';

} // namespace richtext
