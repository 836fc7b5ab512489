#include "frmmaxphoto.h"

#include <errorpolicy.h>
#include <picturefile.h>
#include <runtimeerror.h>
#include <session.h>

#include <QCloseEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

frmMaxPhoto::frmMaxPhoto(Session &session, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , m_session(session)
{
    setObjectName(QStringLiteral("frmMaxPhoto"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Τρεμίδια"));
    resize(DesignWidth, DesignHeight);
    setAutoFillBackground(true);
}

frmMaxPhoto::~frmMaxPhoto() = default;

void frmMaxPhoto::setThePicture(const QString &path)
{
    m_picture = pictures::LoadPicture(path);
}

void frmMaxPhoto::setBackColor(quint32 color)
{
    QPalette p = palette();
    p.setColor(
        QPalette::Window, QColor(int(color & 0xFF), int((color >> 8) & 0xFF), int((color >> 16) & 0xFF)));
    setPalette(p);
}

void frmMaxPhoto::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    platform::guarded([this] { Form_Activate(); });
}

void frmMaxPhoto::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        platform::guarded([this] { Form_Activate(); });
}

void frmMaxPhoto::Form_Activate()
{
    m_drawn = photolayout::enlarge(width(), height(), m_picture.width(), m_picture.height());
    m_surface = QImage(size(), QImage::Format_RGB32);
    m_surface.fill(palette().color(QPalette::Window));
    if (!m_drawn.rect.isEmpty()) {
        QPainter painter(&m_surface);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(m_drawn.rect, m_picture);
    }
    update();
}

void frmMaxPhoto::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_surface.isNull())
        painter.fillRect(rect(), palette().color(QPalette::Window));
    else
        painter.drawImage(0, 0, m_surface);
}

void frmMaxPhoto::Unload()
{
    close();
}

void frmMaxPhoto::mouseReleaseEvent(QMouseEvent *)
{
    Unload();
}

void frmMaxPhoto::keyPressEvent(QKeyEvent *)
{
    Unload();
}

void frmMaxPhoto::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    // A closed window is gone; the next use makes a new one, even before this one is
    // deleted.
    if (event->isAccepted() && m_session.window(Session::Window::MaxPhoto, false) == this)
        m_session.setWindow(Session::Window::MaxPhoto, nullptr);
}
