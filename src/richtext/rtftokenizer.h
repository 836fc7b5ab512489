#pragma once

#include <cstddef>
#include <string_view>

// Splits RTF bytes into groups, control words, control symbols, hex bytes and runs of
// plain text. It never reads past the end and always moves forward, so that the reader
// built on it cannot hang on any input.
namespace richtext {

struct RtfToken
{
    enum Kind { End, Open, Close, Word, Symbol, Hex, Text, Binary };
    Kind kind = End;
    std::string_view word; // Word: the letters; Text and Binary: the bytes
    int param = 0; // Word: its number, saturated to the int range
    bool hasParam = false;
    unsigned char symbol = 0; // Symbol: the character; Hex: the byte
};

class RtfTokenizer final
{
public:
    RtfTokenizer(const char *begin, const char *end)
        : m_pos(begin)
        , m_end(end)
    {
    }

    RtfToken next();
    // After an Open token: passes over the rest of that group, its closing brace included.
    void skipGroup();
    bool atEnd() const { return m_pos >= m_end; }

private:
    void readWord(RtfToken &token);

    const char *m_pos;
    const char *m_end;
};

} // namespace richtext
