#pragma once

#include "palettecell.h"

#include <QPixmap>
#include <QWidget>

#include <optional>
#include <vector>

// What the three palettes share: a small tool window of cells painted once into the
// window's persistent picture, a raised edge on the cell under the pointer, a sunken edge
// on the chosen one, a pick on any mouse button going down, and closing on its release or
// as soon as another window becomes the active one, so that a click anywhere else closes
// it without a pick.
//
// The owner creates the object, places it (Move, in twips), gives it its starting value
// and shows it; the palette unloads itself. Unloading hides the window and keeps the
// object: the next showing loads it afresh and rebuilds the cells, while the chosen cell,
// the hot cell and whether a pick started live as long as the object.
class PaletteWindow : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PaletteWindow)

public:
    ~PaletteWindow() override;

    // Window geometry in twips, the window frame included, as owners place a palette.
    // Writing loads the window.
    int Left() const;
    int Top() const;
    int Width() const;
    int Height() const;
    void setLeft(int twips);
    void setTop(int twips);
    void Move(int leftTwips, int topTwips);

    QString Caption() const { return windowTitle(); }
    void setCaption(const QString &caption);

    // Loads the window if it isn't, and shows it modeless, in front and active.
    void Show();
    // Hides the window and ends its load; the object stays.
    void Unload();
    bool Loaded() const { return m_loaded; }

    // One-based, as the cells are numbered; an index out of range is the platform's
    // run-time error 9.
    const PaletteCell &Cells(int index) const;
    int CellCount() const { return int(m_cells.size()); }
    int SelectedIndex() const { return m_selectedIndex; }
    int HotIndex() const { return m_hotIndex; }
    bool PickStarted() const { return m_pickStarted; }
    // Whether the palette follows the pointer to see it leave.
    bool HasCapture() const { return m_captured; }
    // Where a raised edge shows right now, if anywhere.
    std::optional<QRect> RaisedEdge() const { return m_raised; }

protected:
    PaletteWindow(int cellCount, QSize designSize, QWidget *owner);

    // What each palette says of itself.
    virtual void Form_Load() = 0;
    // The point a mouse position stands for in the cells' pixels.
    virtual QPoint cellPoint(QPointF position) const;
    // Where a press picks the cell, where the pointer raises it, what repaints when the
    // pointer moves on, and where the chosen cell shows sunken. The bare cell unless a
    // palette says otherwise.
    virtual QRect pickArea(int index) const { return Cells(index).rect(); }
    virtual QRect raisedArea(int index) const { return Cells(index).rect(); }
    virtual QRect hotRepaintArea(int index) const { return Cells(index).rect(); }
    virtual QRect sunkenArea(int index) const { return Cells(index).rect(); }
    // Raises the palette's event with the value of the chosen cell.
    virtual void raiseNewValue() = 0;

    PaletteCell &cell(int index);
    // A fresh persistent picture of the given client size in the window's colour; the
    // window takes that size and keeps it.
    QPixmap &newPicture(QSize clientSize);
    QPixmap &picture() { return m_picture; }
    // Repaints the whole window at once; what the pointer raised is gone.
    void Refresh();

    qint16 m_selectedIndex = 0;
    qint16 m_hotIndex = 0;
    bool m_pickStarted = false;

    // Event handlers.
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    // The arrows raise the next cell, Enter or Space pick the raised one, Escape closes
    // without a pick: the keyboard's way through the same palette.
    void keyPressEvent(QKeyEvent *event) override;

private:
    int neighbour(int from, int key) const;
    void Load();
    void Form_Paint(QPainter &painter);
    void Form_MouseDown(QPointF position);
    void Form_MouseMove(QPointF position);
    void Form_MouseUp();
    void pointerLeft();
    void reportPaintError(int number, const QString &description);

    std::vector<PaletteCell> m_cells;
    QPixmap m_picture;
    std::optional<QRect> m_raised;
    bool m_loaded = false;
    bool m_captured = false;
    bool m_paintErrorReported = false;
};
