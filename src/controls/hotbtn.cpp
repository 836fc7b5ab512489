#include "hotbtn.h"

#include <errorpolicy.h>

#include <QApplication>
#include <QMouseEvent>
#include <QPalette>

HotBtn::HotBtn(QWidget *parent)
    : Btn(parent)
{
    // Hover needs moves without a button held. A press needs nothing more: the pressed
    // button holds the pointer until the release, so the pressed face stays wherever it goes.
    setMouseTracking(true);
}

HotBtn::~HotBtn() = default;

void HotBtn::setUpPicture(const QPixmap &picture)
{
    m_upPicture = picture;
    emit PropertyChanged(QStringLiteral("UpPicture"));
}

void HotBtn::setMaskColor(quint32 color)
{
    m_maskColor = color;
    applyMask();
    emit PropertyChanged(QStringLiteral("MaskColor"));
}

void HotBtn::setMaskPicture(const QPixmap &picture)
{
    m_maskPicture = picture;
    applyMask();
    emit PropertyChanged(QStringLiteral("MaskPicture"));
}

QColor HotBtn::colorFromValue(quint32 value)
{
    if (value & 0x80000000u) {
        const QPalette palette = QApplication::palette();
        switch (value & 0xFF) {
        case 0x05: // window background
            return palette.color(QPalette::Base);
        case 0x08: // window text
        case 0x12: // button text
            return palette.color(QPalette::ButtonText);
        case 0x10: // button shadow
            return palette.color(QPalette::Dark);
        case 0x14: // button highlight
            return palette.color(QPalette::Light);
        default: // button face and the rest
            return palette.color(QPalette::Button);
        }
    }
    return QColor(int(value & 0xFF), int((value >> 8) & 0xFF), int((value >> 16) & 0xFF));
}

void HotBtn::applyMask()
{
    if (m_maskPicture.isNull()) {
        clearMask();
        return;
    }
    // The mask is cut at the widget's own pixels; the picture is laid at its design size,
    // as the face is, and what it doesn't cover stays visible.
    const QSize logical = m_maskPicture.deviceIndependentSize().toSize();
    const QImage image = m_maskPicture.toImage()
                             .scaled(logical, Qt::IgnoreAspectRatio, Qt::FastTransformation)
                             .convertToFormat(QImage::Format_RGB32);
    const QRgb key = colorFromValue(m_maskColor).rgb();
    QRegion shape = QRegion(rect()).subtracted(QRegion(QRect(QPoint(0, 0), logical)));
    // Runs of kept pixels, row by row: masks are small, and this keeps the rule exact.
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        int x = 0;
        while (x < image.width()) {
            while (x < image.width() && line[x] == key)
                ++x;
            const int start = x;
            while (x < image.width() && line[x] != key)
                ++x;
            if (x > start)
                shape += QRect(start, y, x - start, 1);
        }
    }
    setMask(shape);
}

void HotBtn::resizeEvent(QResizeEvent *event)
{
    Btn::resizeEvent(event);
    if (!m_maskPicture.isNull())
        applyMask();
}

void HotBtn::mouseMoveEvent(QMouseEvent *event)
{
    platform::guarded([&] {
        const int held = buttonsOf(event->buttons());
        // With a button held the pressed face stays, and the move isn't reported.
        if (held > 0)
            return;
        if (!m_hoverCaptured) {
            m_hoverCaptured = true;
            m_hoverFace = m_upPicture;
        }
        const QPointF p = event->position();
        const double x = twipsX(p.x());
        const double y = twipsY(p.y());
        // The far edges count as inside: a point exactly at Width is still on the button.
        if (x < 0 || x > Width() || y < 0 || y > Height())
            Cls();
        else
            showFace(Face::Hover);
        emit MouseMove(held, shiftOf(event->modifiers()), x, y);
    });
}

void HotBtn::leaveEvent(QEvent *event)
{
    // The window system tells of the pointer leaving instead of a first move outside.
    if (currentFace() == Face::Hover)
        Cls();
    Btn::leaveEvent(event);
}
