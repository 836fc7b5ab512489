#include "frmresphoto.h"

#include "frmmaxphoto.h"
#include "opensource.h"

#include <contentpath.h>
#include <database.h>
#include <errorpolicy.h>
#include <msgbox.h>
#include <picturefile.h>
#include <richtextbox.h>
#include <runtimeerror.h>
#include <session.h>
#include <shellwindow.h>
#include <twips.h>

#include <QApplication>
#include <QDrag>
#include <QFileInfo>
#include <QFrame>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QStringList>

namespace {

QColor colorOf(quint32 number)
{
    return QColor(int(number & 0xFF), int((number >> 8) & 0xFF), int((number >> 16) & 0xFF));
}

void tell(const QString &text)
{
    platform::MsgBox(text, platform::vbOKOnly, platform::ProgramTitle.toString());
}

// Restores the pointer however the enlarged view's opening ends.
class WaitCursor
{
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(WaitCursor)
};

} // namespace

frmResPhoto::frmResPhoto(Session &session, QWidget *parent)
    : SourceViewer(session, parent)
    , picContainer(new QFrame(this))
    , Image1(new QLabel(picContainer))
    , rtfCaption(new RichTextBox(picContainer))
    , rtfLezanda(new RichTextBox(picContainer))
{
    setObjectName(QStringLiteral("frmResPhoto"));
    picContainer->setObjectName(QStringLiteral("picContainer"));
    Image1->setObjectName(QStringLiteral("Image1"));
    rtfCaption->setObjectName(QStringLiteral("rtfCaption"));
    rtfLezanda->setObjectName(QStringLiteral("rtfLezanda"));
    rtfCaption->setAccessibleName(QStringLiteral("Τίτλος"));
    rtfLezanda->setAccessibleName(QStringLiteral("Λεζάντα"));

    picContainer->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    picContainer->setLineWidth(2);
    picContainer->setAutoFillBackground(true);
    setAutoFillBackground(true);
    for (RichTextBox *box : {rtfCaption, rtfLezanda}) {
        box->setFrameStyle(QFrame::NoFrame);
        box->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        box->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        // Read-only text offers itself to a drag as a copy, never a move.
        box->setLocked(true);
    }
    Image1->installEventFilter(this);
}

frmResPhoto::~frmResPhoto() = default;

QString frmResPhoto::textToRead() const
{
    QStringList parts;
    for (const RichTextBox *box : {rtfCaption, rtfLezanda}) {
        const QString text = box->Text().trimmed();
        if (!text.isEmpty())
            parts << text;
    }
    return parts.join(u'\n');
}

void frmResPhoto::setResourceID(qint32 resourceID)
{
    SourceViewer::setResourceID(resourceID);
    GetRecord(resourceID);
}

void frmResPhoto::setSource(const SourceRow &row)
{
    SourceViewer::setSource(row);
    m_found = true;
    takeRow(row);
}

void frmResPhoto::GetRecord(qint32 number)
{
    m_found = true;
    // Without the content database there is nothing to read the row from.
    if (!m_session.content().database) {
        tell(QStringLiteral("Δεν μπορώ να δημιουργήσω το Workspace"));
        m_found = false;
        return;
    }
    std::optional<SourceRow> row;
    if (!platform::resumeNext([&] { row = findSourceRow(*m_session.content().database, number); })) {
        tell(QStringLiteral("Δεν μπορώ να ανοίξω τον πίνακα των Πηγών"));
        m_found = false;
        return;
    }
    if (!row) {
        tell(QStringLiteral("Δεν μπορώ να βρώ την συγκεκριμένη Πηγή"));
        m_found = false;
        return;
    }
    takeRow(*row);
}

void frmResPhoto::takeRow(const SourceRow &row)
{
    if (row.PicturePath.isEmpty()) {
        m_found = false;
        return;
    }
    m_resTypeID = row.ResTypeID;
    m_photoPath = platform::contentPath(
        m_session.content().dataFolder, QStringLiteral("\\Pictures\\"), row.PicturePath);
    m_photoCaption = row.Caption;
    if (m_resTypeID == 1)
        m_photoLezanda = row.Lezanda;
    else if (m_resTypeID == 6)
        m_photoLezanda = row.TextPath;
    else
        m_photoLezanda.clear();
}

void frmResPhoto::Load()
{
    m_picture = pictures::LoadPicture(m_photoPath);

    rtfCaption->setText(m_photoCaption);
    setWindowTitle(m_photoCaption);
    if (m_resTypeID == 1)
        rtfLezanda->setText(m_photoLezanda);
    else if (m_resTypeID == 6)
        rtfLezanda->LoadFile(platform::contentPath(
            m_session.content().dataFolder, QStringLiteral("\\Piges\\"), m_photoLezanda));

    const int panelFrame = platform::twipsFromPixelsX(2 * picContainer->frameWidth());
    photolayout::Frames frames;
    frames.panelHorizontal = panelFrame;
    frames.panelVertical = panelFrame;
    frames.window = 0; // the shell's child frame goes around the client area

    Image1->setPixmap(QPixmap::fromImage(m_picture));
    Image1->resize(m_picture.size());
    const int content = photolayout::contentWidth(m_picture.width());
    rtfCaption->resize(platform::pixelsFromTwipsX(content), rtfCaption->height());
    rtfLezanda->resize(platform::pixelsFromTwipsX(content), rtfLezanda->height());
    const int captionHeight = fitHeight(rtfCaption);
    centreText(rtfCaption);
    const int legendHeight = fitHeight(rtfLezanda);
    centreText(rtfLezanda);

    m_layout
        = photolayout::layOut(m_picture.width(), m_picture.height(), captionHeight, legendHeight, frames);
    picContainer->setGeometry(0, 0, platform::pixelsFromTwipsX(m_layout.panel.width()),
        platform::pixelsFromTwipsY(m_layout.panel.height()));
    placeInPanel(rtfCaption, m_layout.caption);
    placeInPanel(Image1, m_layout.image);
    placeInPanel(rtfLezanda, m_layout.legend);

    m_minimum = QSize(
        platform::pixelsFromTwipsX(m_layout.windowWidth), platform::pixelsFromTwipsY(m_layout.windowHeight));
    setMinimumSize(m_minimum);
    resize(m_minimum);

    const QColor panel = colorOf(photolayout::PanelColor);
    for (QWidget *w : {static_cast<QWidget *>(this), static_cast<QWidget *>(picContainer)}) {
        QPalette p = w->palette();
        p.setColor(QPalette::Window, panel);
        w->setPalette(p);
    }
    rtfLezanda->setBackColor(photolayout::PanelColor);
    rtfCaption->setBackColor(photolayout::PanelColor);
    Form_Resize();
}

int frmResPhoto::fitHeight(RichTextBox *box)
{
    if (box->Text().isEmpty()) {
        box->resize(box->width(), 0);
        box->setVisible(false);
        return 0;
    }
    box->setVisible(true);
    const int lineHeight = platform::twipsFromPixelsY(QFontMetrics(box->font()).height());
    const int height = photolayout::fittedHeight(box->LineCount(), lineHeight);
    box->resize(box->width(), platform::pixelsFromTwipsY(height));
    return height;
}

void frmResPhoto::centreText(RichTextBox *box)
{
    box->setSelStart(0);
    box->setSelLength(box->TextLength());
    box->setSelAlignment(RichTextBox::AlignCenter);
    box->setSelLength(0);
}

void frmResPhoto::placeInPanel(QWidget *control, const QRect &twips)
{
    // Places in the panel count from inside its border.
    const int inside = picContainer->frameWidth();
    control->setGeometry(inside + platform::pixelsFromTwipsX(twips.left()),
        inside + platform::pixelsFromTwipsY(twips.top()), platform::pixelsFromTwipsX(twips.width()),
        platform::pixelsFromTwipsY(twips.height()));
}

void frmResPhoto::resizeEvent(QResizeEvent *event)
{
    SourceViewer::resizeEvent(event);
    platform::resumeNext([this] { Form_Resize(); });
}

void frmResPhoto::Form_Resize()
{
    if (m_minimum.isValid() && (width() < m_minimum.width() || height() < m_minimum.height()))
        resize(std::max(width(), m_minimum.width()), std::max(height(), m_minimum.height()));
    picContainer->move((width() - picContainer->width()) / 2, (height() - picContainer->height()) / 2);
}

bool frmResPhoto::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != Image1)
        return SourceViewer::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonDblClick:
        m_pressed = false;
        platform::guarded([this] { Image1_DblClick(); });
        return true;
    case QEvent::MouseButtonPress: {
        auto *mouse = static_cast<QMouseEvent *>(event);
        m_pressed = mouse->button() == Qt::LeftButton;
        m_pressAt = mouse->position().toPoint();
        return false;
    }
    case QEvent::MouseMove: {
        auto *mouse = static_cast<QMouseEvent *>(event);
        // A little way first, so that a double click does not start a drag.
        if (m_pressed && (mouse->buttons() & Qt::LeftButton)
            && (mouse->position().toPoint() - m_pressAt).manhattanLength()
                >= QApplication::startDragDistance()) {
            m_pressed = false;
            platform::guarded([this] { startDrag(); });
            return true;
        }
        return false;
    }
    case QEvent::MouseButtonRelease:
        m_pressed = false;
        if (static_cast<QMouseEvent *>(event)->button() == Qt::RightButton)
            picContainer->update();
        return false;
    default:
        return SourceViewer::eventFilter(watched, event);
    }
}

QMimeData *frmResPhoto::Image1_OLEStartDrag() const
{
    auto *data = new QMimeData;
    data->setImageData(m_picture);
    return data;
}

void frmResPhoto::startDrag()
{
    auto *drag = new QDrag(Image1);
    drag->setMimeData(Image1_OLEStartDrag());
    drag->setPixmap(
        QPixmap::fromImage(m_picture.scaled(64, 64, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    drag->exec(AllowedEffects, Qt::CopyAction);
}

void frmResPhoto::Image1_DblClick()
{
    const WaitCursor wait;
    auto *view = m_session.window<frmMaxPhoto>(Session::Window::MaxPhoto);
    if (!view)
        return;
    view->setThePicture(m_photoPath);
    view->setBackColor(photolayout::PanelColor);
    // Over the shell, in its middle, and above it while open.
    if (ShellWindow *shell = m_session.shell(false)) {
        QWidget *owner = shell->window();
        if (view->parentWidget() != owner)
            view->setParent(owner, view->windowFlags());
        view->move(owner->frameGeometry().center() - QPoint(view->width() / 2, view->height() / 2));
    }
    view->show();
    view->raise();
    view->activateWindow();
}
