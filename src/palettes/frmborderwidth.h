#pragma once

#include "palettewindow.h"

// The line-width palette of the painter: ten rows, the picture of a line one pixel thicker
// in each, the width being the row's number.
class frmBorderWidth final : public PaletteWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmBorderWidth)

public:
    static constexpr int NumberOfCells = 10;
    static constexpr int RowHeight = 16;
    // The rectangle of cell i is Left, Top + (i − 1) × RowHeight, Right, that + RowHeight.
    static constexpr int CellLeft = 2;
    static constexpr int CellRight = 68;
    static constexpr int CellTop = 5;
    // The old hot cell repaints this much around itself.
    static constexpr int RepaintMargin = 3;

    explicit frmBorderWidth(QWidget *owner = nullptr);
    ~frmBorderWidth() override;

    // Chooses the cell of that width, unchecked: a width beyond the ten rows fails at the
    // next paint.
    void setSelectedDrawWidth(qint16 width) { m_selectedIndex = width; }

signals:
    // The width picked, in pixels: the number of the chosen cell. Once a pick.
    void NewBorderWidth(qint16 width);

protected:
    void Form_Load() override;
    QRect hotRepaintArea(int index) const override { return Cells(index).inflated(RepaintMargin).rect(); }
    void raiseNewValue() override;
};
