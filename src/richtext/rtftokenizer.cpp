#include "rtftokenizer.h"

#include <climits>

namespace richtext {

namespace {

inline bool isLetter(unsigned char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

inline int hexValue(unsigned char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// Letters beyond this are still consumed, but the word is cut; no real word is as long.
constexpr std::size_t MaxWordLength = 32;

} // namespace

void RtfTokenizer::readWord(RtfToken &token)
{
    const char *start = m_pos;
    while (m_pos < m_end && isLetter(static_cast<unsigned char>(*m_pos)))
        ++m_pos;
    std::size_t length = static_cast<std::size_t>(m_pos - start);
    token.kind = RtfToken::Word;
    token.word = std::string_view(start, length < MaxWordLength ? length : MaxWordLength);
    token.hasParam = false;
    token.param = 0;
    if (m_pos < m_end && (*m_pos == '-' || (*m_pos >= '0' && *m_pos <= '9'))) {
        bool negative = false;
        if (*m_pos == '-') {
            negative = true;
            ++m_pos;
        }
        long long value = 0;
        bool digits = false;
        while (m_pos < m_end && *m_pos >= '0' && *m_pos <= '9') {
            digits = true;
            if (value < INT_MAX)
                value = value * 10 + (*m_pos - '0');
            ++m_pos;
        }
        if (value > INT_MAX)
            value = INT_MAX;
        token.hasParam = digits;
        token.param = static_cast<int>(negative ? -value : value);
    }
    if (m_pos < m_end && *m_pos == ' ')
        ++m_pos;
}

RtfToken RtfTokenizer::next()
{
    RtfToken token;
    while (m_pos < m_end) {
        const unsigned char c = static_cast<unsigned char>(*m_pos);
        if (c == '{') {
            ++m_pos;
            token.kind = RtfToken::Open;
            return token;
        }
        if (c == '}') {
            ++m_pos;
            token.kind = RtfToken::Close;
            return token;
        }
        if (c == '\r' || c == '\n') {
            ++m_pos;
            continue;
        }
        if (c == '\\') {
            ++m_pos;
            if (m_pos >= m_end)
                break;
            const unsigned char d = static_cast<unsigned char>(*m_pos);
            if (isLetter(d)) {
                readWord(token);
                if (token.word == "bin" && token.hasParam) {
                    // Raw bytes follow; their length is only trusted as far as the data goes.
                    std::size_t count = token.param > 0 ? static_cast<std::size_t>(token.param) : 0;
                    const std::size_t left = static_cast<std::size_t>(m_end - m_pos);
                    if (count > left)
                        count = left;
                    token.kind = RtfToken::Binary;
                    token.word = std::string_view(m_pos, count);
                    m_pos += count;
                }
                return token;
            }
            if (d == '\'') {
                ++m_pos;
                int value = 0;
                int digits = 0;
                while (digits < 2 && m_pos < m_end) {
                    const int h = hexValue(static_cast<unsigned char>(*m_pos));
                    if (h < 0)
                        break;
                    value = value * 16 + h;
                    ++m_pos;
                    ++digits;
                }
                if (digits == 0)
                    continue;
                token.kind = RtfToken::Hex;
                token.symbol = static_cast<unsigned char>(value);
                return token;
            }
            ++m_pos;
            token.kind = RtfToken::Symbol;
            token.symbol = d;
            return token;
        }
        const char *start = m_pos;
        while (m_pos < m_end) {
            const char e = *m_pos;
            if (e == '\\' || e == '{' || e == '}' || e == '\r' || e == '\n')
                break;
            ++m_pos;
        }
        token.kind = RtfToken::Text;
        token.word = std::string_view(start, static_cast<std::size_t>(m_pos - start));
        return token;
    }
    token.kind = RtfToken::End;
    return token;
}

void RtfTokenizer::skipGroup()
{
    int depth = 1;
    while (m_pos < m_end) {
        const char c = *m_pos++;
        if (c == '{') {
            ++depth;
        } else if (c == '}') {
            if (--depth == 0)
                return;
        } else if (c == '\\' && m_pos < m_end) {
            if (isLetter(static_cast<unsigned char>(*m_pos))) {
                RtfToken token;
                readWord(token);
                if (token.word == "bin" && token.hasParam && token.param > 0) {
                    const std::size_t left = static_cast<std::size_t>(m_end - m_pos);
                    const std::size_t count = static_cast<std::size_t>(token.param);
                    m_pos += count > left ? left : count;
                }
            } else {
                ++m_pos;
            }
        }
    }
}

} // namespace richtext
