#include "rubberband.h"

#include "surface.h"

#include <hatchbrush.h>

#include <twips.h>

#include <QPainter>

namespace {

void coverCanvas(QWidget *band)
{
    band->setAttribute(Qt::WA_TransparentForMouseEvents);
    band->setAttribute(Qt::WA_NoSystemBackground);
    band->hide();
}

QPen penOf(quint32 color, qint16 width)
{
    QPen pen(QColor(drawing::rgbOf(color)));
    pen.setWidth(qMax<int>(width, 1));
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::MiterJoin);
    return pen;
}

} // namespace

RubberLine::RubberLine(QWidget *canvas)
    : QWidget(canvas)
{
    setObjectName(QStringLiteral("Line1"));
    coverCanvas(this);
}

RubberLine::~RubberLine() = default;

void RubberLine::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(penOf(BorderColor, BorderWidth));
    painter.drawLine(QPoint(platform::pixelsFromTwipsX(X1), platform::pixelsFromTwipsY(Y1)),
        QPoint(platform::pixelsFromTwipsX(X2), platform::pixelsFromTwipsY(Y2)));
}

RubberShape::RubberShape(QWidget *canvas)
    : QWidget(canvas)
{
    setObjectName(QStringLiteral("Shape1"));
    coverCanvas(this);
}

RubberShape::~RubberShape() = default;

void RubberShape::Move(double left, double top, double width, double height)
{
    Left = left;
    Top = top;
    Width = width;
    Height = height;
    update();
}

void RubberShape::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(penOf(BorderColor, BorderWidth));
    painter.setBrush(hatch::fillStyleBrush(FillStyle, hatch::colourOfValue(FillColor)));
    const QRect box(platform::pixelsFromTwipsX(Left), platform::pixelsFromTwipsY(Top),
        platform::pixelsFromTwipsX(Width), platform::pixelsFromTwipsY(Height));
    if (Shape == Oval)
        painter.drawEllipse(box);
    else
        painter.drawRect(box);
}
