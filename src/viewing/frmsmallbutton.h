#pragma once

#include "sourceviewer.h"

#include <QPointer>
#include <QWidget>

#include <array>

class QLabel;
class QMdiSubWindow;
class Session;

// A tile of the main shell: one resource of the activity, shown as a picture of its
// kind with its number. It reads the resource's row once, as it is dressed, and hands it
// to the viewer it owns; it opens the viewer on a click, shows whether the source is
// unopened, open or was read, and keeps behind the open windows.
class frmSmallButton final : public QWidget
{
    Q_OBJECT

public:
    explicit frmSmallButton(Session &session, QWidget *parent = nullptr);
    ~frmSmallButton() override;
    Q_DISABLE_COPY_MOVE(frmSmallButton)

    // Controls.
    QLabel *const Image1; // the picture of the kind and state
    QLabel *const Label1; // the tile's number, over the picture

    // Setting the id dresses the tile for that resource.
    qint32 ResourceID() const { return m_resourceID; }
    void setResourceID(qint32 resourceID);

    // The tile's Load: the unopened picture, no viewer open.
    void Load();
    // Closes the tile (and the viewer it has open), wherever it is shown. False when the
    // viewer stayed open, and the tile with it.
    bool Unload();

    // Where the tile stands, for the shell and for tests.
    SourceViewer::Kind kind() const { return m_kind; }
    SourceViewer *SourceForm() const { return m_sourceForm; }
    bool SourceOpen() const { return m_sourceOpen != 0; }
    QString currentBitmap() const { return m_currentBitmap; }
    QString MapPicturePath() const { return m_row.PicturePath; }
    QString MapCaption() const { return m_row.Caption; }

    // The click on the picture or the number, as the user gives it.
    void Image1_Click();
    // What Enter, Space and a screen reader's press do: the same as a click.
    Q_INVOKABLE void accessiblePress();

    // The design client size of the form, before the shell sizes it to its picture.
    static constexpr int DesignWidthTwips = 1560;
    static constexpr int DesignHeightTwips = 1005;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    enum TileState { Closed = 0, Open = 1, Visited = 2 };

    void ShowResource();
    bool SourceExists();
    void setPicture(TileState state);
    void SourceForm_OnUnload();
    void ZOrderToBack();
    void Form_Activate();
    void adoptViewer(SourceViewer *viewer);
    void disposeViewer();
    QMdiSubWindow *subWindow() const;
    void nameForScreenReaders();
    // Gives the keyboard focus to the nearest tile in the direction of an arrow key.
    bool focusNeighbour(int key);

    Session &m_session;
    qint32 m_resourceID = 0;
    SourceRow m_row; // the resource's row, read as the tile is dressed
    SourceViewer::Kind m_kind = SourceViewer::Kind::None;
    QPointer<SourceViewer> m_sourceForm;
    qint16 m_sourceOpen = 0;
    // The release that ends a double click opens nothing more.
    bool m_inDoubleClick = false;
    std::array<QString, 3> m_tileBitmaps; // closed, open, visited; empty for a kind with none
    QString m_currentBitmap;
    QString m_title; // the source's title, as its tip shows it
    QPointer<QMdiSubWindow> m_watchedSub;
    bool m_passingActivation = false;
    bool m_focusByKeys = false;
    bool m_openedByKeys = false;
};
