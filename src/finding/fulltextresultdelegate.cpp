#include "fulltextresultdelegate.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QPainter>
#include <QTextDocument>

namespace {

constexpr int Padding = 3;
constexpr int IconSize = 16;

} // namespace

FullTextResultDelegate::FullTextResultDelegate(ContextSource context, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_context(std::move(context))
{
}

void FullTextResultDelegate::paint(
    QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    QStyle *style = opt.widget ? opt.widget->style() : QApplication::style();
    // The background and the selection as the style draws them, without text or icon.
    const QString title = opt.text;
    const QIcon icon = opt.icon;
    opt.text.clear();
    opt.icon = QIcon();
    style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, opt.widget);

    const bool selected = opt.state & QStyle::State_Selected;
    const QPalette::ColorRole textRole = selected ? QPalette::HighlightedText : QPalette::Text;
    const QRect area = opt.rect.adjusted(Padding, Padding, -Padding, -Padding);
    const int line = opt.fontMetrics.height();
    icon.paint(painter, QRect(area.left(), area.top() + (line - IconSize) / 2, IconSize, IconSize));

    painter->save();
    QFont titleFont = opt.font;
    titleFont.setBold(true);
    painter->setFont(titleFont);
    painter->setPen(opt.palette.color(textRole));
    const QRect titleRect(
        area.left() + IconSize + Padding, area.top(), area.width() - IconSize - Padding, line);
    painter->drawText(titleRect, Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetrics(titleFont).elidedText(title, Qt::ElideRight, titleRect.width()));

    QTextDocument context;
    context.setDefaultFont(opt.font);
    context.setDocumentMargin(0);
    context.setHtml(m_context ? m_context(index.row()) : QString());
    context.setTextWidth(-1);
    painter->translate(titleRect.left(), area.top() + line);
    painter->setClipRect(QRect(0, 0, titleRect.width(), line + 2));
    QAbstractTextDocumentLayout::PaintContext paintContext;
    paintContext.palette = opt.palette;
    paintContext.palette.setColor(QPalette::Text, opt.palette.color(textRole));
    context.documentLayout()->draw(painter, paintContext);
    painter->restore();
}

QSize FullTextResultDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return QSize(option.rect.width(), 2 * option.fontMetrics.height() + 2 * Padding + 2);
}
