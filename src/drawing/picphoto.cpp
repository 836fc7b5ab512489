#include "picphoto.h"

#include "mouseargs.h"
#include "rubberband.h"

#include <errorpolicy.h>
#include <programbitmaps.h>
#include <twips.h>

#include <QDragEnterEvent>
#include <QMimeData>
#include <QPaintEvent>
#include <QPainter>
#include <QRegion>

using drawing::buttonOf;
using drawing::shiftOf;
using drawing::twipsX;
using drawing::twipsY;

PicPhoto::PicPhoto(QWidget *parent)
    : QWidget(parent)
    , Line1(new RubberLine(this))
    , Shape1(new RubberShape(this))
{
    setObjectName(QStringLiteral("picPhoto"));
    setAcceptDrops(true);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    Font = QFont(QStringLiteral("MS Sans Serif"), 8);
    m_image = drawing::blankImage(size(), BackColor);
}

PicPhoto::~PicPhoto() = default;

void PicPhoto::setPicture(const QImage &picture)
{
    if (!picture.isNull() && picture.format() != QImage::Format_RGB32) {
        QImage converted = picture.convertToFormat(QImage::Format_RGB32);
        // No room for the converted copy: the canvas keeps what it had.
        if (converted.isNull())
            drawing::throwOutOfMemory();
        m_picture = converted;
    } else {
        m_picture = picture;
    }
    if (m_picture.isNull()) {
        m_image = drawing::blankImage(size(), BackColor);
    } else {
        m_image = m_picture;
        resize(m_picture.size());
    }
    update();
}

void PicPhoto::setMousePointer(int pointer)
{
    m_mousePointer = pointer;
    if (pointer == 99)
        setCursor(resources::LoadResCursor(QStringLiteral("DRAWCURSOR")));
    else
        unsetCursor();
}

void PicPhoto::Line(double x, double y)
{
    drawing::drawLine(m_image, platform::pixelsFromTwipsX(CurrentX), platform::pixelsFromTwipsY(CurrentY),
        platform::pixelsFromTwipsX(x), platform::pixelsFromTwipsY(y), pen());
    CurrentX = x;
    CurrentY = y;
    update();
}

qint64 PicPhoto::Point(double x, double y) const
{
    return drawing::pointColor(m_image, platform::pixelsFromTwipsX(x), platform::pixelsFromTwipsY(y));
}

void PicPhoto::Rectangle(int left, int top, int right, int bottom)
{
    drawing::drawRectangle(m_image, left, top, right, bottom, pen(), brush());
}

void PicPhoto::Ellipse(int left, int top, int right, int bottom)
{
    drawing::drawEllipse(m_image, left, top, right, bottom, pen(), brush());
}

bool PicPhoto::ExtFloodFill(int x, int y, qint64 color)
{
    // The failure value of Point names no colour a pixel can have.
    if (color < 0)
        return false;
    return drawing::floodFillSurface(m_image, x, y, quint32(color), brush());
}

void PicPhoto::TextOut(int x, int y, const QString &text)
{
    drawing::drawText(m_image, x, y, Font, ForeColor, text);
}

int PicPhoto::Left() const
{
    return platform::twipsFromPixelsX(x());
}

int PicPhoto::Top() const
{
    return platform::twipsFromPixelsY(y());
}

int PicPhoto::Width() const
{
    return platform::twipsFromPixelsX(width());
}

int PicPhoto::Height() const
{
    return platform::twipsFromPixelsY(height());
}

void PicPhoto::setLeft(int twips)
{
    move(platform::pixelsFromTwipsX(twips), y());
}

void PicPhoto::setTop(int twips)
{
    move(x(), platform::pixelsFromTwipsY(twips));
}

void PicPhoto::Move(int left, int top, int width, int height)
{
    setGeometry(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(top),
        qMax(platform::pixelsFromTwipsX(width), 1), qMax(platform::pixelsFromTwipsY(height), 1));
}

void PicPhoto::fitImage()
{
    if (m_image.size() == size())
        return;
    QImage grown = drawing::blankImage(size(), BackColor);
    {
        QPainter painter(&grown);
        painter.drawImage(0, 0, m_image);
    }
    m_image = grown;
}

void PicPhoto::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.drawImage(event->rect().topLeft(), m_image, event->rect());
    const QRegion outside = QRegion(event->rect()).subtracted(QRegion(m_image.rect()));
    for (const QRect &r : outside)
        painter.fillRect(r, QColor(drawing::rgbOf(BackColor)));
}

void PicPhoto::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // A canvas too large for the memory left keeps the backing image it had; what lies
    // beyond it stays blank.
    platform::resumeNext([this] { fitImage(); });
    Line1->setGeometry(rect());
    Shape1->setGeometry(rect());
}

void PicPhoto::mousePressEvent(QMouseEvent *event)
{
    emit MouseDown(buttonOf(event->button()), shiftOf(event->modifiers()), twipsX(event), twipsY(event));
}

void PicPhoto::mouseMoveEvent(QMouseEvent *event)
{
    emit MouseMove(buttonOf(event->buttons()), shiftOf(event->modifiers()), twipsX(event), twipsY(event));
}

void PicPhoto::mouseReleaseEvent(QMouseEvent *event)
{
    emit MouseUp(buttonOf(event->button()), shiftOf(event->modifiers()), twipsX(event), twipsY(event));
}

void PicPhoto::dragEnterEvent(QDragEnterEvent *event)
{
    answerDrag(event);
}

void PicPhoto::answerDrag(QDragMoveEvent *event)
{
    bool accept = true;
    emit OLEDragOver(event->mimeData(), accept);
    if (accept)
        event->acceptProposedAction();
    else
        event->ignore();
}

void PicPhoto::dragMoveEvent(QDragMoveEvent *event)
{
    answerDrag(event);
}

void PicPhoto::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    emit OLEDragDrop(event->mimeData());
}
