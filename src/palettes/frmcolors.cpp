#include "frmcolors.h"

#include <hatchbrush.h>

#include <QPainter>

#include <cmath>

namespace {

// Red, green, blue, row by row. The blue of the seventh colour of the first row is 0x67.
constexpr std::array<quint32, frmColors::NumberOfCells> RgbTable {
    0x000000, 0x993300, 0x333300, 0x003300, 0x003366, 0x000080, 0x333367, 0x333333, //
    0x800000, 0xFF6600, 0x808000, 0x008000, 0x008080, 0x0000FF, 0x666699, 0x808080, //
    0xFF0000, 0xFF9900, 0x99CC00, 0x339966, 0x33CCCC, 0x3366FF, 0x800080, 0x999999, //
    0xFF00FF, 0xFFCC00, 0xFFFF00, 0x00FF00, 0x00FFFF, 0x00CCFF, 0x993366, 0xC0C0C0, //
    0xFF99CC, 0xFFCC99, 0xFFFF99, 0xFFFFCC, 0xCCFFFF, 0x99CCFF, 0xCC99FF, 0xFFFFFF, //
};

constexpr std::array<quint32, frmColors::NumberOfCells> valuesOf(
    const std::array<quint32, frmColors::NumberOfCells> &rgb)
{
    std::array<quint32, frmColors::NumberOfCells> values {};
    for (std::size_t i = 0; i < rgb.size(); ++i)
        values[i] = ((rgb[i] >> 16) & 0xFF) | (rgb[i] & 0xFF00) | ((rgb[i] & 0xFF) << 16);
    return values;
}

} // namespace

frmColors::frmColors(QWidget *owner)
    : PaletteWindow(
        NumberOfCells, QSize(CellsPerRow * CellSize, NumberOfCells / CellsPerRow * CellSize), owner)
{
    setObjectName(QStringLiteral("frmColors"));
    setWindowTitle(QStringLiteral("Χρώματα"));
}

frmColors::~frmColors() = default;

const std::array<quint32, frmColors::NumberOfCells> &frmColors::ColourTable()
{
    static constexpr std::array<quint32, NumberOfCells> values = valuesOf(RgbTable);
    return values;
}

quint32 frmColors::SelectedColor() const
{
    return Cells(m_selectedIndex).Color;
}

void frmColors::setSelectedColor(quint32 color)
{
    for (int i = 1; i <= NumberOfCells; ++i) {
        if (Cells(i).Color == color) {
            m_selectedIndex = qint16(i);
            return;
        }
    }
}

void frmColors::Form_Load()
{
    // The grid is painted once; hovering draws only edges over it.
    QPixmap &grid = newPicture(QSize(CellsPerRow * CellSize, NumberOfCells / CellsPerRow * CellSize));
    QPainter painter(&grid);
    painter.setPen(Qt::black);
    painter.setBrush(Qt::NoBrush);
    for (int i = 1; i <= NumberOfCells; ++i) {
        const int x = ((i - 1) % CellsPerRow) * CellSize;
        const int y = ((i - 1) / CellsPerRow) * CellSize;
        PaletteCell &c = cell(i);
        c = PaletteCell::fromEdges(x, y, x + CellSize, y + CellSize, ColourTable()[std::size_t(i - 1)]);
        const QRect inner = c.inflated(-4).rect();
        painter.fillRect(inner, hatch::colourOfValue(c.Color));
        // A one-pixel frame on the inner rectangle's own edge pixels.
        painter.drawRect(inner.adjusted(0, 0, -1, -1));
    }
}

QPoint frmColors::cellPoint(QPointF position) const
{
    // This window measures in pixels; a fraction rounds to the nearest pixel.
    return QPoint(int(std::lrint(position.x())), int(std::lrint(position.y())));
}

void frmColors::raiseNewValue()
{
    emit NewColor(Cells(m_selectedIndex).Color);
}
