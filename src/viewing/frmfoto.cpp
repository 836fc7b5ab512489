#include "frmfoto.h"

#include <picturefile.h>
#include <runtimeerror.h>
#include <session.h>

#include <QCloseEvent>
#include <QEvent>
#include <QFileInfo>
#include <QLabel>

frmFoto::frmFoto(Session &session, QWidget *parent)
    : QWidget(parent, Qt::Tool)
    , Image1(new QLabel(this))
    , m_session(session)
{
    setObjectName(QStringLiteral("frmFoto"));
    Image1->setObjectName(QStringLiteral("Image1"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Τρεμίδια"));
    Image1->move(0, 0);
    Image1->installEventFilter(this);
}

frmFoto::~frmFoto() = default;

void frmFoto::LoadPicture(const QString &path)
{
    const QImage picture = pictures::LoadPicture(path);
    Image1->setPixmap(QPixmap::fromImage(picture));
    Image1->resize(picture.size());
    resize(picture.size());
}

void frmFoto::Unload()
{
    close();
}

bool frmFoto::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == Image1 && event->type() == QEvent::MouseButtonRelease) {
        Unload();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void frmFoto::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isVisible() && !isActiveWindow())
        Unload();
}

void frmFoto::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    // A closed window is gone; the next use makes a new one, even before this one is
    // deleted.
    if (event->isAccepted() && m_session.window(Session::Window::Photo, false) == this)
        m_session.setWindow(Session::Window::Photo, nullptr);
}
