#include "rtfreader.h"

#include "rtfcodepages.h"

#include <algorithm>

namespace richtext {

namespace {

// Groups nested deeper than this are passed over whole; no document nests so deep.
constexpr std::size_t MaxDepth = 512;

// Indents and spacing beyond a few metres of paper are junk; keeping them sane keeps
// the layout of the document sane.
inline int clampTwips(int value)
{
    return clampInt(value, -31680, 31680);
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
    case Dest::ColorTable:
        // Some writers leave the ";" off the last colour.
        if (!m_color.isAuto && (m_stack.size() < 2 || m_stack[m_stack.size() - 2].dest != Dest::ColorTable)) {
            m_tables.colors.push_back(m_color);
            m_color = ColorEntry {};
        }
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

void RtfReader::handleWord(std::string_view word, bool hasParam, int param)
{
    Kw keyword;
    const bool known = findKeyword(word, keyword);
    if (top().dest == Dest::Pict) {
        if (known)
            handlePictWord(keyword, param);
        return;
    }
    if (!known) {
        // An unknown destination is passed over whole; an unknown word is ignored.
        if (m_star)
            skipCurrentGroup();
        return;
    }
    Frame &frame = top();
    const bool on = !hasParam || param != 0;

    switch (keyword) {
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

    if (frame.dest != Dest::Body) {
        handleTableWord(frame.dest, keyword, param);
        return;
    }

    CharState &chars = frame.chars;
    ParaState &para = frame.para;
    switch (keyword) {
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
    case Kw::Sl:
        para.lineSpacing = hasParam ? clampTwips(param) : 0;
        break;
    case Kw::SlMult:
        para.lineMultiple = on;
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
