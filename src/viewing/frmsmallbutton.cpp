#include "frmsmallbutton.h"

#include <contentpath.h>
#include <database.h>
#include <designedcolours.h>
#include <errorpolicy.h>
#include <modglobal.h>
#include <msgbox.h>
#include <programbitmaps.h>
#include <shellwindow.h>
#include <twips.h>

#include <QCloseEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QPainter>

#include <utility>

namespace {

// A type that has no viewer still gets a tile of the usual size, so the rows stay even;
// it is a plain parchment square that promises nothing.
QPixmap neutralTilePicture()
{
    const QSize size = resources::designSize(QStringLiteral("KEIMENO"));
    QPixmap pixmap(size.isValid() ? size : QSize(50, 47));
    pixmap.fill(QColor(254, 238, 193));
    QPainter painter(&pixmap);
    painter.setPen(QColor(127, 0, 0));
    painter.drawRect(pixmap.rect().adjusted(0, 0, -1, -1));
    return pixmap;
}

} // namespace

frmSmallButton::frmSmallButton(QWidget *parent)
    : QWidget(parent)
    , Image1(new QLabel(this))
    , Label1(new QLabel(QStringLiteral("Label1"), this))
{
    setObjectName(QStringLiteral("frmSmallButton"));
    platform::useDesignedColours(this);
    Image1->setObjectName(QStringLiteral("Image1"));
    Label1->setObjectName(QStringLiteral("Label1"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    resize(platform::pixelsFromTwipsX(DesignWidthTwips), platform::pixelsFromTwipsY(DesignHeightTwips));

    Image1->setScaledContents(false);
    Image1->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    Label1->setAttribute(Qt::WA_TranslucentBackground);
    QFont font = Label1->font();
    font.setBold(true);
    Label1->setFont(font);
    Label1->setStyleSheet(QStringLiteral("color: #7f0000; background: transparent; padding-left: 2px;"));
    Image1->installEventFilter(this);
    Label1->installEventFilter(this);
}

frmSmallButton::~frmSmallButton()
{
    disposeViewer();
}

void frmSmallButton::setResourceID(qint32 resourceID)
{
    m_resourceID = resourceID;
    ShowResource();
}

void frmSmallButton::ShowResource()
{
    auto rs = modGlobal::gDatabase->OpenRecordset(
        QStringLiteral("SELECT ResourceID, ResTypeID, Book, Caption, PicturePath, Kind ")
        + QStringLiteral("From Resources WHERE Resources.ResourceID = ") + QString::number(m_resourceID));

    const qint32 resTypeID = rs->Fields(QStringLiteral("ResTypeID")).Value().toInt();
    m_kind = SourceViewer::kindOfResType(resTypeID);
    disposeViewer();
    switch (m_kind) {
    case SourceViewer::Kind::Photo:
        adoptViewer(SourceViewer::create(m_kind));
        m_tileBitmaps = {QStringLiteral("AGEIA"), QStringLiteral("AGEIA1"), QStringLiteral("AGEIA2")};
        Label1->setToolTip(rs->Fields(QStringLiteral("Caption")).text());
        Image1->setToolTip(rs->Fields(QStringLiteral("Caption")).text());
        break;
    case SourceViewer::Kind::Text:
        adoptViewer(SourceViewer::create(m_kind));
        m_tileBitmaps = {QStringLiteral("KEIMENO"), QStringLiteral("KEIMENO1"), QStringLiteral("KEIMENO2")};
        Label1->setToolTip(rs->Fields(QStringLiteral("Book")).text());
        Image1->setToolTip(rs->Fields(QStringLiteral("Book")).text());
        break;
    case SourceViewer::Kind::Map:
        adoptViewer(SourceViewer::create(m_kind));
        m_mapPicturePath = rs->Fields(QStringLiteral("PicturePath")).text();
        m_mapCaption = rs->Fields(QStringLiteral("Caption")).text();
        m_tileBitmaps = {QStringLiteral("XARTIS"), QStringLiteral("XARTIS1"), QStringLiteral("XARTIS2")};
        Label1->setToolTip(rs->Fields(QStringLiteral("Caption")).text());
        Image1->setToolTip(rs->Fields(QStringLiteral("Caption")).text());
        break;
    case SourceViewer::Kind::None:
        m_tileBitmaps = {};
        break;
    }
    setPicture(Closed);
    rs->Close();
}

void frmSmallButton::Load()
{
    setPicture(Closed);
    m_sourceOpen = 0;
}

void frmSmallButton::Unload()
{
    if (auto *sub = subWindow())
        sub->close();
    else
        close();
}

void frmSmallButton::setPicture(TileState state)
{
    const QString &name = m_tileBitmaps[state];
    if (name.isEmpty()) {
        Image1->setPixmap(neutralTilePicture());
        m_currentBitmap.clear();
    } else {
        Image1->setPixmap(resources::LoadResPicture(name));
        m_currentBitmap = name;
    }
    Image1->resize(Image1->pixmap().deviceIndependentSize().toSize());
}

bool frmSmallButton::SourceExists()
{
    QString column;
    QString folder;
    switch (m_kind) {
    case SourceViewer::Kind::Photo:
    case SourceViewer::Kind::Map:
        column = QStringLiteral("PicturePath");
        folder = QStringLiteral("Pictures");
        break;
    case SourceViewer::Kind::Text:
        column = QStringLiteral("TextPath");
        folder = QStringLiteral("piges");
        break;
    case SourceViewer::Kind::None:
        return false;
    }

    auto rs = modGlobal::gDatabase->OpenRecordset(
        QStringLiteral("SELECT %1 FROM Resources WHERE ResourceID = ").arg(column)
        + QString::number(m_resourceID));
    QString value;
    if (!(rs->BOF() && rs->Eof()))
        value = rs->Fields(column).text();
    rs->Close();
    if (value.isEmpty())
        return false;
    return platform::fileExists(
        platform::buildPath(platform::buildPath(modGlobal::gDataFolder, folder), value));
}

void frmSmallButton::Image1_Click()
{
    // A tile of a type with no viewer stands in the row and does nothing.
    if (m_kind == SourceViewer::Kind::None)
        return;

    // Everything that fails on the way, other than a missing file, ends the click quietly.
    platform::resumeNext([this] {
        if (!SourceExists()) {
            platform::MsgBox(QStringLiteral("Η πηγή δεν είναι δυνατό να βρεθεί!!!"), platform::vbInformation,
                platform::ProgramTitle.toString());
            return;
        }
        if (m_sourceOpen && m_sourceForm) {
            if (auto *sub = qobject_cast<QMdiSubWindow *>(m_sourceForm->parentWidget()))
                if (sub->mdiArea())
                    sub->mdiArea()->setActiveSubWindow(sub);
            m_sourceForm->activateWindow();
            m_sourceForm->setFocus();
            return;
        }

        // The window of a viewer that was closed may have gone with its frame; the tile
        // then makes it anew, for the same resource.
        if (!m_sourceForm)
            adoptViewer(SourceViewer::create(m_kind));
        if (!m_sourceForm)
            return; // no viewer of this kind in the program yet

        setPicture(Open);
        m_sourceForm->Load();
        if (m_kind == SourceViewer::Kind::Map) {
            m_sourceForm->setMapPicture(platform::contentPath(
                modGlobal::gDataFolder, QStringLiteral("\\Pictures\\"), m_mapPicturePath));
            m_sourceForm->setMapCaption(m_mapCaption);
            m_sourceForm->SetScrollBars();
        }
        modGlobal::CenterAndShow(m_sourceForm);
        m_sourceOpen = -1;
    });
}

void frmSmallButton::adoptViewer(SourceViewer *viewer)
{
    m_sourceForm = viewer;
    if (!viewer)
        return;
    if (m_kind != SourceViewer::Kind::Map)
        viewer->setResourceID(m_resourceID);
    connect(viewer, &SourceViewer::OnUnload, this, [this] { SourceForm_OnUnload(); });
    // A viewer that goes without a word is closed all the same.
    connect(viewer, &QObject::destroyed, this, [this] {
        if (m_sourceOpen)
            SourceForm_OnUnload();
    });
}

void frmSmallButton::disposeViewer()
{
    SourceViewer *viewer = m_sourceForm;
    m_sourceForm = nullptr;
    if (!viewer)
        return;
    disconnect(viewer, nullptr, this, nullptr);
    auto *sub = qobject_cast<QMdiSubWindow *>(viewer->parentWidget());
    if (sub)
        sub->deleteLater();
    else
        viewer->deleteLater();
}

void frmSmallButton::SourceForm_OnUnload()
{
    platform::resumeNext([this] { setPicture(Visited); });
    m_sourceOpen = 0;
}

QMdiSubWindow *frmSmallButton::subWindow() const
{
    return qobject_cast<QMdiSubWindow *>(parentWidget());
}

void frmSmallButton::ZOrderToBack()
{
    if (auto *sub = subWindow())
        sub->lower();
    else
        lower();
}

bool frmSmallButton::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != Image1 && watched != Label1)
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        ZOrderToBack();
        return true;
    case QEvent::MouseButtonDblClick:
        // The first press and release of a double click have opened the source already.
        m_inDoubleClick = true;
        ZOrderToBack();
        return true;
    case QEvent::MouseButtonRelease: {
        auto *mouse = static_cast<QMouseEvent *>(event);
        auto *control = static_cast<QWidget *>(watched);
        const bool endsDoubleClick = std::exchange(m_inDoubleClick, false);
        if (mouse->button() == Qt::LeftButton && control->rect().contains(mouse->position().toPoint())
            && !endsDoubleClick)
            platform::guarded([this] { Image1_Click(); });
        return true;
    }
    default:
        return QWidget::eventFilter(watched, event);
    }
}

void frmSmallButton::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Image1->move(0, 0);
    Label1->move(0, 0);
    Label1->adjustSize();
    Label1->raise();
}

void frmSmallButton::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    QMdiSubWindow *sub = subWindow();
    if (sub && sub != m_watchedSub) {
        m_watchedSub = sub;
        connect(
            sub, &QMdiSubWindow::windowStateChanged, this, [this](Qt::WindowStates, Qt::WindowStates now) {
                if (now & Qt::WindowActive)
                    Form_Activate();
            });
    }
}

void frmSmallButton::Form_Activate()
{
    if (m_passingActivation)
        return;
    m_passingActivation = true;
    // A tile never keeps the activation: the first window in the shell that is not a
    // tile takes it, in the order the windows were opened, or else the shell itself.
    platform::resumeNext([this] {
        QMdiSubWindow *sub = subWindow();
        QMdiArea *area = sub ? sub->mdiArea() : nullptr;
        if (!area)
            return;
        const QList<QMdiSubWindow *> windows = area->subWindowList(QMdiArea::CreationOrder);
        for (QMdiSubWindow *candidate : windows) {
            if (candidate->isHidden() || qobject_cast<frmSmallButton *>(candidate->widget()))
                continue;
            area->setActiveSubWindow(candidate);
            return;
        }
        area->setActiveSubWindow(nullptr);
    });
    ZOrderToBack();
    m_passingActivation = false;
}

void frmSmallButton::closeEvent(QCloseEvent *event)
{
    if (m_sourceOpen && m_sourceForm)
        m_sourceForm->Unload();
    QWidget::closeEvent(event);
}
