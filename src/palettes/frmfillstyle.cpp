#include "frmfillstyle.h"

#include <hatchbrush.h>
#include <runtimeerror.h>

#include <QPainter>

#include <array>

namespace {

constexpr std::array<frmFillStyle::Row, frmFillStyle::NumberOfCells> Rows {{
    {5, 5, 37, 20, hatch::vbFSSolid, 8, 0x808080},
    {5, 25, 37, 40, hatch::vbHorizontalLine, hatch::Horizontal, 0},
    {5, 45, 37, 60, hatch::vbVerticalLine, hatch::Vertical, 0},
    {5, 65, 37, 80, hatch::vbUpwardDiagonal, hatch::ForwardDiagonal, 0},
    {5, 85, 37, 100, hatch::vbDownwardDiagonal, hatch::BackwardDiagonal, 0},
    {5, 105, 37, 120, hatch::vbCross, hatch::Cross, 0},
    {5, 125, 37, 140, hatch::vbDiagonalCross, hatch::DiagonalCross, 0},
}};

// Room left to the right of and below the cells.
constexpr int Border = 10;

} // namespace

frmFillStyle::frmFillStyle(QWidget *owner)
    : PaletteWindow(NumberOfCells, QSize(Rows.back().right + Border, Rows.back().bottom + Border), owner)
{
    setObjectName(QStringLiteral("frmFillStyle"));
    setWindowTitle(QStringLiteral("Τύπος γεμίσματος"));
}

frmFillStyle::~frmFillStyle() = default;

const frmFillStyle::Row &frmFillStyle::Table(int index)
{
    if (index < 1 || index > NumberOfCells)
        throw platform::RuntimeError(
            platform::errors::SubscriptOutOfRange, QStringLiteral("Δείκτης εκτός περιοχής"));
    return Rows[std::size_t(index - 1)];
}

void frmFillStyle::setSelectedFillStyle(qint32 style)
{
    m_selectedFillStyle = style;
    for (int i = 1; i <= NumberOfCells; ++i) {
        if (qint32(Cells(i).Color) == style) {
            m_selectedIndex = qint16(i);
            return;
        }
    }
}

void frmFillStyle::Form_Load()
{
    m_pickStarted = false;
    QRect bounds;
    for (int i = 1; i <= NumberOfCells; ++i) {
        const Row &row = Rows[std::size_t(i - 1)];
        cell(i) = PaletteCell::fromEdges(row.left, row.top, row.right, row.bottom, quint32(row.style));
        bounds = bounds.united(cell(i).rect());
    }
    // The window fits the cells with a border to the right and below.
    QPixmap &cells = newPicture(QSize(bounds.right() + 1 + Border, bounds.bottom() + 1 + Border));
    QPainter painter(&cells);
    painter.setPen(Qt::black);
    for (int i = 1; i <= NumberOfCells; ++i) {
        const Row &row = Rows[std::size_t(i - 1)];
        const QRect r = cell(i).rect();
        // Hatches are laid from the window's origin, as the painter lays them on a picture.
        painter.fillRect(r,
            hatch::brush(
                row.hatchIndex, hatch::colourOfValue(row.hatchColour), palette().color(QPalette::Window)));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(r.adjusted(0, 0, -1, -1));
    }
    painter.end();
    Refresh();
}

void frmFillStyle::raiseNewValue()
{
    emit NewFillStyle(qint32(Cells(m_selectedIndex).Color));
}
