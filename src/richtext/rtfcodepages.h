#pragma once

#include <QByteArray>
#include <QString>

#include <array>

// Windows code pages as the RTF reader and writer meet them. Single-byte pages are
// decoded by a table built once from iconv; double-byte pages know their lead bytes and
// decode a lead-trail pair through iconv.
namespace richtext::codepages {

class CodePage final
{
public:
    int number() const { return m_number; }
    bool isDoubleByte() const { return m_doubleByte; }
    bool isLeadByte(unsigned char byte) const { return m_lead[byte]; }
    // The character of a single byte; U+FFFD where the page has none.
    char16_t decode(unsigned char byte) const { return m_table[byte]; }
    // A lead byte with its trail byte, appended to out.
    void decodePair(unsigned char lead, unsigned char trail, QString &out) const;

private:
    friend const CodePage &codePage(int number);
    explicit CodePage(int number);

    int m_number = 1252;
    bool m_doubleByte = false;
    std::array<char16_t, 256> m_table {};
    std::array<bool, 256> m_lead {};
};

// The page for a Windows code-page number; an unknown number gives 1252. Pages are built
// on first use and live as long as the program; safe from any thread.
const CodePage &codePage(int number);

// The code page of an RTF \fcharset value, or 0 for "the document's own" (ANSI, default)
// and for the symbol charset, whose bytes stand for themselves.
int codePageForCharset(int charset);
inline constexpr int SymbolCharset = 2;

// The byte of a character in code page 1253, or -1 when it has none.
int greekByte(char16_t ch);

} // namespace richtext::codepages
