#include "checklistview.h"

#include <runtimeerror.h>
#include <twips.h>

#include <QFocusEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>

namespace {

constexpr int KeyRole = Qt::UserRole;
constexpr int TagRole = Qt::UserRole + 1;
// The state last seen, so that a change of text is not taken for a change of the box.
constexpr int SeenCheckRole = Qt::UserRole + 2;

} // namespace

CheckListView::CheckListView(QWidget *parent)
    : QTreeWidget(parent)
{
    setColumnCount(1);
    setHeaderHidden(true);
    header()->setStretchLastSection(false);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setIndentation(0);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    connect(model(), &QAbstractItemModel::dataChanged, this, &CheckListView::modelDataChanged);
}

CheckListView::~CheckListView() = default;

int CheckListView::count() const
{
    return topLevelItemCount();
}

QTreeWidgetItem *CheckListView::ListItems(int index) const
{
    if (index < 1 || index > count())
        throw platform::RuntimeError(IndexOutOfBounds, QStringLiteral("Ο δείκτης είναι εκτός ορίων"));
    return topLevelItem(index - 1);
}

QTreeWidgetItem *CheckListView::add(const QString &key, const QString &text)
{
    auto *item = new QTreeWidgetItem;
    item->setText(0, text);
    // A long title is cut to the column; the whole of it shows on hovering.
    item->setToolTip(0, text);
    item->setData(0, KeyRole, key);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    m_settingFromCode = true;
    item->setCheckState(0, Qt::Unchecked);
    item->setData(0, SeenCheckRole, false);
    addTopLevelItem(item);
    m_settingFromCode = false;
    return item;
}

void CheckListView::clearItems()
{
    m_pressedBox = QPersistentModelIndex();
    m_boxPressed = false;
    clear();
}

QTreeWidgetItem *CheckListView::SelectedItem() const
{
    const QList<QTreeWidgetItem *> items = selectedItems();
    return items.isEmpty() ? nullptr : items.first();
}

QTreeWidgetItem *CheckListView::selected() const
{
    QTreeWidgetItem *item = SelectedItem();
    if (!item)
        throw platform::RuntimeError(ObjectNotSet, QStringLiteral("Δεν έχει οριστεί μεταβλητή αντικειμένου"));
    return item;
}

void CheckListView::setSelectedItem(QTreeWidgetItem *item)
{
    if (!item)
        throw platform::RuntimeError(ObjectNotSet, QStringLiteral("Δεν έχει οριστεί μεταβλητή αντικειμένου"));
    setCurrentItem(item, 0, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

int CheckListView::indexOf(const QTreeWidgetItem *item) const
{
    return item ? indexOfTopLevelItem(const_cast<QTreeWidgetItem *>(item)) + 1 : 0;
}

bool CheckListView::isChecked(const QTreeWidgetItem *item) const
{
    if (!item)
        throw platform::RuntimeError(ObjectNotSet, QStringLiteral("Δεν έχει οριστεί μεταβλητή αντικειμένου"));
    return item->checkState(0) == Qt::Checked;
}

void CheckListView::setChecked(QTreeWidgetItem *item, bool checked)
{
    if (!item)
        throw platform::RuntimeError(ObjectNotSet, QStringLiteral("Δεν έχει οριστεί μεταβλητή αντικειμένου"));
    const bool was = m_settingFromCode;
    m_settingFromCode = true;
    item->setCheckState(0, checked ? Qt::Checked : Qt::Unchecked);
    item->setData(0, SeenCheckRole, checked);
    m_settingFromCode = was;
}

QString CheckListView::key(const QTreeWidgetItem *item)
{
    return item ? item->data(0, KeyRole).toString() : QString();
}

QString CheckListView::tag(const QTreeWidgetItem *item)
{
    return item ? item->data(0, TagRole).toString() : QString();
}

void CheckListView::setTag(QTreeWidgetItem *item, const QString &tag)
{
    if (item)
        item->setData(0, TagRole, tag);
}

int CheckListView::widthTwips() const
{
    return platform::twipsFromPixelsX(width());
}

void CheckListView::setColumnWidthTwips(int twips)
{
    setColumnWidth(0, qMax(0, platform::pixelsFromTwipsX(twips)));
}

QRect CheckListView::checkBoxRect(const QTreeWidgetItem *item) const
{
    return checkRect(indexFromItem(item, 0));
}

QRect CheckListView::checkRect(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    option.features |= QStyleOptionViewItem::HasCheckIndicator;
    return style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, this);
}

bool CheckListView::onCheckBox(const QPoint &pos, QModelIndex *index) const
{
    const QModelIndex at = indexAt(pos);
    if (!at.isValid() || !(at.flags() & Qt::ItemIsUserCheckable))
        return false;
    // A little slack around the box, as a pupil's click is not precise.
    if (!checkRect(at).adjusted(-2, -2, 2, 2).contains(pos))
        return false;
    *index = at;
    return true;
}

void CheckListView::mousePressEvent(QMouseEvent *event)
{
    QModelIndex index;
    if (event->button() == Qt::LeftButton && onCheckBox(event->position().toPoint(), &index)) {
        // The box toggles on release and leaves the selection alone.
        m_pressedBox = index;
        m_boxPressed = true;
        setFocus(Qt::MouseFocusReason);
        event->accept();
        return;
    }
    m_pressedBox = QPersistentModelIndex();
    m_boxPressed = false;
    QTreeWidget::mousePressEvent(event);
}

void CheckListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    // Each click on a box counts on its own, however fast the second one comes.
    mousePressEvent(event);
}

void CheckListView::mouseReleaseEvent(QMouseEvent *event)
{
    if (m_boxPressed) {
        const QPersistentModelIndex pressed = m_pressedBox;
        m_pressedBox = QPersistentModelIndex();
        m_boxPressed = false;
        QModelIndex index;
        if (pressed.isValid() && onCheckBox(event->position().toPoint(), &index) && index == pressed) {
            QTreeWidgetItem *item = itemFromIndex(index);
            // Through the model, as any change of the box by the user: ItemCheck follows.
            item->setCheckState(0, item->checkState(0) == Qt::Checked ? Qt::Unchecked : Qt::Checked);
        }
        event->accept();
        return;
    }
    QTreeWidget::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton)
        Q_EMIT Click();
}

void CheckListView::keyPressEvent(QKeyEvent *event)
{
    const QTreeWidgetItem *before = currentItem();
    QTreeWidget::keyPressEvent(event);
    if (currentItem() != before && currentItem())
        Q_EMIT KeyMove();
}

void CheckListView::focusInEvent(QFocusEvent *event)
{
    // Reached by Tab, a list with no current item would leave Space and the focus frame
    // nowhere to go: the first item becomes current, without being picked.
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason) {
        if (!currentItem() && topLevelItemCount() > 0)
            setCurrentItem(topLevelItem(0), 0, QItemSelectionModel::NoUpdate);
    }
    QTreeWidget::focusInEvent(event);
}

void CheckListView::modelDataChanged(
    const QModelIndex &topLeft, const QModelIndex &bottomRight, const QList<int> &roles)
{
    if (m_settingFromCode)
        return;
    if (!roles.isEmpty() && !roles.contains(Qt::CheckStateRole))
        return;
    if (topLeft.parent().isValid())
        return;
    for (int row = topLeft.row(); row <= bottomRight.row(); ++row) {
        QTreeWidgetItem *item = topLevelItem(row);
        if (!item)
            continue;
        const bool checked = item->checkState(0) == Qt::Checked;
        if (checked == item->data(0, SeenCheckRole).toBool())
            continue;
        m_settingFromCode = true;
        item->setData(0, SeenCheckRole, checked);
        m_settingFromCode = false;
        Q_EMIT ItemCheck(item);
    }
}
