#pragma once

#include <QTreeWidget>

// The tree and list controls of the windows: like the platform's, they raise their item
// click when the selection moves by keyboard (arrows, Home, End, Page keys, a typed
// letter) as well as on a mouse click, so that what a window shows for the selected item
// always matches the item shown as selected.
class ClickTree final : public QTreeWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ClickTree)

public:
    explicit ClickTree(QWidget *parent = nullptr);
    ~ClickTree() override;

signals:
    void ItemClick(QTreeWidgetItem *item);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};
