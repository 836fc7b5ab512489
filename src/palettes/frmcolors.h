#pragma once

#include "palettewindow.h"

#include <array>

// The colour palette: forty colour cells, eight a row, for the notepad's text colour and the
// painter's outline and fill colours. It reports the pick by NewColor while it is still up,
// and closes on the release.
//
// Unlike its two sister palettes, a new load leaves PickStarted as it was: an object shown
// again after a pick marks that pick and raises no cell under the pointer any more, while a
// click still picks.
class frmColors final : public PaletteWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmColors)

public:
    static constexpr int NumberOfCells = 40;
    static constexpr int CellsPerRow = 8;
    static constexpr int CellSize = 20;

    explicit frmColors(QWidget *owner = nullptr);
    ~frmColors() override;

    // The forty colours in cell order, 0x00BBGGRR.
    static const std::array<quint32, NumberOfCells> &ColourTable();

    // The colour of the chosen cell, 0x00BBGGRR. Before the first paint no cell is chosen,
    // and reading is the run-time error 9.
    quint32 SelectedColor() const;
    // Chooses the first cell of that colour; a colour not in the table changes nothing.
    void setSelectedColor(quint32 color);

signals:
    // The colour picked, 0x00BBGGRR. Once a pick.
    void NewColor(quint32 color);

protected:
    void Form_Load() override;
    QPoint cellPoint(QPointF position) const override;
    void raiseNewValue() override;
};
