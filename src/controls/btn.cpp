#include "btn.h"

#include "accessibility.h"
#include "keycodes.h"

#include <errorpolicy.h>
#include <twips.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <utility>

Btn::Btn(QWidget *parent)
    : QWidget(parent)
{
    // Reachable with Tab, but a click doesn't take the focus away from the text or the
    // drawing the pupil is working on.
    setFocusPolicy(Qt::TabFocus);
    controls::makePressable(this);
}

Btn::~Btn() = default;

void Btn::setPicture(const QPixmap &picture)
{
    m_picture = picture;
    m_disabledFace = QPixmap();
    if (!m_picture.isNull())
        SizeToPicture();
    update();
    emit PropertyChanged(QStringLiteral("Picture"));
}

void Btn::setDownPicture(const QPixmap &picture)
{
    m_downPicture = picture;
    emit PropertyChanged(QStringLiteral("DownPicture"));
}

void Btn::setMouseIcon(const QCursor &icon)
{
    m_mouseIcon = icon;
    applyPointer();
    emit PropertyChanged(QStringLiteral("MouseIcon"));
}

void Btn::setMousePointer(int pointer)
{
    m_mousePointer = pointer;
    applyPointer();
    emit PropertyChanged(QStringLiteral("MousePointer"));
}

int Btn::Width() const
{
    return platform::twipsFromPixelsX(width());
}

int Btn::Height() const
{
    return platform::twipsFromPixelsY(height());
}

int Btn::Left() const
{
    return platform::twipsFromPixelsX(x());
}

int Btn::Top() const
{
    return platform::twipsFromPixelsY(y());
}

void Btn::Move(int leftTwips, int topTwips)
{
    move(platform::pixelsFromTwipsX(leftTwips), platform::pixelsFromTwipsY(topTwips));
}

void Btn::Refresh()
{
    repaint();
}

QSize Btn::sizeHint() const
{
    if (m_picture.isNull())
        return QWidget::sizeHint();
    return m_picture.deviceIndependentSize().toSize();
}

void Btn::SizeToPicture()
{
    // The bitmap's size in pixels, taken through twips as every size of a window is.
    const QSize pixels = m_picture.deviceIndependentSize().toSize();
    const int widthTwips = pixels.width() * platform::TwipsPerPixelX;
    const int heightTwips = pixels.height() * platform::TwipsPerPixelY;
    resize(platform::pixelsFromTwipsX(widthTwips), platform::pixelsFromTwipsY(heightTwips));
}

void Btn::applyPointer()
{
    switch (m_mousePointer) {
    case vbDefault:
        unsetCursor();
        break;
    case vbArrow:
        setCursor(Qt::ArrowCursor);
        break;
    case vbCrosshair:
        setCursor(Qt::CrossCursor);
        break;
    case vbIbeam:
        setCursor(Qt::IBeamCursor);
        break;
    case vbHourglass:
        setCursor(Qt::WaitCursor);
        break;
    case vbCustom:
        setCursor(m_mouseIcon);
        break;
    default:
        unsetCursor();
        break;
    }
}

void Btn::capturePressedFace()
{
    if (m_pressedCaptured)
        return;
    m_pressedCaptured = true;
    m_pressedFace = m_downPicture;
}

void Btn::showFace(Face face)
{
    if (m_face == face)
        return;
    m_face = face;
    repaint();
}

QPixmap Btn::disabledFace() const
{
    if (m_picture.isNull())
        return m_picture;
    if (m_disabledFace.isNull() || m_disabledFor != m_picture.cacheKey()) {
        // Grey and pale, so that a button that does nothing doesn't invite a click.
        QImage image = m_picture.toImage().convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < image.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
            for (int x = 0; x < image.width(); ++x) {
                const int g = (qGray(line[x]) + 2 * 205) / 3;
                line[x] = qRgba(g, g, g, qAlpha(line[x]) * 3 / 4);
            }
        }
        m_disabledFace = QPixmap::fromImage(image);
        m_disabledFace.setDevicePixelRatio(m_picture.devicePixelRatio());
        m_disabledFor = m_picture.cacheKey();
    }
    return m_disabledFace;
}

void Btn::paintEvent(QPaintEvent *)
{
    QPixmap face;
    switch (m_face) {
    case Face::Pressed:
        // Without a pressed face there is nothing to copy, and the face stays as it is.
        face = m_pressedFace.isNull() ? m_picture : m_pressedFace;
        break;
    case Face::Hover:
        face = hoverFace();
        if (face.isNull())
            face = m_picture;
        break;
    case Face::Normal:
        face = isEnabled() ? m_picture : disabledFace();
        break;
    }
    QPainter painter(this);
    if (!face.isNull())
        painter.drawPixmap(QPointF(0, 0), face);
    controls::drawFocusFrame(painter, this);
}

void Btn::mousePressEvent(QMouseEvent *event)
{
    platform::guarded([&] {
        capturePressedFace();
        showFace(Face::Pressed);
        const QPointF p = event->position();
        emit MouseDown(buttonOf(event->button()), shiftOf(event->modifiers()), twipsX(p.x()), twipsY(p.y()));
    });
}

void Btn::mouseMoveEvent(QMouseEvent *event)
{
    platform::guarded([&] {
        const QPointF p = event->position();
        emit MouseMove(
            buttonsOf(event->buttons()), shiftOf(event->modifiers()), twipsX(p.x()), twipsY(p.y()));
    });
}

void Btn::mouseReleaseEvent(QMouseEvent *event)
{
    platform::guarded([&] {
        Cls();
        const QPointF p = event->position();
        emit MouseUp(buttonOf(event->button()), shiftOf(event->modifiers()), twipsX(p.x()), twipsY(p.y()));
        const bool endsDoubleClick = std::exchange(m_inDoubleClick, false);
        // A press that is dragged off the button and released there is no click.
        if (event->button() == Qt::LeftButton && rect().contains(p.toPoint()) && !endsDoubleClick)
            emit Click();
    });
}

void Btn::mouseDoubleClickEvent(QMouseEvent *event)
{
    // Qt's default would take the second press for a new one and so make a second click;
    // a double click starts one program or opens one window, not two.
    platform::guarded([&] {
        showFace(Face::Pressed);
        m_inDoubleClick = true;
        if (event->button() == Qt::LeftButton)
            emit DblClick();
    });
}

void Btn::keyPressEvent(QKeyEvent *event)
{
    platform::guarded([&] {
        emit KeyDown(controls::virtualKeyCode(event), shiftOf(event->modifiers()));
        const QString text = event->text();
        if (!text.isEmpty() && !event->isAutoRepeat())
            emit KeyPress(text.at(0).unicode());
        const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        // Enter presses the focused button at once, as it does Qt's default buttons.
        if (enter && !event->isAutoRepeat()
            && !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier)))
            emit Click();
        // Other keys go on to the window, so that Escape still closes it.
        if (!enter && event->key() != Qt::Key_Space)
            event->ignore();
    });
}

void Btn::keyReleaseEvent(QKeyEvent *event)
{
    platform::guarded([&] {
        emit KeyUp(controls::virtualKeyCode(event), shiftOf(event->modifiers()));
        // A button reached with Tab is pressed with the space bar, as every button is.
        if (event->key() == Qt::Key_Space && !event->isAutoRepeat())
            emit Click();
    });
}

void Btn::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange) {
        if (!isEnabled())
            m_face = Face::Normal;
        update();
        emit PropertyChanged(QStringLiteral("Enabled"));
    }
    QWidget::changeEvent(event);
}

void Btn::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    update();
}

void Btn::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    update();
}

void Btn::accessiblePress()
{
    platform::guarded([&] {
        if (isEnabled())
            emit Click();
    });
}

int Btn::buttonOf(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return vbLeftButton;
    case Qt::RightButton:
        return vbRightButton;
    case Qt::MiddleButton:
        return vbMiddleButton;
    default:
        return 0;
    }
}

int Btn::buttonsOf(Qt::MouseButtons buttons)
{
    int result = 0;
    if (buttons & Qt::LeftButton)
        result |= vbLeftButton;
    if (buttons & Qt::RightButton)
        result |= vbRightButton;
    if (buttons & Qt::MiddleButton)
        result |= vbMiddleButton;
    return result;
}

int Btn::shiftOf(Qt::KeyboardModifiers modifiers)
{
    int result = 0;
    if (modifiers & Qt::ShiftModifier)
        result |= vbShiftMask;
    if (modifiers & Qt::ControlModifier)
        result |= vbCtrlMask;
    if (modifiers & Qt::AltModifier)
        result |= vbAltMask;
    return result;
}

double Btn::twipsX(double pixels)
{
    return pixels * platform::TwipsPerPixelX;
}

double Btn::twipsY(double pixels)
{
    return pixels * platform::TwipsPerPixelY;
}
