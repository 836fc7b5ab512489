#include "rtfsinks.h"

#include <twips.h>

#include <QAtomicInteger>
#include <QTextDocument>
#include <QTextList>
#include <QUrl>

namespace richtext {

namespace {

QColor colorFromRgb(quint32 value)
{
    return QColor(int(value & 0xFF), int((value >> 8) & 0xFF), int((value >> 16) & 0xFF));
}

double pixelsX(int twips)
{
    return double(twips) / platform::TwipsPerPixelX;
}

double pixelsY(int twips)
{
    return double(twips) / platform::TwipsPerPixelY;
}

// Windows names a font by its character set ("Arial Greek", "Times New Roman CE"); the
// family to show is the one before the suffix, which the Greek charset of the writer
// keeps saying on the way back out.
QString displayFamily(const QString &name)
{
    static const QLatin1StringView suffixes[] = {QLatin1StringView(" Greek"), QLatin1StringView(" CE"),
        QLatin1StringView(" Cyr"), QLatin1StringView(" Baltic"), QLatin1StringView(" Tur")};
    for (const QLatin1StringView suffix : suffixes) {
        if (name.endsWith(suffix) && name.size() > suffix.size())
            return name.chopped(suffix.size());
    }
    return name;
}

} // namespace

QString newPictureName()
{
    // Documents share resources by name only within themselves, but a picture copied from
    // one box into another keeps its name: names are unique for the whole program.
    static QAtomicInteger<quint64> counter;
    return QString::fromUtf16(PictureResourcePrefix) + QString::number(++counter);
}

QTextListFormat::Style listStyleFor(ListKind kind)
{
    switch (kind) {
    case ListKind::Decimal:
        return QTextListFormat::ListDecimal;
    case ListKind::LowerAlpha:
        return QTextListFormat::ListLowerAlpha;
    case ListKind::UpperAlpha:
        return QTextListFormat::ListUpperAlpha;
    case ListKind::LowerRoman:
        return QTextListFormat::ListLowerRoman;
    case ListKind::UpperRoman:
        return QTextListFormat::ListUpperRoman;
    case ListKind::Bullet:
    case ListKind::None:
        break;
    }
    return QTextListFormat::ListDisc;
}

QTextBlockFormat blockFormatFor(const ParaState &para)
{
    QTextBlockFormat format;
    switch (para.alignment) {
    case 1:
        format.setAlignment(Qt::AlignHCenter);
        break;
    case 2:
        format.setAlignment(Qt::AlignRight);
        break;
    case 3:
        format.setAlignment(Qt::AlignJustify);
        break;
    default:
        format.setAlignment(Qt::AlignLeft);
        break;
    }
    if (para.leftIndent != 0)
        format.setLeftMargin(pixelsX(para.leftIndent));
    if (para.rightIndent != 0)
        format.setRightMargin(pixelsX(para.rightIndent));
    if (para.spaceBefore != 0)
        format.setTopMargin(pixelsY(para.spaceBefore));
    if (para.spaceAfter != 0)
        format.setBottomMargin(pixelsY(para.spaceAfter));
    if (para.lineSpacing > 0 && para.lineMultiple)
        format.setLineHeight(para.lineSpacing * 100.0 / 240.0, QTextBlockFormat::ProportionalHeight);
    else if (para.lineSpacing > 0)
        format.setLineHeight(pixelsY(para.lineSpacing), QTextBlockFormat::MinimumHeight);
    else if (para.lineSpacing < 0)
        format.setLineHeight(pixelsY(-para.lineSpacing), QTextBlockFormat::FixedHeight);
    if (para.list != ListKind::None) {
        if (para.firstLineIndent != 0)
            format.setProperty(ListFirstLineIndentProperty, para.firstLineIndent);
        if (para.list == ListKind::Bullet)
            hideListMarker(format);
    } else if (para.firstLineIndent != 0) {
        format.setTextIndent(pixelsX(para.firstLineIndent));
    }
    if (para.tabCount > 0) {
        QList<QTextOption::Tab> tabs;
        tabs.reserve(para.tabCount);
        for (int i = 0; i < para.tabCount; ++i) {
            const TabStop &stop = para.tabs[static_cast<std::size_t>(i)];
            QTextOption::TabType type = QTextOption::LeftTab;
            QChar delimiter;
            switch (stop.kind) {
            case 1:
                type = QTextOption::CenterTab;
                break;
            case 2:
                type = QTextOption::RightTab;
                break;
            case 3:
                type = QTextOption::DelimiterTab;
                delimiter = QChar(u'.');
                break;
            default:
                break;
            }
            tabs.append(QTextOption::Tab(pixelsX(stop.position), type, delimiter));
        }
        format.setTabPositions(tabs);
    }
    return format;
}

DocumentSink::DocumentSink(QTextCursor &cursor)
    : m_cursor(cursor)
{
}

const QTextCharFormat &DocumentSink::charFormat(const CharState &state)
{
    if (m_lastFormat && state == m_lastState)
        return *m_lastFormat;
    auto it = m_formats.find(state);
    if (it == m_formats.end()) {
        QTextCharFormat format;
        if (m_tables) {
            quint32 value = 0;
            if (m_tables->color(state.foreground, value))
                format.setForeground(colorFromRgb(value));
            if (m_tables->color(state.background, value))
                format.setBackground(colorFromRgb(value));
            if (const FontEntry *font = m_tables->font(state.font); font && !font->name.isEmpty())
                format.setFontFamilies(QStringList {displayFamily(font->name)});
        }
        format.setFontPointSize(state.halfPoints / 2.0);
        if (state.bold)
            format.setFontWeight(QFont::Bold);
        if (state.italic)
            format.setFontItalic(true);
        if (state.underline)
            format.setFontUnderline(true);
        if (state.strike)
            format.setFontStrikeOut(true);
        if (state.vertical > 0)
            format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
        else if (state.vertical < 0)
            format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
        it = m_formats.emplace(state, format).first;
    }
    m_lastState = state;
    m_lastFormat = &it->second;
    return it->second;
}

void DocumentSink::text(const QString &chunk, const CharState &chars)
{
    m_cursor.insertText(chunk, charFormat(chars));
}

void DocumentSink::applyParagraph(const ParaState &para)
{
    m_cursor.setBlockFormat(blockFormatFor(para));
    if (para.list == ListKind::None) {
        m_list = nullptr;
        return;
    }
    // Paragraphs in a row with the same numbering belong to one list, so that numbers run on.
    if (m_list && m_listPara.list == para.list && m_listPara.listLevel == para.listLevel
        && m_listPara.listOverride == para.listOverride) {
        m_list->add(m_cursor.block());
        return;
    }
    QTextListFormat format;
    format.setStyle(listStyleFor(para.list));
    format.setIndent(0);
    if (para.listStart != 1)
        format.setProperty(ListStartProperty, para.listStart);
    m_list = m_cursor.createList(format);
    m_listPara = para;
}

void DocumentSink::paragraphEnd(const CharState &chars, const ParaState &para)
{
    applyParagraph(para);
    m_cursor.insertBlock(QTextBlockFormat(), charFormat(chars));
}

void DocumentSink::picture(const RtfPicture &picture, const CharState &chars)
{
    QTextImageFormat format;
    format.merge(charFormat(chars));
    const QString name = newPictureName();
    if (!picture.image.isNull())
        m_cursor.document()->addResource(QTextDocument::ImageResource, QUrl(name), picture.image);
    format.setName(name);
    if (picture.width > 0 && picture.height > 0) {
        format.setWidth(picture.width);
        format.setHeight(picture.height);
    }
    m_cursor.insertImage(format);
}

void DocumentSink::finish(const ParaState &para)
{
    if (m_applyFinal)
        applyParagraph(para);
}

} // namespace richtext
