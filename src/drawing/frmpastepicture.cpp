#include "frmpastepicture.h"

#include "mouseargs.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <programbitmaps.h>
#include <twips.h>

#include <QMouseEvent>
#include <QPainter>

namespace {

struct StampPlace
{
    const char16_t *picture;
    int left, top, right, bottom;
};

// imgTriangle, imgStar, imgRombos, imgPeriergo.
constexpr StampPlace kStamps[frmPastePicture::StampCount] = {
    {u"STAMP_TRIANGLE", 8, 3, 30, 27},
    {u"STAMP_STAR", 8, 33, 30, 57},
    {u"STAMP_ROMBOS", 8, 63, 30, 87},
    {u"STAMP_PERIERGO", 8, 93, 30, 117},
};

constexpr int ClientWidth = 38;
constexpr int ClientHeight = 121;
const QColor Highlight(255, 255, 255);
const QColor Shadow(128, 128, 128);

void drawEdge(QPainter &painter, const QRect &rect, const QColor &topLeft, const QColor &bottomRight)
{
    const int l = rect.left(), t = rect.top(), r = rect.right(), b = rect.bottom();
    painter.setPen(topLeft);
    painter.drawLine(l, t, r - 1, t);
    painter.drawLine(l, t, l, b - 1);
    painter.setPen(bottomRight);
    painter.drawLine(l, b, r, b);
    painter.drawLine(r, t, r, b);
}

} // namespace

namespace drawing {

void drawRaisedEdge(QPainter &painter, const QRect &rect)
{
    drawEdge(painter, rect, Highlight, Shadow);
}

void drawSunkenEdge(QPainter &painter, const QRect &rect)
{
    drawEdge(painter, rect, Shadow, Highlight);
}

} // namespace drawing

frmPastePicture::frmPastePicture(QWidget *parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmPastePicture"));
    // No frame shows it, but a screen reader names the window by it.
    setWindowTitle(QStringLiteral("Σφραγίδες"));
    platform::useDesignedColours(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setMouseTracking(true);
    setFixedSize(ClientWidth, ClientHeight);
    for (int i = 0; i < StampCount; ++i) {
        const StampPlace &p = kStamps[i];
        m_stamps.at(size_t(i)).rect = QRect(QPoint(p.left, p.top), QPoint(p.right - 1, p.bottom - 1));
        m_stamps.at(size_t(i)).picture = resources::LoadResPicture(QString::fromUtf16(p.picture)).toImage();
    }
    m_selectedStamp = 1;
    update();
    m_stampPressed = false;
}

frmPastePicture::~frmPastePicture() = default;

void frmPastePicture::setSelectedBitmap(const QImage &picture)
{
    for (int i = 1; i <= StampCount; ++i) {
        if (Stamp(i).picture.cacheKey() == picture.cacheKey()) {
            m_selectedStamp = qint16(i);
            update();
            return;
        }
    }
}

QPoint frmPastePicture::pixelOf(double x, double y)
{
    return QPoint(
        int(std::lround(x)) / platform::TwipsPerPixelX, int(std::lround(y)) / platform::TwipsPerPixelY);
}

int frmPastePicture::stampAt(QPoint pixel) const
{
    for (int i = 1; i <= StampCount; ++i) {
        if (Stamp(i).rect.contains(pixel))
            return i;
    }
    return 0;
}

void frmPastePicture::Form_MouseMove(int, int, double x, double y)
{
    if (m_stampPressed)
        return;
    if (QWidget::mouseGrabber() != this)
        grabMouse();
    QRect grown;
    if (m_hotStamp > 0)
        grown = Stamp(m_hotStamp).rect.adjusted(-3, -3, 3, 3);
    const QPoint pixel = pixelOf(x, y);
    const int index = stampAt(pixel);
    if (index > 0 && index != m_hotStamp) {
        if (m_hotStamp > 0)
            repaint(grown);
        m_hotStamp = qint16(index);
        repaint(Stamp(index).rect);
    }
    if (x < 0 || y < 0 || x > platform::twipsFromPixelsX(width())
        || y > platform::twipsFromPixelsY(height())) {
        if (!grown.isNull())
            repaint(grown);
        m_hotStamp = 0;
        releaseMouse();
    }
}

void frmPastePicture::Form_MouseDown(int, int, double x, double y)
{
    m_stampPressed = true;
    if (const int index = stampAt(pixelOf(x, y))) {
        m_selectedStamp = qint16(index);
        update();
    }
    emit NewBitmap(Stamp(m_selectedStamp).picture);
}

void frmPastePicture::Form_MouseUp(int, int, double, double)
{
    if (m_stampPressed)
        close();
}

void frmPastePicture::paintEvent(QPaintEvent *)
{
    if (m_selectedStamp == 0)
        m_selectedStamp = 1;
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Button));
    for (const StampRecord &stamp : m_stamps)
        painter.drawImage(QRectF(stamp.rect), stamp.picture);
    if (m_hotStamp > 0 && m_hotStamp != m_selectedStamp)
        drawing::drawRaisedEdge(painter, Stamp(m_hotStamp).rect);
    drawing::drawSunkenEdge(painter, Stamp(m_selectedStamp).rect);
}

void frmPastePicture::mousePressEvent(QMouseEvent *event)
{
    platform::guarded([&] {
        Form_MouseDown(drawing::buttonOf(event->button()), drawing::shiftOf(event->modifiers()),
            drawing::twipsX(event), drawing::twipsY(event));
    });
}

void frmPastePicture::mouseMoveEvent(QMouseEvent *event)
{
    platform::guarded([&] {
        Form_MouseMove(drawing::buttonOf(event->buttons()), drawing::shiftOf(event->modifiers()),
            drawing::twipsX(event), drawing::twipsY(event));
    });
}

void frmPastePicture::mouseReleaseEvent(QMouseEvent *event)
{
    platform::guarded([&] {
        Form_MouseUp(drawing::buttonOf(event->button()), drawing::shiftOf(event->modifiers()),
            drawing::twipsX(event), drawing::twipsY(event));
    });
}

void frmPastePicture::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && !isActiveWindow() && isVisible())
        close();
}
