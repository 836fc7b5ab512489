#pragma once

#include <QPersistentModelIndex>
#include <QTreeWidget>

// The list of the start screen: one column of items with check boxes, read the way the
// screen's handlers think of it. Items are counted from 1 (ListItems), the selected row
// is the SelectedItem, an item carries a key and a tag beside its text.
//
// Two events reach the screen: ItemCheck when the user changes a box (a click on the box
// or the space key; a click on the box does not select its row), and Click for every
// other click on the list. Setting a check from code raises nothing.
class CheckListView final : public QTreeWidget
{
    Q_OBJECT

public:
    explicit CheckListView(QWidget *parent = nullptr);
    ~CheckListView() override;
    Q_DISABLE_COPY_MOVE(CheckListView)

    // Error numbers of the list, as its users expect them.
    static constexpr int IndexOutOfBounds = 35600;
    static constexpr int ObjectNotSet = 91;

    int count() const;
    // Item `index` (1-based); an index outside 1..count throws IndexOutOfBounds.
    QTreeWidgetItem *ListItems(int index) const;
    QTreeWidgetItem *add(const QString &key, const QString &text);
    void clearItems();

    // The selected row, or nullptr; selected() throws ObjectNotSet instead of nullptr.
    QTreeWidgetItem *SelectedItem() const;
    QTreeWidgetItem *selected() const;
    void setSelectedItem(QTreeWidgetItem *item);

    int indexOf(const QTreeWidgetItem *item) const; // 1-based, 0 for none
    bool isChecked(const QTreeWidgetItem *item) const;
    void setChecked(QTreeWidgetItem *item, bool checked);

    static QString key(const QTreeWidgetItem *item);
    static QString tag(const QTreeWidgetItem *item);
    static void setTag(QTreeWidgetItem *item, const QString &tag);

    // The one column's width, in twips like the rest of the screen's geometry.
    int widthTwips() const;
    void setColumnWidthTwips(int twips);

    // Where the check box of an item is drawn, in viewport coordinates.
    QRect checkBoxRect(const QTreeWidgetItem *item) const;

Q_SIGNALS:
    void ItemCheck(QTreeWidgetItem *item);
    void Click();
    // The arrow keys (or Home, End, the page keys) moved the selection to another row.
    void KeyMove();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    QRect checkRect(const QModelIndex &index) const;
    bool onCheckBox(const QPoint &pos, QModelIndex *index) const;
    void modelDataChanged(
        const QModelIndex &topLeft, const QModelIndex &bottomRight, const QList<int> &roles);

    QPersistentModelIndex m_pressedBox;
    bool m_boxPressed = false;
    bool m_settingFromCode = false;
};
