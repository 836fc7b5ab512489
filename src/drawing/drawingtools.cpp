#include "drawingtools.h"

#include "picphoto.h"
#include "rubberband.h"

#include <rtfcodepages.h>
#include <twips.h>

#include <cmath>
#include <cstdlib>

namespace drawing {

int roundedPixels(double twips, int twipsPerPixel)
{
    return int(std::nearbyint(float(twips) / float(twipsPerPixel)));
}

QString throughGreekCodePage(const QString &text)
{
    const auto &page = richtext::codepages::codePage(1253);
    QString out;
    out.reserve(text.size());
    for (const QChar ch : text) {
        const int byte = richtext::codepages::greekByte(ch.unicode());
        out.append(byte < 0 ? QChar(u'?') : QChar(page.decode(uchar(byte))));
    }
    return out;
}

} // namespace drawing

DrawingTool::~DrawingTool() = default;

void DrawPen::press(double x, double y)
{
    picPhoto.CurrentX = x;
    picPhoto.CurrentY = y;
}

void DrawPen::move(double x, double y)
{
    picPhoto.Line(x, y);
}

void DrawPen::release(double, double)
{
}

void DrawStraightLine::press(double x, double y)
{
    RubberLine &line = *picPhoto.Line1;
    line.X1 = line.X2 = x;
    line.Y1 = line.Y2 = y;
    line.setVisible(true);
    line.raise();
}

void DrawStraightLine::move(double x, double y)
{
    RubberLine &line = *picPhoto.Line1;
    line.X2 = x;
    line.Y2 = y;
    line.Refresh();
}

void DrawStraightLine::release(double, double)
{
    RubberLine &line = *picPhoto.Line1;
    picPhoto.CurrentX = line.X1;
    picPhoto.CurrentY = line.Y1;
    picPhoto.Line(line.X2, line.Y2);
    line.setVisible(false);
}

DrawBox::DrawBox(PicPhoto &canvas, Figure figure, bool filled)
    : DrawingTool(canvas)
    , m_figure(figure)
    , m_filled(filled)
{
}

void DrawBox::press(double x, double y)
{
    RubberShape &shape = *picPhoto.Shape1;
    if (!m_filled) {
        m_savedFillStyle = picPhoto.FillStyle;
        picPhoto.FillStyle = drawing::Transparent;
        shape.FillStyle = drawing::Transparent;
    }
    X0 = float(x);
    Y0 = float(y);
    shape.Shape = m_figure == Figure::Ellipse ? RubberShape::Oval : RubberShape::Rectangle;
    shape.Move(x, y, 0, 0);
    shape.setVisible(true);
    shape.raise();
}

void DrawBox::move(double x, double y)
{
    picPhoto.Shape1->Move(
        std::min<double>(x, X0), std::min<double>(y, Y0), std::abs(X0 - x), std::abs(Y0 - y));
}

void DrawBox::release(double, double)
{
    RubberShape &shape = *picPhoto.Shape1;
    const int tx = platform::TwipsPerPixelX;
    const int ty = platform::TwipsPerPixelY;
    const int left = drawing::roundedPixels(shape.Left, tx);
    const int top = drawing::roundedPixels(shape.Top, ty);
    const int right = drawing::roundedPixels(shape.Left + shape.Width, tx);
    const int bottom = drawing::roundedPixels(shape.Top + shape.Height, ty);
    if (m_figure == Figure::Ellipse)
        picPhoto.Ellipse(left, top, right, bottom);
    else
        picPhoto.Rectangle(left, top, right, bottom);
    shape.setVisible(false);
    if (!m_filled) {
        picPhoto.FillStyle = qint16(m_savedFillStyle);
        shape.FillStyle = qint16(m_savedFillStyle);
    }
}

void DrawFloodFill::press(double x, double y)
{
    const qint64 color = picPhoto.Point(x, y);
    picPhoto.ExtFloodFill(drawing::roundedPixels(x, platform::TwipsPerPixelX),
        drawing::roundedPixels(y, platform::TwipsPerPixelY), color);
    picPhoto.Refresh();
}

DrawTextTool::DrawTextTool(PicPhoto &canvas, AskText askText)
    : DrawingTool(canvas)
    , m_askText(std::move(askText))
{
}

void DrawTextTool::press(double x, double y)
{
    m_x = x;
    m_y = y;
}

void DrawTextTool::release(double, double)
{
    const QString text = m_askText ? m_askText() : QString();
    if (text.isEmpty())
        return;
    picPhoto.TextOut(drawing::roundedPixels(m_x, platform::TwipsPerPixelX),
        drawing::roundedPixels(m_y, platform::TwipsPerPixelY), drawing::throughGreekCodePage(text));
    picPhoto.Refresh();
}
