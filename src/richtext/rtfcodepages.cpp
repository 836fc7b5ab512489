#include "rtfcodepages.h"

#include <iconv.h>

#include <cerrno>
#include <map>
#include <memory>
#include <mutex>

namespace richtext::codepages {

namespace {

QByteArray iconvName(int number)
{
    switch (number) {
    case 10000:
        return QByteArrayLiteral("MACINTOSH");
    case 1361:
        return QByteArrayLiteral("JOHAB");
    case 20866:
        return QByteArrayLiteral("KOI8-R");
    case 28591:
        return QByteArrayLiteral("ISO-8859-1");
    case 28597:
        return QByteArrayLiteral("ISO-8859-7");
    case 65001:
        return QByteArrayLiteral("UTF-8");
    default:
        return "CP" + QByteArray::number(number);
    }
}

class Converter final
{
public:
    explicit Converter(int number)
        : m_cd(iconv_open("UTF-16LE", iconvName(number).constData()))
    {
    }
    ~Converter()
    {
        if (valid())
            iconv_close(m_cd);
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    bool valid() const { return m_cd != reinterpret_cast<iconv_t>(-1); }

    // 0 on success with the characters in out, else the errno of iconv.
    int convert(const char *bytes, size_t length, QString &out)
    {
        char16_t buffer[8];
        char *in = const_cast<char *>(bytes);
        size_t inLeft = length;
        char *outPtr = reinterpret_cast<char *>(buffer);
        size_t outLeft = sizeof buffer;
        iconv(m_cd, nullptr, nullptr, nullptr, nullptr);
        const size_t result = iconv(m_cd, &in, &inLeft, &outPtr, &outLeft);
        if (result == static_cast<size_t>(-1))
            return errno;
        // A lone byte that only starts a sequence is accepted by some converters
        // without output: that is an incomplete character too.
        const size_t produced = (sizeof buffer - outLeft) / 2;
        if (produced == 0)
            return EINVAL;
        out.append(reinterpret_cast<const QChar *>(buffer), static_cast<qsizetype>(produced));
        return 0;
    }

private:
    iconv_t m_cd;
};

// Every code page's table, made once at its first use and read by any thread after.
struct PageTables
{
    std::mutex mutex;
    std::map<int, std::unique_ptr<CodePage>> pages;
};

PageTables &pageTables()
{
    static PageTables tables;
    return tables;
}

} // namespace

CodePage::CodePage(int number)
    : m_number(number)
{
    Converter converter(number);
    if (!converter.valid()) {
        m_number = 1252;
        Converter fallback(1252);
        for (int b = 0; b < 256; ++b) {
            const char byte = static_cast<char>(b);
            QString out;
            m_table[b] = fallback.convert(&byte, 1, out) == 0 ? out.at(0).unicode() : char16_t(b);
        }
        return;
    }
    for (int b = 0; b < 256; ++b) {
        const char byte = static_cast<char>(b);
        QString out;
        const int error = converter.convert(&byte, 1, out);
        if (error == 0 && out.size() == 1) {
            const char16_t c = out.at(0).unicode();
            // Some pages (the EBCDIC ones) give control characters for high bytes; those
            // would stand for nothing in a document, so they read as unknown.
            const bool control = c < 0x20 || c == u'\u2029' || c == u'\uFDD0' || c == u'\uFDD1';
            m_table[b] = b >= 0x80 && control ? u'\uFFFD' : c;
        } else if (error == EINVAL && b >= 0x80) {
            m_lead[b] = true;
            m_doubleByte = true;
            m_table[b] = u'\uFFFD';
        } else {
            m_table[b] = b < 0x80 ? char16_t(b) : u'\uFFFD';
        }
    }
}

void CodePage::decodePair(unsigned char lead, unsigned char trail, QString &out) const
{
    thread_local std::map<int, std::unique_ptr<Converter>> converters;
    auto &slot = converters[m_number];
    if (!slot)
        slot = std::make_unique<Converter>(m_number);
    const char pair[2] = {static_cast<char>(lead), static_cast<char>(trail)};
    if (!slot->valid() || slot->convert(pair, 2, out) != 0)
        out.append(QChar(u'\uFFFD'));
}

const CodePage &codePage(int number)
{
    PageTables &tables = pageTables();
    std::lock_guard lock(tables.mutex);
    auto &slot = tables.pages[number];
    if (!slot)
        slot.reset(new CodePage(number));
    return *slot;
}

int codePageForCharset(int charset)
{
    switch (charset) {
    case 77:
        return 10000;
    case 128:
        return 932;
    case 129:
        return 949;
    case 130:
        return 1361;
    case 134:
        return 936;
    case 136:
        return 950;
    case 161:
        return 1253;
    case 162:
        return 1254;
    case 163:
        return 1258;
    case 177:
        return 1255;
    case 178:
        return 1256;
    case 186:
        return 1257;
    case 204:
        return 1251;
    case 222:
        return 874;
    case 238:
        return 1250;
    case 254:
        return 437;
    case 255:
        return 850;
    default:
        return 0;
    }
}

int greekByte(char16_t ch)
{
    static const std::array<qint16, 0x10000> *reverse = [] {
        auto *table = new std::array<qint16, 0x10000>;
        table->fill(-1);
        const CodePage &page = codePage(1253);
        for (int b = 255; b >= 0; --b) {
            const char16_t c = page.decode(static_cast<unsigned char>(b));
            if (c != u'\uFFFD')
                (*table)[c] = static_cast<qint16>(b);
        }
        return table;
    }();
    return (*reverse)[ch];
}

} // namespace richtext::codepages
