#include "tipgeometry.h"

#include <twips.h>

#include <QFontMetrics>
#include <QTextLayout>
#include <QtMath>

#include <cstdlib>

namespace tipgeometry {

int textWidthLimit(qsizetype length)
{
    if (length >= 1 && length <= 200)
        return 200;
    if (length >= 201 && length <= 400)
        return 300;
    return 400;
}

namespace {

// The text's block as the system measures it: the top-left stays, the size is the
// wrapped text's.
QRect measure(const QFontMetrics &metrics, const QString &text, int right)
{
    const QRect bounds
        = metrics.boundingRect(QRect(0, 0, right, 0), Qt::TextWordWrap | Qt::AlignHCenter, text);
    return QRect(0, 0, bounds.width(), bounds.height());
}

} // namespace

Layout layOut(const QFontMetrics &metrics, const QString &text, QSize picture)
{
    Layout l;
    l.hasText = !text.isEmpty();
    l.hasPicture = !picture.isEmpty();
    if (!l.hasText && !l.hasPicture)
        return l;
    l.empty = false;
    const int limit = textWidthLimit(text.size());
    if (l.hasPicture && l.hasText) {
        l.picture = QRect(0, 0, picture.width(), picture.height());
        l.text = measure(metrics, text, std::max(picture.width(), limit));
        l.text.translate(Margin, Margin);
        l.picture.translate(Margin, std::abs(l.text.bottom() + 1) + Margin);
        l.all = l.text.united(l.picture);
    } else if (l.hasPicture) {
        l.picture = QRect(Margin, Margin, picture.width(), picture.height());
        l.all = l.picture;
    } else {
        l.text = measure(metrics, text, limit).translated(Margin, Margin);
        l.all = l.text;
    }
    // QRect's right and bottom are the last pixel inside; the system's are one behind.
    l.widthTwips = std::abs(l.all.right() + 1 + Margin) * platform::TwipsPerPixelX;
    l.heightTwips = std::abs(l.all.bottom() + 1 + Margin) * platform::TwipsPerPixelY;
    return l;
}

QPoint place(int tipLeft, int tipTop, int widthTwips, int heightTwips, QSize screenTwips)
{
    int left = tipLeft - widthTwips / 2;
    if (left + widthTwips > screenTwips.width())
        left = screenTwips.width() - widthTwips;
    if (left < 0)
        left = 0;
    int top = tipTop + BelowMouse;
    if (screenTwips.height() - BottomStrip < top + heightTwips)
        top = screenTwips.height() - heightTwips - BottomStrip;
    if (top < 0)
        top = 0;
    return QPoint(left, top);
}

QRegion body(int w, int h)
{
    return QRegion(0, 0, w, h);
}

QRegion shadow(int w, int h)
{
    return body(w, h).translated(ShadowOffset, ShadowOffset).subtracted(body(w, h));
}

QRegion outline(int w, int h)
{
    return body(w, h).united(body(w, h).translated(ShadowOffset, ShadowOffset));
}

std::unique_ptr<QTextLayout> textLines(const QFont &font, const QString &text, int width)
{
    // What QPainter does to a text before it lays it out: a new line breaks the line, a
    // carriage return and a tab are spaces; one character stays one character.
    QString shown = text;
    for (QChar &c : shown) {
        if (c == u'\n')
            c = QChar::LineSeparator;
        else if (c == u'\r' || c == u'\t')
            c = u' ';
    }
    auto lines = std::make_unique<QTextLayout>(shown, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WordWrap);
    option.setAlignment(Qt::AlignLeft);
    lines->setTextOption(option);
    lines->setCacheEnabled(true);
    const qreal leading = QFontMetricsF(font).leading();
    qreal height = -leading;
    lines->beginLayout();
    for (QTextLine line = lines->createLine(); line.isValid(); line = lines->createLine()) {
        line.setLineWidth(qMax<qreal>(0, width));
        height += leading;
        // Each line starts on a whole pixel, as QPainter places it.
        height = qCeil(height);
        line.setPosition(QPointF(0, height));
        // Its height unrounded, as QPainter counts it (QTextLine::height() rounds up).
        height += line.ascent() + line.descent();
    }
    lines->endLayout();
    return lines;
}

QRegion stretchArea(const QTextLayout &lines, int start, int length)
{
    QRegion area;
    const int end = start + length;
    for (int i = 0; i < lines.lineCount(); ++i) {
        const QTextLine line = lines.lineAt(i);
        const int from = qMax(start, line.textStart());
        const int to = qMin(end, line.textStart() + line.textLength());
        if (from >= to)
            continue;
        const qreal left = line.cursorToX(from);
        const qreal right = line.cursorToX(to);
        area += QRectF(qMin(left, right), line.y(), qAbs(right - left), line.height()).toAlignedRect();
    }
    return area;
}

} // namespace tipgeometry
