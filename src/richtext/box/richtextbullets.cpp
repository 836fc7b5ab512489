#include "richtextbullets.h"

#include "richtextboxunits.h"
#include "rtf.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextList>

#include <algorithm>

namespace richtextbox {

namespace {

// The paragraph's indents in the layout's own units: a layout for another device (a
// printer) may scale them. The first line of a left-aligned list paragraph starts at its
// left margin, which tells the scale.
double layoutScale(const QTextBlockFormat &format, const QTextLine &first)
{
    const Qt::Alignment alignment = format.alignment() & Qt::AlignHorizontal_Mask;
    if (format.leftMargin() <= 0 || (alignment & (Qt::AlignHCenter | Qt::AlignRight)))
        return 1.0;
    return first.x() / format.leftMargin();
}

// The format of the paragraph's first character: the bullet takes its font and colour.
QTextCharFormat firstCharFormat(const QTextBlock &block)
{
    const QTextBlock::iterator first = block.begin();
    return first.atEnd() ? block.charFormat() : first.fragment().charFormat();
}

} // namespace

void drawBullets(
    QPainter &painter, const QTextDocument &document, const QRectF &clip, const QColor &textColor)
{
    const QAbstractTextDocumentLayout *layout = document.documentLayout();
    QPaintDevice *device = layout->paintDevice() ? layout->paintDevice() : painter.device();
    static const QString bullet(QChar(0x2022));
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (!block.isVisible() || !block.textList() || !richtext::isListMarkerHidden(block.blockFormat()))
            continue;
        const QTextLayout *lines = block.layout();
        if (!lines || lines->lineCount() == 0)
            continue;
        const QRectF rect = layout->blockBoundingRect(block);
        if (rect.bottom() < clip.top() || rect.top() > clip.bottom())
            continue;
        const QTextLine first = lines->lineAt(0);
        const QTextCharFormat chars = firstCharFormat(block);
        const QFont font(chars.font(), device);
        const QFontMetricsF metrics(font);
        const int hangingTwips = -block.blockFormat().intProperty(richtext::ListFirstLineIndentProperty);
        // Where the hanging indent leaves no room, the bullet keeps a space before the text.
        const double room = metrics.horizontalAdvance(bullet + QLatin1Char(' '));
        const double back
            = std::max(pixelsFromTwips(hangingTwips) * layoutScale(block.blockFormat(), first), room);
        const QPointF origin = lines->position() + QPointF(first.x(), first.y());
        const QPointF baseline(origin.x() - back, origin.y() + first.ascent());
        painter.save();
        painter.setFont(font);
        painter.setPen(chars.foreground().style() != Qt::NoBrush ? chars.foreground().color() : textColor);
        painter.drawText(baseline, bullet);
        painter.restore();
    }
}

} // namespace richtextbox
