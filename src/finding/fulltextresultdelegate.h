#pragma once

#include <QStyledItemDelegate>

#include <functional>

// Draws one result of the text search in two lines: the icon and the title, and below
// them the line of text around the first hit, whose HTML (words found in bold) is asked
// of the window when the row is first drawn.
class FullTextResultDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using ContextSource = std::function<QString(int row)>;
    explicit FullTextResultDelegate(ContextSource context, QObject *parent = nullptr);

    void paint(
        QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    ContextSource m_context;
};
