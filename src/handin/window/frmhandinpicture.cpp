#include "frmhandinpicture.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <session.h>

#include <QBuffer>
#include <QGuiApplication>
#include <QImageReader>
#include <QKeyEvent>
#include <QLabel>
#include <QPixmap>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

frmHandInPicture::frmHandInPicture(Session &session, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , scrPicture(new QScrollArea(this))
    , Image1(new QLabel)
    , m_session(session)
{
    setObjectName(QStringLiteral("frmHandInPicture"));
    platform::useDesignedColours(this);
    setAttribute(Qt::WA_DeleteOnClose);
    scrPicture->setObjectName(QStringLiteral("scrPicture"));
    Image1->setObjectName(QStringLiteral("Image1"));
    Image1->setAlignment(Qt::AlignCenter);
    scrPicture->setWidget(Image1);
    scrPicture->setWidgetResizable(true);
    scrPicture->setAlignment(Qt::AlignCenter);
    // The arrows and Page keys scroll a picture larger than the window.
    scrPicture->setFocusPolicy(Qt::StrongFocus);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scrPicture);
}

frmHandInPicture::~frmHandInPicture() = default;

QImage frmHandInPicture::decode(const QByteArray &png)
{
    QBuffer buffer;
    buffer.setData(png);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "png");
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty() || size.width() > MaxSide || size.height() > MaxSide)
        return {};
    return reader.read();
}

void frmHandInPicture::setPicture(const QImage &picture, const QString &caption)
{
    m_picture = picture;
    setWindowTitle(caption);
    scrPicture->setAccessibleName(caption);
    Image1->setAccessibleName(caption);
    // Shown whole where the screen has room, else scaled down to it.
    QSize room(1024, 768);
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        room = screen->availableGeometry().size() * 9 / 10;
    QImage shown = picture;
    if (shown.width() > room.width() || shown.height() > room.height())
        shown = shown.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    Image1->setPixmap(QPixmap::fromImage(shown));
    resize(shown.size().grownBy(QMargins(4, 4, 4, 4)).expandedTo(QSize(200, 150)));
}

void frmHandInPicture::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        platform::guarded([this] { close(); });
        return;
    }
    QWidget::keyPressEvent(event);
}
