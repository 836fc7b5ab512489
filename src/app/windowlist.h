#pragma once

#include <QObject>
#include <QPointer>

class QAction;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QWidget;
class Tlb;
class frmSmallButton;

// The shell's open windows for the keyboard: the window menu lists them by their titles
// (the active one checked), and Ctrl+Tab and Ctrl+Shift+Tab go through them. Tiles are
// the activity's board, not windows the pupil opened, and stand in neither.
class WindowList final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(WindowList)

public:
    WindowList(QWidget *shell, QMdiArea *area, QMenu *menu, QAction *separator);
    ~WindowList() override;

    // The windows in the order they were opened.
    QList<QMdiSubWindow *> windows() const;
    // Activates the next (or previous) window after the active one.
    void step(bool forward);
    // Brings the menu's list up to date; done each time the menu opens.
    void refresh();
    const QList<QAction *> &entries() const { return m_entries; }

    // Tab goes from the toolbar's last key to the first tile (the tiles themselves go on
    // from tile to tile); the keys come to the first tile if a tile held the focus.
    static void chainTiles(Tlb *toolbar, const QList<QPointer<frmSmallButton>> &tiles);

private:
    QMdiArea *m_area;
    QPointer<QMenu> m_menu;
    QPointer<QAction> m_separator;
    QList<QAction *> m_entries;
};
