#include "clicktree.h"

#include <QKeyEvent>

ClickTree::ClickTree(QWidget *parent)
    : QTreeWidget(parent)
{
    connect(this, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem *item) { emit ItemClick(item); });
}

ClickTree::~ClickTree() = default;

void ClickTree::keyPressEvent(QKeyEvent *event)
{
    QTreeWidgetItem *before = currentItem();
    QTreeWidget::keyPressEvent(event);
    QTreeWidgetItem *after = currentItem();
    if (after && after != before)
        emit ItemClick(after);
}
