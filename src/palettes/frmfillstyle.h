#pragma once

#include "palettewindow.h"

// The fill-style palette of the painter: seven cells, one above the other, each filled with
// the pattern it stands for. Solid comes first, drawn in grey; transparent isn't offered.
// Cells pick and raise in a rectangle grown by three pixels, so the gaps between them count.
class frmFillStyle final : public PaletteWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmFillStyle)

public:
    static constexpr int NumberOfCells = 7;
    // How far around a cell a press picks it and its edges are drawn.
    static constexpr int Margin = 3;

    explicit frmFillStyle(QWidget *owner = nullptr);
    ~frmFillStyle() override;

    // The value last written, whether a cell has it or not.
    qint32 SelectedFillStyle() const { return m_selectedFillStyle; }
    // Stores the value and chooses the cell of that style, if there is one.
    void setSelectedFillStyle(qint32 style);

    // The style, hatch index and hatch colour (0x00BBGGRR) of each cell, and its rectangle.
    struct Row
    {
        int left, top, right, bottom;
        qint32 style;
        int hatchIndex;
        quint32 hatchColour;
    };
    static const Row &Table(int index);

signals:
    // The fill style picked: 0 solid, 2 to 7 the hatches. Once a pick.
    void NewFillStyle(qint32 style);

protected:
    void Form_Load() override;
    QRect pickArea(int index) const override { return grown(index); }
    QRect raisedArea(int index) const override { return grown(index); }
    QRect hotRepaintArea(int index) const override { return grown(index); }
    QRect sunkenArea(int index) const override { return grown(index); }
    void raiseNewValue() override;

private:
    QRect grown(int index) const { return Cells(index).inflated(Margin).rect(); }

    qint32 m_selectedFillStyle = 0;
};
