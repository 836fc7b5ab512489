#pragma once

#include <rtf.h>

#include <QImage>
#include <QString>
#include <QStringList>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QUrl>

// What the writer and the reader must keep of a document, in a form that compares with
// one QCOMPARE and prints readably when it differs.
namespace rtftest {

inline QString describeColor(const QBrush &brush)
{
    if (brush.style() == Qt::NoBrush)
        return QStringLiteral("none");
    return brush.color().name();
}

inline QString describeChar(const QTextDocument &document, QChar ch, const QTextCharFormat &f)
{
    QStringList parts;
    parts << QString::number(ch.unicode(), 16);
    const QStringList families = f.fontFamilies().toStringList();
    parts << (families.isEmpty() || families.first().isEmpty() ? document.defaultFont().family()
                                                               : families.first());
    parts << QString::number(f.fontPointSize() > 0 ? f.fontPointSize() : document.defaultFont().pointSizeF());
    parts << (f.fontWeight() >= QFont::DemiBold ? QStringLiteral("b") : QStringLiteral("-"));
    parts << (f.fontItalic() ? QStringLiteral("i") : QStringLiteral("-"));
    parts << (f.fontUnderline() ? QStringLiteral("u") : QStringLiteral("-"));
    parts << (f.fontStrikeOut() ? QStringLiteral("s") : QStringLiteral("-"));
    parts << QString::number(int(f.verticalAlignment()));
    parts << describeColor(f.foreground()) << describeColor(f.background());
    if (f.isImageFormat()) {
        const QTextImageFormat image = f.toImageFormat();
        parts << QStringLiteral("image %1x%2").arg(image.width()).arg(image.height());
        const QImage picture
            = document.resource(QTextDocument::ImageResource, QUrl(image.name())).value<QImage>();
        QImage argb = picture.convertToFormat(QImage::Format_ARGB32);
        QString pixels;
        for (int y = 0; y < argb.height(); ++y) {
            for (int x = 0; x < argb.width(); ++x)
                pixels += QString::number(argb.pixel(x, y), 16) + u',';
        }
        parts << pixels;
    }
    return parts.join(u' ');
}

inline QString describeBlock(const QTextBlock &block)
{
    const QTextBlockFormat f = block.blockFormat();
    QStringList parts;
    parts << QString::number(int(f.alignment() & Qt::AlignHorizontal_Mask));
    parts << QString::number(f.leftMargin()) << QString::number(f.rightMargin());
    parts << QString::number(f.textIndent()) << QString::number(f.topMargin())
          << QString::number(f.bottomMargin());
    parts << f.property(richtext::ListFirstLineIndentProperty).toString();
    parts << QStringLiteral("line %1 %2").arg(f.lineHeight()).arg(f.lineHeightType());
    for (const QTextOption::Tab &tab : f.tabPositions())
        parts << QStringLiteral("tab %1 %2").arg(tab.position).arg(int(tab.type));
    if (const QTextList *list = block.textList()) {
        parts << QStringLiteral("list %1 start %2 item %3")
                     .arg(int(list->format().style()))
                     .arg(list->format().property(richtext::ListStartProperty).toString())
                     .arg(list->itemNumber(block));
    }
    return parts.join(u' ');
}

// One line per block and one per character.
inline QStringList describe(const QTextDocument &document)
{
    QStringList lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        lines << QStringLiteral("block ") + describeBlock(block);
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QString text = fragment.text();
            for (const QChar ch : text)
                lines << describeChar(document, ch, fragment.charFormat());
        }
    }
    return lines;
}

} // namespace rtftest
