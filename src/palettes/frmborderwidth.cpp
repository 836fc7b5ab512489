#include "frmborderwidth.h"

#include <programbitmaps.h>

#include <QPainter>

namespace {

// The picture of the ten lines, drawn by the team; the window is its size.
const QString PictureName = QStringLiteral("LINEWIDTHS");

} // namespace

frmBorderWidth::frmBorderWidth(QWidget *owner)
    : PaletteWindow(NumberOfCells, resources::designSize(PictureName), owner)
{
    setObjectName(QStringLiteral("frmBorderWidth"));
    setWindowTitle(QStringLiteral("Πάχος περιγράμματος"));
}

frmBorderWidth::~frmBorderWidth() = default;

void frmBorderWidth::Form_Load()
{
    m_pickStarted = false;
    for (int i = 1; i <= NumberOfCells; ++i) {
        const int y = (i - 1) * RowHeight + CellTop;
        cell(i) = PaletteCell::fromEdges(CellLeft, y, CellRight, y + RowHeight, quint32(i));
    }
    // The lines are the window's own picture, laid on its colour.
    const QPixmap lines = resources::LoadResPicture(PictureName, devicePixelRatioF());
    QPixmap &picture = newPicture(lines.deviceIndependentSize().toSize());
    QPainter painter(&picture);
    painter.drawPixmap(0, 0, lines);
}

void frmBorderWidth::raiseNewValue()
{
    emit NewBorderWidth(m_selectedIndex);
}
