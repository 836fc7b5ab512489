#include "videopicture.h"

#include <QPainter>

VideoPicture::VideoPicture(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void VideoPicture::setFrame(const QImage &frame)
{
    m_frame = frame;
    ++m_shown;
    update();
}

void VideoPicture::clear()
{
    m_frame = QImage();
    m_shown = 0;
    update();
}

void VideoPicture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_frame.isNull()) {
        painter.fillRect(rect(), Qt::black);
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(rect(), m_frame);
}
