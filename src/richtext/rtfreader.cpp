#include "rtfreader.h"

#include "rtfcodepages.h"
#include "rtfpicture.h"

#include <algorithm>
#include <unordered_map>

namespace richtext {

namespace {

enum class Kw : quint8 {
    // document
    Rtf,
    Ansi,
    Mac,
    Pc,
    Pca,
    AnsiCpg,
    Deff,
    Uc,
    U,
    // destinations read
    FontTable,
    ColorTable,
    Pict,
    ShpPict,
    Object,
    Result,
    Upr,
    Ud,
    Pn,
    ListTable,
    ListOverrideTable,
    // destinations passed over
    SkipDest,
    // character
    Plain,
    F,
    Fs,
    Cf,
    Cb,
    Highlight,
    B,
    I,
    Ul,
    UlNone,
    Strike,
    V,
    Super,
    Sub,
    NoSuperSub,
    // paragraph
    Pard,
    Par,
    Line,
    Tab,
    Ql,
    Qc,
    Qr,
    Qj,
    Li,
    Ri,
    Fi,
    Sb,
    Sa,
    Tx,
    Tqr,
    Tqc,
    Tqdec,
    Ls,
    Ilvl,
    Cell,
    Row,
    Page,
    // special characters
    EmDash,
    EnDash,
    Bullet,
    LQuote,
    RQuote,
    LDblQuote,
    RDblQuote,
    EmSpace,
    EnSpace,
    QmSpace,
    Zwj,
    Zwnj,
    LtrMark,
    RtlMark,
    // font table
    FCharset,
    Cpg,
    // colour table
    Red,
    Green,
    Blue,
    // pictures
    PngBlip,
    JpegBlip,
    DiBitmap,
    WMetafile,
    EmfBlip,
    Picw,
    Pich,
    PicwGoal,
    PichGoal,
    PicScaleX,
    PicScaleY,
    // rich-edit numbering
    PnLvlBlt,
    PnLvlBody,
    PnLvlCont,
    PnLvl,
    PnDec,
    PnUcLtr,
    PnLcLtr,
    PnUcRm,
    PnLcRm,
    PnStart,
    // Word lists
    List,
    ListLevel,
    ListOverride,
    ListId,
    LevelNfc,
    LevelStartAt,
};

const std::unordered_map<std::string_view, Kw> &keywords()
{
    static const std::unordered_map<std::string_view, Kw> table = {
        {"rtf", Kw::Rtf},
        {"ansi", Kw::Ansi},
        {"mac", Kw::Mac},
        {"pc", Kw::Pc},
        {"pca", Kw::Pca},
        {"ansicpg", Kw::AnsiCpg},
        {"deff", Kw::Deff},
        {"uc", Kw::Uc},
        {"u", Kw::U},
        {"fonttbl", Kw::FontTable},
        {"colortbl", Kw::ColorTable},
        {"pict", Kw::Pict},
        {"shppict", Kw::ShpPict},
        {"object", Kw::Object},
        {"result", Kw::Result},
        {"upr", Kw::Upr},
        {"ud", Kw::Ud},
        {"pn", Kw::Pn},
        {"listtable", Kw::ListTable},
        {"listoverridetable", Kw::ListOverrideTable},
        {"stylesheet", Kw::SkipDest},
        {"info", Kw::SkipDest},
        {"fldinst", Kw::SkipDest},
        {"pntext", Kw::SkipDest},
        {"listtext", Kw::SkipDest},
        {"pntxtb", Kw::SkipDest},
        {"pntxta", Kw::SkipDest},
        {"nonshppict", Kw::SkipDest},
        {"header", Kw::SkipDest},
        {"headerl", Kw::SkipDest},
        {"headerr", Kw::SkipDest},
        {"headerf", Kw::SkipDest},
        {"footer", Kw::SkipDest},
        {"footerl", Kw::SkipDest},
        {"footerr", Kw::SkipDest},
        {"footerf", Kw::SkipDest},
        {"footnote", Kw::SkipDest},
        {"annotation", Kw::SkipDest},
        {"xe", Kw::SkipDest},
        {"tc", Kw::SkipDest},
        {"txe", Kw::SkipDest},
        {"private", Kw::SkipDest},
        {"themedata", Kw::SkipDest},
        {"colorschememapping", Kw::SkipDest},
        {"latentstyles", Kw::SkipDest},
        {"datastore", Kw::SkipDest},
        {"rsidtbl", Kw::SkipDest},
        {"generator", Kw::SkipDest},
        {"xmlnstbl", Kw::SkipDest},
        {"userprops", Kw::SkipDest},
        {"docvar", Kw::SkipDest},
        {"objdata", Kw::SkipDest},
        {"objclass", Kw::SkipDest},
        {"do", Kw::SkipDest},
        {"filetbl", Kw::SkipDest},
        {"revtbl", Kw::SkipDest},
        {"pgdsctbl", Kw::SkipDest},
        {"listname", Kw::SkipDest},
        {"leveltext", Kw::SkipDest},
        {"levelnumbers", Kw::SkipDest},
        {"bkmkstart", Kw::SkipDest},
        {"bkmkend", Kw::SkipDest},
        {"field_inst", Kw::SkipDest},
        {"plain", Kw::Plain},
        {"f", Kw::F},
        {"fs", Kw::Fs},
        {"cf", Kw::Cf},
        {"cb", Kw::Cb},
        {"chcbpat", Kw::Cb},
        {"highlight", Kw::Highlight},
        {"b", Kw::B},
        {"i", Kw::I},
        {"ul", Kw::Ul},
        {"uld", Kw::Ul},
        {"uldb", Kw::Ul},
        {"ulw", Kw::Ul},
        {"ulwave", Kw::Ul},
        {"ulth", Kw::Ul},
        {"uldash", Kw::Ul},
        {"uldashd", Kw::Ul},
        {"uldashdd", Kw::Ul},
        {"ulnone", Kw::UlNone},
        {"strike", Kw::Strike},
        {"striked", Kw::Strike},
        {"v", Kw::V},
        {"super", Kw::Super},
        {"sub", Kw::Sub},
        {"nosupersub", Kw::NoSuperSub},
        {"pard", Kw::Pard},
        {"par", Kw::Par},
        {"line", Kw::Line},
        {"tab", Kw::Tab},
        {"ql", Kw::Ql},
        {"qc", Kw::Qc},
        {"qr", Kw::Qr},
        {"qj", Kw::Qj},
        {"li", Kw::Li},
        {"ri", Kw::Ri},
        {"fi", Kw::Fi},
        {"sb", Kw::Sb},
        {"sa", Kw::Sa},
        {"tx", Kw::Tx},
        {"tqr", Kw::Tqr},
        {"tqc", Kw::Tqc},
        {"tqdec", Kw::Tqdec},
        {"ls", Kw::Ls},
        {"ilvl", Kw::Ilvl},
        {"cell", Kw::Cell},
        {"nestcell", Kw::Cell},
        {"row", Kw::Row},
        {"nestrow", Kw::Row},
        {"page", Kw::Page},
        {"sect", Kw::Page},
        {"emdash", Kw::EmDash},
        {"endash", Kw::EnDash},
        {"bullet", Kw::Bullet},
        {"lquote", Kw::LQuote},
        {"rquote", Kw::RQuote},
        {"ldblquote", Kw::LDblQuote},
        {"rdblquote", Kw::RDblQuote},
        {"emspace", Kw::EmSpace},
        {"enspace", Kw::EnSpace},
        {"qmspace", Kw::QmSpace},
        {"zwj", Kw::Zwj},
        {"zwnj", Kw::Zwnj},
        {"ltrmark", Kw::LtrMark},
        {"rtlmark", Kw::RtlMark},
        {"fcharset", Kw::FCharset},
        {"cpg", Kw::Cpg},
        {"red", Kw::Red},
        {"green", Kw::Green},
        {"blue", Kw::Blue},
        {"pngblip", Kw::PngBlip},
        {"jpegblip", Kw::JpegBlip},
        {"dibitmap", Kw::DiBitmap},
        {"wmetafile", Kw::WMetafile},
        {"emfblip", Kw::EmfBlip},
        {"picw", Kw::Picw},
        {"pich", Kw::Pich},
        {"picwgoal", Kw::PicwGoal},
        {"pichgoal", Kw::PichGoal},
        {"picscalex", Kw::PicScaleX},
        {"picscaley", Kw::PicScaleY},
        {"pnlvlblt", Kw::PnLvlBlt},
        {"pnlvlbody", Kw::PnLvlBody},
        {"pnlvlcont", Kw::PnLvlCont},
        {"pnlvl", Kw::PnLvl},
        {"pndec", Kw::PnDec},
        {"pnucltr", Kw::PnUcLtr},
        {"pnlcltr", Kw::PnLcLtr},
        {"pnucrm", Kw::PnUcRm},
        {"pnlcrm", Kw::PnLcRm},
        {"pnstart", Kw::PnStart},
        {"list", Kw::List},
        {"listlevel", Kw::ListLevel},
        {"listoverride", Kw::ListOverride},
        {"listid", Kw::ListId},
        {"levelnfc", Kw::LevelNfc},
        {"levelnfcn", Kw::LevelNfc},
        {"levelstartat", Kw::LevelStartAt},
    };
    return table;
}

// Frames beyond this depth are not kept; their braces are still counted.
constexpr std::size_t MaxDepth = 512;

inline int clampInt(int value, int low, int high)
{
    return std::min(std::max(value, low), high);
}

// Indents and spacing beyond a few metres of paper are junk; keeping them sane keeps
// the layout of the document sane.
inline int clampTwips(int value)
{
    return clampInt(value, -31680, 31680);
}

ListKind listKindForNfc(int nfc)
{
    switch (nfc) {
    case 0:
        return ListKind::Decimal;
    case 1:
        return ListKind::UpperRoman;
    case 2:
        return ListKind::LowerRoman;
    case 3:
        return ListKind::UpperAlpha;
    case 4:
        return ListKind::LowerAlpha;
    case 255:
        return ListKind::None;
    default:
        return nfc == 23 ? ListKind::Bullet : ListKind::Decimal;
    }
}

inline int hexNibble(unsigned char c)
{
    static const auto table = [] {
        std::array<qint8, 256> t {};
        t.fill(-1);
        for (int i = 0; i < 10; ++i)
            t['0' + i] = static_cast<qint8>(i);
        for (int i = 0; i < 6; ++i) {
            t['a' + i] = static_cast<qint8>(10 + i);
            t['A' + i] = static_cast<qint8>(10 + i);
        }
        return t;
    }();
    return table[c];
}

} // namespace

RtfReader::RtfReader(const QByteArray &data, RtfSink &sink)
    : m_tokenizer(data.constData(), data.constData() + data.size())
    , m_sink(sink)
{
    m_stack.reserve(64);
}

void RtfReader::read()
{
    for (;;) {
        const RtfToken token = m_tokenizer.next();
        switch (token.kind) {
        case RtfToken::End: {
            // A picture cut off by the end of the data still takes its place.
            const auto pict = std::find_if(
                m_stack.begin(), m_stack.end(), [](const Frame &frame) { return frame.dest == Dest::Pict; });
            if (pict != m_stack.end()) {
                m_stack.erase(pict, m_stack.end());
                finishPicture();
            }
            flush();
            m_sink.finish(m_stack.empty() ? ParaState {} : [this] {
                ParaState para = top().para;
                resolveList(para);
                return para;
            }());
            return;
        }
        case RtfToken::Open:
            openGroup();
            break;
        case RtfToken::Close:
            closeGroup();
            break;
        case RtfToken::Word:
            if (m_stack.empty())
                break;
            if (m_skip > 0 && token.word != "bin") {
                --m_skip;
                m_star = false;
                break;
            }
            handleWord(token.word, token.hasParam, token.param);
            m_star = false;
            break;
        case RtfToken::Symbol:
            if (m_stack.empty())
                break;
            if (m_skip > 0) {
                --m_skip;
                break;
            }
            handleSymbol(token.symbol);
            break;
        case RtfToken::Hex:
            if (m_stack.empty())
                break;
            if (m_skip > 0) {
                --m_skip;
                break;
            }
            handleByte(token.symbol);
            break;
        case RtfToken::Text:
            if (!m_stack.empty())
                handleText(token.word);
            break;
        case RtfToken::Binary:
            if (m_skip > 0) {
                --m_skip;
                break;
            }
            if (!m_stack.empty() && top().dest == Dest::Pict)
                m_pict.data.append(token.word.data(), static_cast<qsizetype>(token.word.size()));
            break;
        }
        if (m_started && m_stack.empty()) {
            // The document's own group has closed: what follows is not RTF.
            flush();
            m_sink.finish(m_finalPara);
            return;
        }
    }
}

void RtfReader::openGroup()
{
    m_skip = 0;
    m_star = false;
    if (m_stack.size() >= MaxDepth) {
        // Nesting this deep is junk, not a document: the group is passed over whole.
        m_tokenizer.skipGroup();
        return;
    }
    if (m_stack.empty()) {
        m_started = true;
        m_stack.emplace_back();
        return;
    }
    if (m_stack.back().dest == Dest::Pict) {
        // Nothing inside a picture is ours (properties, ids): passed over, so that a
        // picture has no effect beyond itself whether it is decoded or not.
        m_tokenizer.skipGroup();
        return;
    }
    m_stack.push_back(m_stack.back());
}

void RtfReader::closeGroup()
{
    m_skip = 0;
    m_star = false;
    if (m_stack.empty())
        return;
    if (m_stack.size() == 1) {
        flush();
        m_finalPara = top().para;
        resolveList(m_finalPara);
    }
    const Frame closed = m_stack.back();
    switch (closed.dest) {
    case Dest::FontTable:
        commitFontName();
        break;
    case Dest::Pict:
        if (m_stack.size() < 2 || m_stack[m_stack.size() - 2].dest != Dest::Pict) {
            m_stack.pop_back();
            finishPicture();
            return;
        }
        break;
    default:
        break;
    }
    m_stack.pop_back();
    if (closed.dest == Dest::Pn && !m_stack.empty() && top().dest != Dest::Pn) {
        ParaState &para = top().para;
        para.list = m_pn.list;
        para.listStart = m_pn.listStart;
        para.listLevel = m_pn.listLevel;
        para.listOverride = 0;
    }
}

void RtfReader::skipCurrentGroup()
{
    m_tokenizer.skipGroup();
    m_skip = 0;
    if (m_stack.size() == 1) {
        flush();
        m_finalPara = top().para;
        resolveList(m_finalPara);
    }
    if (!m_stack.empty())
        m_stack.pop_back();
}

const codepages::CodePage &RtfReader::currentCodePage()
{
    const int font = top().chars.font;
    if (m_codePage && m_codePageFont == font)
        return *m_codePage;
    int number = 0;
    if (const FontEntry *entry = m_tables.font(font)) {
        if (entry->codePage > 0)
            number = entry->codePage;
        else if (entry->charset == codepages::SymbolCharset)
            number = 1252;
        else
            number = codepages::codePageForCharset(entry->charset);
    }
    if (number == 0)
        number = m_tables.ansiCodePage;
    m_codePage = &codepages::codePage(number);
    m_codePageFont = font;
    return *m_codePage;
}

void RtfReader::appendChar(char16_t ch)
{
    const CharState &chars = top().chars;
    if (chars.hidden)
        return;
    // Control characters, and those that a QTextDocument takes for its own structure
    // (paragraph and frame marks), would make the places of the document and of the
    // plain text part ways.
    if ((ch < 0x20 && ch != u'\t') || ch == u'\u2029' || ch == u'\uFDD0' || ch == u'\uFDD1')
        return;
    if (!m_buffer.isEmpty() && !(chars == m_bufferState))
        flush();
    if (m_buffer.isEmpty())
        m_bufferState = chars;
    m_buffer.append(QChar(ch));
}

void RtfReader::flush()
{
    if (m_buffer.isEmpty())
        return;
    m_sink.text(m_buffer, m_bufferState);
    m_buffer.resize(0);
}

void RtfReader::handleText(std::string_view bytes)
{
    std::size_t i = 0;
    if (m_skip > 0) {
        const std::size_t n = std::min<std::size_t>(static_cast<std::size_t>(m_skip), bytes.size());
        m_skip -= static_cast<int>(n);
        i = n;
    }
    if (i >= bytes.size())
        return;
    Frame &frame = top();
    switch (frame.dest) {
    case Dest::Body:
        break;
    case Dest::FontTable:
        for (; i < bytes.size(); ++i) {
            if (bytes[i] == ';')
                commitFontName();
            else
                m_fontName.append(bytes[i]);
        }
        return;
    case Dest::ColorTable:
        for (; i < bytes.size(); ++i) {
            if (bytes[i] == ';') {
                m_tables.colors.push_back(m_color);
                m_color = ColorEntry {};
            }
        }
        return;
    case Dest::Pict: {
        for (; i < bytes.size(); ++i) {
            const int h = hexNibble(static_cast<unsigned char>(bytes[i]));
            if (h < 0)
                continue;
            if (m_pict.nibble < 0) {
                m_pict.nibble = h;
            } else {
                m_pict.data.append(static_cast<char>((m_pict.nibble << 4) | h));
                m_pict.nibble = -1;
            }
        }
        return;
    }
    default:
        return;
    }

    if (frame.chars.hidden)
        return;
    const codepages::CodePage &page = currentCodePage();
    if (page.isDoubleByte() || m_lead >= 0) {
        for (; i < bytes.size(); ++i)
            handleByte(static_cast<unsigned char>(bytes[i]));
        return;
    }
    if (!m_buffer.isEmpty() && !(frame.chars == m_bufferState))
        flush();
    if (m_buffer.isEmpty())
        m_bufferState = frame.chars;
    // The common case by far: a stretch of single-byte text in one format.
    char16_t chunk[256];
    int n = 0;
    for (; i < bytes.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(bytes[i]);
        if (c < 0x20 && c != '\t')
            continue;
        chunk[n++] = c < 0x80 ? char16_t(c) : page.decode(c);
        if (n == 256) {
            m_buffer.append(reinterpret_cast<const QChar *>(chunk), n);
            n = 0;
        }
    }
    if (n > 0)
        m_buffer.append(reinterpret_cast<const QChar *>(chunk), n);
}

void RtfReader::handleByte(unsigned char byte)
{
    Frame &frame = top();
    switch (frame.dest) {
    case Dest::Body:
        break;
    case Dest::FontTable:
        m_fontName.append(static_cast<char>(byte));
        return;
    default:
        return;
    }
    const codepages::CodePage &page = currentCodePage();
    if (m_lead >= 0) {
        QString pair;
        page.decodePair(static_cast<unsigned char>(m_lead), byte, pair);
        m_lead = -1;
        for (const QChar ch : std::as_const(pair))
            appendChar(ch.unicode());
        return;
    }
    if (page.isDoubleByte() && page.isLeadByte(byte)) {
        m_lead = byte;
        return;
    }
    if (byte < 0x20 && byte != '\t')
        return;
    appendChar(byte < 0x80 ? char16_t(byte) : page.decode(byte));
}

void RtfReader::handleSymbol(unsigned char symbol)
{
    switch (symbol) {
    case '\\':
    case '{':
    case '}':
        if (top().dest == Dest::Body)
            appendChar(symbol);
        else if (top().dest == Dest::FontTable)
            m_fontName.append(static_cast<char>(symbol));
        break;
    case '~':
        if (top().dest == Dest::Body)
            appendChar(u'\u00A0');
        break;
    case '_':
        if (top().dest == Dest::Body)
            appendChar(u'\u2011');
        break;
    case '*':
        m_star = true;
        break;
    case '\n':
    case '\r':
        if (top().dest == Dest::Body)
            endParagraph();
        break;
    case '\t':
        if (top().dest == Dest::Body)
            appendChar(u'\t');
        break;
    default:
        break;
    }
}

void RtfReader::endParagraph()
{
    flush();
    m_lead = -1;
    ParaState para = top().para;
    resolveList(para);
    if (!top().chars.hidden)
        m_sink.paragraphEnd(top().chars, para);
}

void RtfReader::resolveList(ParaState &para) const
{
    if (para.listOverride <= 0)
        return;
    para.list = ListKind::None;
    for (const ListOverride &o : m_overrides) {
        if (o.number != para.listOverride)
            continue;
        for (const WordList &list : m_lists) {
            if (list.id != o.listId)
                continue;
            if (list.levels.empty()) {
                para.list = ListKind::Bullet;
                return;
            }
            const ListLevel &level = list.levels[static_cast<std::size_t>(
                clampInt(para.listLevel, 0, static_cast<int>(list.levels.size()) - 1))];
            para.list = listKindForNfc(level.nfc);
            para.listStart = level.start;
            return;
        }
    }
    // An override that no table defines still marks a list item.
    para.list = ListKind::Bullet;
}

void RtfReader::commitFontName()
{
    if (m_fontNumber < 0) {
        m_fontName.clear();
        return;
    }
    FontEntry &entry = m_tables.fonts[m_fontNumber];
    if (!m_fontName.isEmpty() || entry.name.isEmpty()) {
        int number = entry.codePage;
        if (number == 0)
            number = codepages::codePageForCharset(entry.charset);
        if (number == 0)
            number = m_tables.ansiCodePage;
        const codepages::CodePage &page = codepages::codePage(number);
        QString name;
        for (const char c : std::as_const(m_fontName)) {
            const unsigned char b = static_cast<unsigned char>(c);
            if (b >= 0x20)
                name.append(QChar(b < 0x80 ? char16_t(b) : page.decode(b)));
        }
        name = name.trimmed();
        if (!name.isEmpty())
            entry.name = name;
    }
    m_fontName.clear();
    m_codePage = nullptr;
}

void RtfReader::finishPicture()
{
    flush();
    RtfPicture picture;
    if (m_sink.wantsPictures()) {
        PictureInput input;
        switch (m_pict.format) {
        case PictData::Png:
            input.format = PictureInput::Png;
            break;
        case PictData::Jpeg:
            input.format = PictureInput::Jpeg;
            break;
        case PictData::Dib:
            input.format = PictureInput::Dib;
            break;
        case PictData::Wmf:
            input.format = PictureInput::Wmf;
            break;
        case PictData::Emf:
            input.format = PictureInput::Emf;
            break;
        default:
            input.format = PictureInput::Unknown;
            break;
        }
        input.data = m_pict.data;
        input.picw = m_pict.picw;
        input.pich = m_pict.pich;
        input.goalw = m_pict.goalw;
        input.goalh = m_pict.goalh;
        input.scalex = m_pict.scalex;
        input.scaley = m_pict.scaley;
        picture = decodePicture(input);
    }
    m_pict = PictData {};
    if (!m_pictChars.hidden)
        m_sink.picture(picture, m_pictChars);
}

void RtfReader::handlePictWord(int keyword, int param)
{
    switch (static_cast<Kw>(keyword)) {
    case Kw::PngBlip:
        m_pict.format = PictData::Png;
        break;
    case Kw::JpegBlip:
        m_pict.format = PictData::Jpeg;
        break;
    case Kw::DiBitmap:
        m_pict.format = PictData::Dib;
        break;
    case Kw::WMetafile:
        m_pict.format = PictData::Wmf;
        break;
    case Kw::EmfBlip:
        m_pict.format = PictData::Emf;
        break;
    case Kw::Picw:
        m_pict.picw = param;
        break;
    case Kw::Pich:
        m_pict.pich = param;
        break;
    case Kw::PicwGoal:
        m_pict.goalw = param;
        break;
    case Kw::PichGoal:
        m_pict.goalh = param;
        break;
    case Kw::PicScaleX:
        m_pict.scalex = param;
        break;
    case Kw::PicScaleY:
        m_pict.scaley = param;
        break;
    default:
        break;
    }
}

void RtfReader::handleWord(std::string_view word, bool hasParam, int param)
{
    const auto &table = keywords();
    const auto it = table.find(word);
    if (top().dest == Dest::Pict) {
        if (it != table.end())
            handlePictWord(static_cast<int>(it->second), param);
        return;
    }
    if (it == table.end()) {
        // An unknown destination is passed over whole; an unknown word is ignored.
        if (m_star)
            skipCurrentGroup();
        return;
    }
    Frame &frame = top();
    const bool on = !hasParam || param != 0;

    switch (it->second) {
    case Kw::SkipDest:
        skipCurrentGroup();
        return;
    case Kw::FontTable:
        flush();
        frame.dest = Dest::FontTable;
        return;
    case Kw::ColorTable:
        flush();
        frame.dest = Dest::ColorTable;
        m_color = ColorEntry {};
        return;
    case Kw::Pict:
        flush();
        if (frame.dest != Dest::Body && frame.dest != Dest::Pict) {
            skipCurrentGroup();
            return;
        }
        if (!m_sink.wantsPictures()) {
            // Counting the place is all that is needed, so the data is not even read.
            if (!frame.chars.hidden)
                m_sink.picture(RtfPicture {}, frame.chars);
            skipCurrentGroup();
            return;
        }
        if (frame.dest == Dest::Body) {
            m_pict = PictData {};
            m_pictChars = frame.chars;
        }
        frame.dest = Dest::Pict;
        return;
    case Kw::ShpPict:
        // The picture in its modern wrapping; the group around it is read as it stands.
        return;
    case Kw::Object:
    case Kw::Upr:
        frame.resume = frame.dest;
        frame.dest = Dest::Held;
        return;
    case Kw::Result:
    case Kw::Ud:
        if (frame.dest == Dest::Held)
            frame.dest = frame.resume;
        return;
    case Kw::Pn:
        if (frame.dest != Dest::Body) {
            skipCurrentGroup();
            return;
        }
        frame.dest = Dest::Pn;
        m_pn = ParaState {};
        return;
    case Kw::ListTable:
        frame.dest = Dest::ListTable;
        return;
    case Kw::ListOverrideTable:
        frame.dest = Dest::ListOverrideTable;
        return;
    default:
        break;
    }
    if (m_star && frame.dest == Dest::Body) {
        // "\*" before a word that is not a destination we read: pass it over.
        skipCurrentGroup();
        return;
    }

    switch (frame.dest) {
    case Dest::FontTable:
        switch (it->second) {
        case Kw::F:
            commitFontName();
            m_fontNumber = param;
            m_tables.fonts.try_emplace(param);
            break;
        case Kw::FCharset:
            if (m_fontNumber >= 0)
                m_tables.fonts[m_fontNumber].charset = param;
            break;
        case Kw::Cpg:
            if (m_fontNumber >= 0)
                m_tables.fonts[m_fontNumber].codePage = param;
            break;
        default:
            break;
        }
        return;
    case Dest::ColorTable: {
        const quint32 c = static_cast<quint32>(clampInt(param, 0, 255));
        switch (it->second) {
        case Kw::Red:
            m_color.value = (m_color.value & 0xFFFF00u) | c;
            m_color.isAuto = false;
            break;
        case Kw::Green:
            m_color.value = (m_color.value & 0xFF00FFu) | (c << 8);
            m_color.isAuto = false;
            break;
        case Kw::Blue:
            m_color.value = (m_color.value & 0x00FFFFu) | (c << 16);
            m_color.isAuto = false;
            break;
        default:
            break;
        }
        return;
    }
    case Dest::Pn:
        switch (it->second) {
        case Kw::PnLvlBlt:
            m_pn.list = ListKind::Bullet;
            break;
        case Kw::PnLvlBody:
        case Kw::PnLvl:
            if (m_pn.list == ListKind::None || m_pn.list == ListKind::Bullet)
                m_pn.list = ListKind::Decimal;
            m_pn.listLevel = it->second == Kw::PnLvl ? clampInt(param - 1, 0, 8) : 0;
            break;
        case Kw::PnLvlCont:
            m_pn.list = ListKind::None;
            break;
        case Kw::PnDec:
            m_pn.list = ListKind::Decimal;
            break;
        case Kw::PnUcLtr:
            m_pn.list = ListKind::UpperAlpha;
            break;
        case Kw::PnLcLtr:
            m_pn.list = ListKind::LowerAlpha;
            break;
        case Kw::PnUcRm:
            m_pn.list = ListKind::UpperRoman;
            break;
        case Kw::PnLcRm:
            m_pn.list = ListKind::LowerRoman;
            break;
        case Kw::PnStart:
            m_pn.listStart = clampInt(param, 0, 32767);
            break;
        default:
            break;
        }
        return;
    case Dest::ListTable:
        switch (it->second) {
        case Kw::List:
            m_lists.emplace_back();
            break;
        case Kw::ListLevel:
            if (!m_lists.empty() && m_lists.back().levels.size() < 9)
                m_lists.back().levels.emplace_back();
            break;
        case Kw::LevelNfc:
            if (!m_lists.empty() && !m_lists.back().levels.empty())
                m_lists.back().levels.back().nfc = param;
            break;
        case Kw::LevelStartAt:
            if (!m_lists.empty() && !m_lists.back().levels.empty())
                m_lists.back().levels.back().start = clampInt(param, 0, 32767);
            break;
        case Kw::ListId:
            if (!m_lists.empty())
                m_lists.back().id = param;
            break;
        default:
            break;
        }
        return;
    case Dest::ListOverrideTable:
        switch (it->second) {
        case Kw::ListOverride:
            m_overrides.emplace_back();
            break;
        case Kw::ListId:
            if (!m_overrides.empty())
                m_overrides.back().listId = param;
            break;
        case Kw::Ls:
            if (!m_overrides.empty())
                m_overrides.back().number = param;
            break;
        default:
            break;
        }
        return;
    case Dest::Held:
    case Dest::Pict: // read before, by handlePictWord
        return;
    case Dest::Body:
        break;
    }

    CharState &chars = frame.chars;
    ParaState &para = frame.para;
    switch (it->second) {
    case Kw::Rtf:
        break;
    case Kw::Ansi:
        m_tables.ansiCodePage = 1252;
        m_codePage = nullptr;
        break;
    case Kw::Mac:
        m_tables.ansiCodePage = 10000;
        m_codePage = nullptr;
        break;
    case Kw::Pc:
        m_tables.ansiCodePage = 437;
        m_codePage = nullptr;
        break;
    case Kw::Pca:
        m_tables.ansiCodePage = 850;
        m_codePage = nullptr;
        break;
    case Kw::AnsiCpg:
        if (hasParam && param > 0) {
            m_tables.ansiCodePage = param;
            m_codePage = nullptr;
        }
        break;
    case Kw::Deff:
        m_tables.defaultFont = param;
        m_codePage = nullptr;
        break;
    case Kw::Uc:
        frame.uc = clampInt(param, 0, 16);
        break;
    case Kw::U: {
        const int code = param < 0 ? param + 65536 : param;
        appendChar(static_cast<char16_t>(clampInt(code, 0, 0xFFFF)));
        m_skip = frame.uc;
        break;
    }
    case Kw::Plain:
        chars = CharState {};
        break;
    case Kw::F:
        chars.font = hasParam ? param : -1;
        m_lead = -1;
        break;
    case Kw::Fs:
        chars.halfPoints = hasParam && param > 0 ? clampInt(param, 2, 3276) : 24;
        break;
    case Kw::Cf:
        chars.foreground = hasParam ? param : -1;
        break;
    case Kw::Cb:
    case Kw::Highlight:
        chars.background = hasParam && param > 0 ? param : -1;
        break;
    case Kw::B:
        chars.bold = on;
        break;
    case Kw::I:
        chars.italic = on;
        break;
    case Kw::Ul:
        chars.underline = on;
        break;
    case Kw::UlNone:
        chars.underline = false;
        break;
    case Kw::Strike:
        chars.strike = on;
        break;
    case Kw::V:
        flush();
        chars.hidden = on;
        break;
    case Kw::Super:
        chars.vertical = 1;
        break;
    case Kw::Sub:
        chars.vertical = -1;
        break;
    case Kw::NoSuperSub:
        chars.vertical = 0;
        break;
    case Kw::Pard:
        para = ParaState {};
        m_pendingTabKind = 0;
        break;
    case Kw::Par:
    case Kw::Row:
    case Kw::Page:
        endParagraph();
        break;
    case Kw::Line:
        appendChar(u'\u2028');
        break;
    case Kw::Tab:
    case Kw::Cell:
        appendChar(u'\t');
        break;
    case Kw::Ql:
        para.alignment = 0;
        break;
    case Kw::Qc:
        para.alignment = 1;
        break;
    case Kw::Qr:
        para.alignment = 2;
        break;
    case Kw::Qj:
        para.alignment = 3;
        break;
    case Kw::Li:
        para.leftIndent = clampTwips(param);
        break;
    case Kw::Ri:
        para.rightIndent = clampTwips(param);
        break;
    case Kw::Fi:
        para.firstLineIndent = clampTwips(param);
        break;
    case Kw::Sb:
        para.spaceBefore = clampTwips(param);
        break;
    case Kw::Sa:
        para.spaceAfter = clampTwips(param);
        break;
    case Kw::Tqr:
        m_pendingTabKind = 2;
        break;
    case Kw::Tqc:
        m_pendingTabKind = 1;
        break;
    case Kw::Tqdec:
        m_pendingTabKind = 3;
        break;
    case Kw::Tx:
        if (para.tabCount < ParaState::MaxTabs)
            para.tabs[static_cast<std::size_t>(para.tabCount++)]
                = TabStop {clampInt(param, 0, 31680), static_cast<quint8>(m_pendingTabKind)};
        m_pendingTabKind = 0;
        break;
    case Kw::Ls:
        para.listOverride = param;
        break;
    case Kw::Ilvl:
        para.listLevel = clampInt(param, 0, 8);
        break;
    case Kw::EmDash:
        appendChar(u'\u2014');
        break;
    case Kw::EnDash:
        appendChar(u'\u2013');
        break;
    case Kw::Bullet:
        appendChar(u'\u2022');
        break;
    case Kw::LQuote:
        appendChar(u'\u2018');
        break;
    case Kw::RQuote:
        appendChar(u'\u2019');
        break;
    case Kw::LDblQuote:
        appendChar(u'\u201C');
        break;
    case Kw::RDblQuote:
        appendChar(u'\u201D');
        break;
    case Kw::EmSpace:
        appendChar(u'\u2003');
        break;
    case Kw::EnSpace:
        appendChar(u'\u2002');
        break;
    case Kw::QmSpace:
        appendChar(u'\u2005');
        break;
    case Kw::Zwj:
        appendChar(u'\u200D');
        break;
    case Kw::Zwnj:
        appendChar(u'\u200C');
        break;
    case Kw::LtrMark:
        appendChar(u'\u200E');
        break;
    case Kw::RtlMark:
        appendChar(u'\u200F');
        break;
    default:
        break;
    }
}

} // namespace richtext
