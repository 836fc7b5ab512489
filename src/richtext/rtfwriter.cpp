#include "rtfwriter.h"

#include "rtf.h"
#include "rtfcodepages.h"

#include <twips.h>

#include <QBuffer>
#include <QImage>
#include <QPixmap>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QUrl>

#include <charconv>
#include <cmath>

namespace richtext {

namespace {

quint32 bgr(const QColor &color)
{
    const QRgb rgb = color.rgb();
    return quint32(qRed(rgb)) | (quint32(qGreen(rgb)) << 8) | (quint32(qBlue(rgb)) << 16);
}

bool isSymbolFamily(const QString &family)
{
    return family.compare(u"Symbol", Qt::CaseInsensitive) == 0
        || family.startsWith(u"Wingdings", Qt::CaseInsensitive)
        || family.compare(u"Webdings", Qt::CaseInsensitive) == 0;
}

int twipsX(double pixels)
{
    return static_cast<int>(std::lround(pixels * platform::TwipsPerPixelX));
}

int twipsY(double pixels)
{
    return static_cast<int>(std::lround(pixels * platform::TwipsPerPixelY));
}

const char HexDigits[] = "0123456789abcdef";

} // namespace

RtfWriter::RtfWriter(const QTextDocument &document)
    : m_document(document)
{
    const QFont font = document.defaultFont();
    m_defaultFamily = font.families().value(0, font.family());
    if (m_defaultFamily.isEmpty())
        m_defaultFamily = QStringLiteral("Times New Roman");
    if (font.pointSizeF() > 0)
        m_defaultPointSize = font.pointSizeF();
}

void RtfWriter::word(const char *control)
{
    m_out.append('\\');
    m_out.append(control);
    m_needDelimiter = true;
}

void RtfWriter::word(const char *control, long long value)
{
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    m_out.append('\\');
    m_out.append(control);
    m_out.append(digits, end - digits);
    m_needDelimiter = true;
}

void RtfWriter::literal(char c)
{
    if (m_needDelimiter) {
        m_out.append(' ');
        m_needDelimiter = false;
    }
    m_out.append(c);
}

QString RtfWriter::familyOf(const QTextCharFormat &format) const
{
    const QStringList families = format.fontFamilies().toStringList();
    return families.isEmpty() || families.first().isEmpty() ? m_defaultFamily : families.first();
}

int RtfWriter::fontIndex(const QString &family)
{
    const auto it = m_fontIndex.constFind(family);
    if (it != m_fontIndex.cend())
        return it.value();
    m_fonts.append(family);
    const int index = static_cast<int>(m_fonts.size() - 1);
    m_fontIndex.insert(family, index);
    return index;
}

int RtfWriter::colorIndex(const QColor &color)
{
    const quint32 value = bgr(color);
    const auto it = m_colorIndex.constFind(value);
    if (it != m_colorIndex.cend())
        return it.value();
    m_colors.push_back(value);
    const int index = static_cast<int>(m_colors.size()); // after the "auto" entry
    m_colorIndex.insert(value, index);
    return index;
}

void RtfWriter::collectTables()
{
    fontIndex(m_defaultFamily);
    bool bullets = false;
    for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next()) {
        if (const QTextList *list = block.textList()) {
            const auto style = list->format().style();
            if (style == QTextListFormat::ListDisc || style == QTextListFormat::ListCircle
                || style == QTextListFormat::ListSquare)
                bullets = true;
        }
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            fontIndex(familyOf(format));
            if (format.foreground().style() != Qt::NoBrush)
                colorIndex(format.foreground().color());
            if (format.background().style() != Qt::NoBrush)
                colorIndex(format.background().color());
        }
    }
    if (bullets) {
        m_symbolFont = fontIndex(QStringLiteral("Symbol"));
    }
}

void RtfWriter::writeHeader()
{
    m_out.append("{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032{\\fonttbl");
    for (qsizetype i = 0; i < m_fonts.size(); ++i) {
        m_out.append("{");
        word("f", i);
        word("fnil");
        word("fcharset", isSymbolFamily(m_fonts.at(i)) ? 2 : 161);
        writeFontName(m_fonts.at(i));
        m_out.append(";}");
        m_needDelimiter = false;
    }
    m_out.append("}\r\n{\\colortbl ;");
    for (const quint32 value : m_colors) {
        word("red", value & 0xFF);
        word("green", (value >> 8) & 0xFF);
        word("blue", (value >> 16) & 0xFF);
        m_out.append(';');
        m_needDelimiter = false;
    }
    m_out.append("}\r\n");
    word("viewkind", 4);
    word("uc", 1);
}

void RtfWriter::writeCharFormat(const QTextCharFormat &format)
{
    Written next;
    next.font = fontIndex(familyOf(format));
    const double points = format.fontPointSize() > 0 ? format.fontPointSize() : m_defaultPointSize;
    next.halfPoints = static_cast<int>(std::lround(points * 2));
    next.foreground
        = format.foreground().style() != Qt::NoBrush ? colorIndex(format.foreground().color()) : 0;
    next.background
        = format.background().style() != Qt::NoBrush ? colorIndex(format.background().color()) : 0;
    next.bold = format.fontWeight() >= QFont::DemiBold;
    next.italic = format.fontItalic();
    next.underline = format.fontUnderline();
    next.strike = format.fontStrikeOut();
    const auto vertical = format.verticalAlignment();
    next.vertical = vertical == QTextCharFormat::AlignSuperScript ? 1
        : vertical == QTextCharFormat::AlignSubScript             ? -1
                                                                  : 0;

    if (next.font != m_state.font)
        word("f", next.font);
    if (next.halfPoints != m_state.halfPoints)
        word("fs", next.halfPoints);
    if (next.foreground != m_state.foreground)
        word("cf", next.foreground);
    if (next.background != m_state.background)
        word("highlight", next.background);
    if (next.bold != m_state.bold)
        next.bold ? word("b") : word("b", 0);
    if (next.italic != m_state.italic)
        next.italic ? word("i") : word("i", 0);
    if (next.underline != m_state.underline)
        next.underline ? word("ul") : word("ulnone");
    if (next.strike != m_state.strike)
        next.strike ? word("strike") : word("strike", 0);
    if (next.vertical != m_state.vertical)
        word(next.vertical > 0 ? "super" : next.vertical < 0 ? "sub" : "nosupersub");
    m_state = next;
}

void RtfWriter::writeText(const QString &text)
{
    for (const QChar qc : text) {
        const char16_t c = qc.unicode();
        switch (c) {
        case u'\\':
        case u'{':
        case u'}':
            m_out.append('\\');
            m_out.append(static_cast<char>(c));
            m_needDelimiter = false;
            continue;
        case u'\t':
            word("tab");
            continue;
        case u'\n':
        case u'\u2028':
            word("line");
            continue;
        case u'\u00A0':
            m_out.append("\\~");
            m_needDelimiter = false;
            continue;
        default:
            break;
        }
        if (c < 0x20)
            continue;
        if (c < 0x80) {
            const bool delimiting = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
                || c == ' ' || c == '-';
            if (!delimiting)
                m_needDelimiter = false;
            literal(static_cast<char>(c));
            continue;
        }
        // Unicode first, for every reader; the Greek code page byte after it for those
        // that only know the document's code page.
        word("u", static_cast<qint16>(c));
        const int byte = codepages::greekByte(c);
        if (byte >= 0) {
            m_out.append("\\'");
            m_out.append(HexDigits[(byte >> 4) & 0xF]);
            m_out.append(HexDigits[byte & 0xF]);
        } else {
            m_out.append('?');
        }
        m_needDelimiter = false;
    }
}

void RtfWriter::writeFontName(const QString &name)
{
    // Font names go in the code page of their charset alone, as the rich-edit control
    // writes them; readers take no Unicode escapes there.
    for (const QChar qc : name) {
        const char16_t c = qc.unicode();
        if (c == u'\\' || c == u'{' || c == u'}' || c == u';' || c < 0x20)
            continue;
        if (c < 0x80) {
            literal(static_cast<char>(c));
            continue;
        }
        const int byte = codepages::greekByte(c);
        if (byte < 0)
            continue;
        m_out.append("\\'");
        m_out.append(HexDigits[(byte >> 4) & 0xF]);
        m_out.append(HexDigits[byte & 0xF]);
        m_needDelimiter = false;
    }
}

void RtfWriter::writePicture(const QTextImageFormat &format)
{
    QImage image;
    const QVariant resource = m_document.resource(QTextDocument::ImageResource, QUrl(format.name()));
    if (resource.canConvert<QImage>() && resource.typeId() == QMetaType::QImage)
        image = resource.value<QImage>();
    else if (resource.typeId() == QMetaType::QPixmap)
        image = resource.value<QPixmap>().toImage();
    else if (resource.typeId() == QMetaType::QByteArray)
        image.loadFromData(resource.toByteArray());

    QByteArray png;
    if (!image.isNull()) {
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
    }
    const double width = format.width() > 0 ? format.width() : image.width();
    const double height = format.height() > 0 ? format.height() : image.height();

    m_out.append("{");
    word("pict");
    word("pngblip");
    word("picw", image.width());
    word("pich", image.height());
    word("picwgoal", twipsX(width));
    word("pichgoal", twipsY(height));
    m_out.append("\r\n");
    m_needDelimiter = false;
    for (qsizetype i = 0; i < png.size(); ++i) {
        const unsigned char b = static_cast<unsigned char>(png.at(i));
        m_out.append(HexDigits[b >> 4]);
        m_out.append(HexDigits[b & 0xF]);
        if ((i & 63) == 63)
            m_out.append("\r\n");
    }
    m_out.append("}");
}

void RtfWriter::writeBlock(const QTextBlock &block)
{
    const QTextBlockFormat format = block.blockFormat();
    word("pard");
    double firstLine = format.textIndent();
    if (const QTextList *list = block.textList()) {
        const QTextListFormat listFormat = list->format();
        const auto style = listFormat.style();
        if (style == QTextListFormat::ListDisc || style == QTextListFormat::ListCircle
            || style == QTextListFormat::ListSquare) {
            m_out.append("{\\pntext");
            m_needDelimiter = true;
            word("f", m_symbolFont);
            m_out.append("\\'B7\\tab}{\\*\\pn\\pnlvlblt");
            m_needDelimiter = true;
            word("pnf", m_symbolFont);
            word("pnindent", 0);
            m_out.append("{\\pntxtb\\'B7}}");
        } else {
            m_out.append("{\\pntext");
            m_needDelimiter = true;
            word("f", 0);
            writeText(list->itemText(block));
            word("tab");
            m_out.append("}{\\*\\pn\\pnlvlbody");
            m_needDelimiter = true;
            word("pnf", 0);
            word("pnindent", 0);
            const QVariant start = listFormat.property(ListStartProperty);
            word("pnstart", start.isValid() ? start.toInt() : 1);
            switch (style) {
            case QTextListFormat::ListLowerAlpha:
                word("pnlcltr");
                break;
            case QTextListFormat::ListUpperAlpha:
                word("pnucltr");
                break;
            case QTextListFormat::ListLowerRoman:
                word("pnlcrm");
                break;
            case QTextListFormat::ListUpperRoman:
                word("pnucrm");
                break;
            default:
                word("pndec");
                break;
            }
            m_out.append("{\\pntxta.}}");
        }
        m_needDelimiter = false;
        const QVariant kept = format.property(ListFirstLineIndentProperty);
        firstLine = kept.isValid() ? kept.toDouble() / platform::TwipsPerPixelX : 0.0;
    }
    const Qt::Alignment alignment = format.alignment() & Qt::AlignHorizontal_Mask;
    if (alignment & Qt::AlignHCenter)
        word("qc");
    else if (alignment & Qt::AlignRight)
        word("qr");
    else if (alignment & Qt::AlignJustify)
        word("qj");
    if (const int fi = twipsX(firstLine); fi != 0)
        word("fi", fi);
    if (const int li = twipsX(format.leftMargin()); li != 0)
        word("li", li);
    if (const int ri = twipsX(format.rightMargin()); ri != 0)
        word("ri", ri);
    if (const int sb = twipsY(format.topMargin()); sb != 0)
        word("sb", sb);
    if (const int sa = twipsY(format.bottomMargin()); sa != 0)
        word("sa", sa);
    switch (format.lineHeightType()) {
    case QTextBlockFormat::ProportionalHeight:
        if (const int sl = static_cast<int>(std::lround(format.lineHeight() * 240.0 / 100.0));
            sl > 0 && sl != 240) {
            word("sl", sl);
            word("slmult", 1);
        }
        break;
    case QTextBlockFormat::MinimumHeight:
        if (const int sl = twipsY(format.lineHeight()); sl > 0) {
            word("sl", sl);
            word("slmult", 0);
        }
        break;
    case QTextBlockFormat::FixedHeight:
        if (const int sl = twipsY(format.lineHeight()); sl > 0) {
            word("sl", -sl);
            word("slmult", 0);
        }
        break;
    default:
        break;
    }
    for (const QTextOption::Tab &tab : format.tabPositions()) {
        switch (tab.type) {
        case QTextOption::CenterTab:
            word("tqc");
            break;
        case QTextOption::RightTab:
            word("tqr");
            break;
        case QTextOption::DelimiterTab:
            word("tqdec");
            break;
        default:
            break;
        }
        word("tx", twipsX(tab.position));
    }

    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const QTextCharFormat charFormat = fragment.charFormat();
        writeCharFormat(charFormat);
        if (charFormat.isImageFormat()) {
            const QTextImageFormat image = charFormat.toImageFormat();
            // A fragment of images holds one object character per picture.
            for (qsizetype i = 0; i < fragment.length(); ++i)
                writePicture(image);
            m_needDelimiter = false;
            continue;
        }
        writeText(fragment.text());
    }
}

QByteArray RtfWriter::write()
{
    collectTables();
    m_out.reserve(m_document.characterCount() * 2 + 512);
    writeHeader();
    bool first = true;
    for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next()) {
        if (!first) {
            word("par");
            m_out.append("\r\n");
            m_needDelimiter = false;
        }
        first = false;
        writeBlock(block);
    }
    m_out.append("}\r\n");
    return m_out;
}

} // namespace richtext
