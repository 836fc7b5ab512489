#include "frmtooltips.h"

#include "viewingaccessibility.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <msgbox.h>
#include <picturefile.h>
#include <runtimeerror.h>
#include <session.h>
#include <textzoom.h>
#include <twips.h>
#include <wordhighlight.h>

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTextLayout>

frmToolTips::frmToolTips(Session &session, QWidget *parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint)
    , mnuPopUp(new QMenu(this))
    , mnuCopyText(mnuPopUp->addAction(QStringLiteral("Αντιγραφή κειμένου")))
    , mnuCopyPicture(mnuPopUp->addAction(QStringLiteral("Αντιγραφή εικόνας")))
    , m_session(session)
{
    setObjectName(QStringLiteral("frmToolTips"));
    viewing::renewAccessible(this);
    platform::useDesignedColours(this);
    mnuPopUp->setObjectName(QStringLiteral("mnuPopUp"));
    mnuCopyText->setObjectName(QStringLiteral("mnuCopyText"));
    mnuCopyPicture->setObjectName(QStringLiteral("mnuCopyPicture"));
    setAttribute(Qt::WA_DeleteOnClose);
    setFocusPolicy(Qt::StrongFocus);
    // The design size, kept by a tip that has nothing to show.
    resize(200, 100);
    connect(mnuCopyText, &QAction::triggered, this,
        [this] { platform::guarded([this] { mnuCopyText_Click(); }); });
    connect(mnuCopyPicture, &QAction::triggered, this,
        [this] { platform::guarded([this] { mnuCopyPicture_Click(); }); });
    // A tip on show takes a new text size at once, measured and shaped anew.
    m_session.textZoom().follow(this, {this}, [this](int) {
        if (!isVisible() || m_layout.empty)
            return;
        platform::guarded([this] {
            setFont(tipFont());
            ShowTip();
        });
    });
}

QFont frmToolTips::tipFont() const
{
    QFont font(QStringLiteral("Arial"));
    font.setPointSizeF(10.0 * m_session.textZoom().percent() / 100.0);
    return font;
}

frmToolTips::~frmToolTips() = default;

QString frmToolTips::TipPicture() const
{
    return QString::number(m_picture.isNull() ? 0 : m_picture.cacheKey());
}

void frmToolTips::setTipPicture(const QString &path)
{
    if (path.isEmpty()) {
        m_picture = QImage();
        return;
    }
    m_picture = pictures::LoadPicture(path);
}

void frmToolTips::Show(QWidget *owner)
{
    if (owner && parentWidget() != owner)
        setParent(owner, windowFlags());
    Form_Load();
    show();
    raise();
    activateWindow();
    setFocus();
}

void frmToolTips::Form_Load()
{
    try {
        QPalette p = palette();
        p.setColor(QPalette::Window, p.color(QPalette::ToolTipBase));
        p.setColor(QPalette::WindowText, p.color(QPalette::ToolTipText));
        setPalette(p);
        static const bool substituted = [] {
            QFont::insertSubstitution(QStringLiteral("Arial"), QStringLiteral("Liberation Sans"));
            return true;
        }();
        Q_UNUSED(substituted);
        setFont(tipFont());
        ShowTip();
    } catch (const platform::RuntimeError &e) {
        // The tip stays as far as it was built.
        platform::MsgBox(QString::number(e.number()) + QStringLiteral(", ") + e.description());
    }
}

void frmToolTips::ShowTip()
{
    m_layout = tipgeometry::layOut(
        QFontMetrics(font()), m_tipText, m_picture.isNull() ? QSize() : m_picture.size());
    mnuCopyPicture->setVisible(m_layout.hasPicture);
    mnuCopyText->setVisible(m_layout.hasText || !m_layout.hasPicture);
    if (m_layout.empty) {
        platform::MsgBox(QStringLiteral("ΔΕΝ υπάρχει ΟΥΤΕ εικόνα ΟΥΤΕ κείμενο"));
        return;
    }

    const int w = m_layout.widthTwips / platform::TwipsPerPixelX;
    const int h = m_layout.heightTwips / platform::TwipsPerPixelY;
    const QRect screen = QGuiApplication::primaryScreen() ? QGuiApplication::primaryScreen()->geometry()
                                                          : QRect(0, 0, 800, 600);
    const QPoint at = tipgeometry::place(m_tipLeft, m_tipTop, m_layout.widthTwips, m_layout.heightTwips,
        QSize(platform::twipsFromPixelsX(screen.width()), platform::twipsFromPixelsY(screen.height())));
    move(screen.left() + at.x() / platform::TwipsPerPixelX, screen.top() + at.y() / platform::TwipsPerPixelY);
    resize(w + tipgeometry::Enlargement, h + tipgeometry::Enlargement);

    m_image = QPixmap(size());
    m_image.fill(palette().color(QPalette::Window));
    QPainter painter(&m_image);
    if (m_layout.hasText) {
        // Measured centred, drawn from the left.
        painter.setFont(font());
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(m_layout.text, Qt::TextWordWrap | Qt::AlignLeft | Qt::AlignTop, m_tipText);
    }
    if (m_layout.hasPicture)
        painter.drawImage(m_layout.picture.topLeft(), m_picture);

    // The frame around the tip, and the shadow behind it, which is part of the window:
    // a click on it is a click on the tip.
    const QRect tip(0, 0, w, h);
    painter.setPen(QColor(51, 51, 51));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(tip.adjusted(0, 0, -1, -1));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(128, 128, 128));
    for (const QRect &r : tipgeometry::shadow(w, h))
        painter.drawRect(r);
    painter.end();
    setMask(tipgeometry::outline(w, h));
    update();
}

void frmToolTips::paintEvent(QPaintEvent *)
{
    platform::guarded([this] {
        QPainter painter(this);
        if (m_image.isNull())
            painter.fillRect(rect(), palette().color(QPalette::Window));
        else
            painter.drawPixmap(0, 0, m_image);
        const QRegion mark = highlightArea();
        if (mark.isEmpty())
            return;
        // The word again, in the lines the picture's text was drawn in, over the mark.
        painter.setClipRegion(mark);
        painter.fillRect(mark.boundingRect(), speech::readingWordBackground());
        painter.setPen(speech::readingWordForeground());
        const std::unique_ptr<QTextLayout> lines
            = tipgeometry::textLines(font(), m_tipText, m_layout.text.width());
        lines->draw(&painter, m_layout.text.topLeft());
    });
}

void frmToolTips::highlightWord(int start, int length)
{
    if (start < 0 || length <= 0 || start >= m_tipText.size()) {
        clearWordHighlight();
        return;
    }
    update(highlightArea());
    m_markStart = start;
    m_markLength = int(qMin<qsizetype>(length, m_tipText.size() - start));
    update(highlightArea());
}

void frmToolTips::clearWordHighlight()
{
    if (m_markStart < 0)
        return;
    update(highlightArea());
    m_markStart = -1;
    m_markLength = 0;
}

QRegion frmToolTips::highlightArea() const
{
    if (m_markStart < 0 || m_image.isNull() || !m_layout.hasText)
        return QRegion();
    const std::unique_ptr<QTextLayout> lines
        = tipgeometry::textLines(font(), m_tipText, m_layout.text.width());
    return tipgeometry::stretchArea(*lines, m_markStart, m_markLength)
        .translated(m_layout.text.topLeft())
        .intersected(m_layout.text);
}

void frmToolTips::Unload()
{
    if (m_closing)
        return;
    m_closing = true;
    close();
}

void frmToolTips::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        Unload();
        return;
    }
    QWidget::keyPressEvent(event);
}

void frmToolTips::mouseReleaseEvent(QMouseEvent *event)
{
    const QPoint p = event->position().toPoint();
    // Both ends count as inside.
    if (p.x() < 0 || p.x() > width() || p.y() < 0 || p.y() > height())
        return;
    if (event->button() == Qt::RightButton) {
        mnuPopUp->popup(event->globalPosition().toPoint());
        return;
    }
    Unload();
}

void frmToolTips::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    // The menu of the tip is a popup of its own and leaves the tip active.
    if (event->type() == QEvent::ActivationChange && isVisible() && !isActiveWindow()
        && !mnuPopUp->isVisible())
        Unload();
}

void frmToolTips::mnuCopyText_Click()
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(m_tipText);
}

void frmToolTips::mnuCopyPicture_Click()
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setImage(m_picture);
}

void frmToolTips::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    // A closed window is gone; the next use makes a new one, even before this one is
    // deleted.
    if (event->isAccepted() && m_session.window(Session::Window::Tip, false) == this)
        m_session.setWindow(Session::Window::Tip, nullptr);
}
