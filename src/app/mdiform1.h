#pragma once

#include <session.h>
#include <shellwindow.h>

#include <QMainWindow>
#include <QPointer>

#include <memory>

class QAction;
class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class Tlb;
class frmSmallButton;

namespace content {
class Recordset;
}

// The main window of an open activity: a fixed 800 by 600 parent of child windows with
// the picture background, the menu, the toolbar and one tile per resource. It owns the
// tiles and the commands that reach every other window. It is the session's shell: made
// by the factory registered on the session, and the session's window of its kind.
class MDIForm1 final : public QMainWindow, public ShellWindow
{
    Q_OBJECT

public:
    explicit MDIForm1(Session &session, QWidget *parent = nullptr);
    ~MDIForm1() override;
    Q_DISABLE_COPY_MOVE(MDIForm1)

    Session &session() const { return m_session; }

    // Controls.
    QMdiArea *const area;
    Tlb *const TlbMain;
    QMenu *mnuFile = nullptr;
    QAction *mnuPrev = nullptr;
    QAction *mnuExit = nullptr;
    QMenu *mnumousia = nullptr;
    QAction *mnuMoys1 = nullptr;
    QAction *mnuMous2 = nullptr;
    QMenu *mnuChoices = nullptr;
    QAction *mnufacilities = nullptr;
    QAction *mnuFullText = nullptr; // Ctrl+Shift+F anywhere in the shell
    QAction *mnuHandIn = nullptr; // Ctrl+Shift+P, in an activity
    QMenu *mnuView = nullptr;
    QAction *mnuStudNotes = nullptr;
    QAction *mnuCatalogue = nullptr;
    QAction *mnuDraw = nullptr;
    QAction *mnuNotes = nullptr;
    QMenu *mnuWndAlign = nullptr;
    QAction *mnuCascade = nullptr;
    QAction *mnuTileHorizontal = nullptr;
    QAction *mnuTileVertical = nullptr;
    QAction *mnuArrangeIcons = nullptr;
    QAction *WindowListSeparator = nullptr;
    QAction *mnuHelp = nullptr;
    // How the last hand-in went, in the menu bar's corner, where it takes nothing of the
    // tiles' client area.
    QLabel *lblHandIn = nullptr;

    // ShellWindow.
    QWidget *window() override { return this; }
    QMdiArea *mdiArea() override { return area; }
    int mnuListUBound() const override;
    QAction *mnuList(int index) override;
    QAction *windowListSeparator() override { return WindowListSeparator; }
    void setSelectedActivity(qint32 activityID) override;
    void LoadResources() override;
    void UnloadResources() override;
    bool QueryUnloadResources() override;
    void setToggleChecked(Toggle toggle, bool checked) override;

    // The activity shown and its tiles (tile i is Tiles().at(i - 1)).
    qint32 ActivityID() const { return m_activityID; }
    const QString &ResourceSQL() const { return m_resourceSQL; }
    qint16 ResourceCount() const { return m_resourceCount; }
    const QList<QPointer<frmSmallButton>> &Tiles() const { return m_tiles; }

    // The platform's arrangements of the child windows: 0 cascade, 1 horizontal tiling
    // (windows one above the other), 2 vertical tiling (side by side), 3 the minimised
    // windows in rows along the bottom.
    void Arrange(int arrangement);

    // The toolbar's keys, as TlbMain reports them.
    void TlbMain_ButtonClick(const QString &key);

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void buildMenu();
    void Form_Load();
    void Form_Unload();
    bool UnloadChildWindows();
    void showStartScreen();
    void CreateTiles();
    void ArrangeTiles();
    void OpenActionsDocument();
    void OpenHandIn();
    // The windows of the other parts that the menu and the toolbar open are the
    // session's, by kind; until a kind has a factory its commands do nothing.
    void toggleWindow(QAction *toggle, Session::Window which, bool centred);
    void showChild(Session::Window which, bool centred);
    static QString RomanNumeral(int number);

    Session &m_session;
    qint32 m_activityID = 0;
    QString m_resourceSQL;
    std::unique_ptr<content::Recordset> m_resourcesRecordset;
    QList<QPointer<frmSmallButton>> m_tiles;
    qint16 m_resourceCount = 0;
    QList<QAction *> m_mnuList;
    bool m_loaded = false;
    bool m_unloaded = false;
};
