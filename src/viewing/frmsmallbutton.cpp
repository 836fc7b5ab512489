#include "frmsmallbutton.h"

#include "opensource.h"

#include <accessibility.h>
#include <arrowkeys.h>
#include <contentpath.h>
#include <database.h>
#include <designedcolours.h>
#include <errorpolicy.h>
#include <focusframe.h>
#include <msgbox.h>
#include <programbitmaps.h>
#include <session.h>
#include <twips.h>

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

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

frmSmallButton::frmSmallButton(Session &session, QWidget *parent)
    : QWidget(parent)
    , Image1(new QLabel(this))
    , Label1(new QLabel(QStringLiteral("Label1"), this))
    , m_session(session)
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

    // A tile is a button to the keyboard and to screen readers: Tab reaches it, the arrows
    // move between tiles, Enter or Space opens it.
    setFocusPolicy(Qt::TabFocus);
    controls::makePressable(this);
    new controls::FocusFrame(this);
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
    // The one reading of the row: the tip, the click's check and the viewer all take it
    // from here.
    m_row = readSourceRow(m_session.database(), m_resourceID);
    m_kind = SourceViewer::kindOfResType(m_row.ResTypeID);
    disposeViewer();
    switch (m_kind) {
    case SourceViewer::Kind::Photo:
        adoptViewer(SourceViewer::create(m_session, m_kind));
        m_tileBitmaps = {QStringLiteral("AGEIA"), QStringLiteral("AGEIA1"), QStringLiteral("AGEIA2")};
        Label1->setToolTip(m_row.Caption);
        Image1->setToolTip(m_row.Caption);
        setAccessibleDescription(QStringLiteral("Φωτογραφία"));
        break;
    case SourceViewer::Kind::Text:
        adoptViewer(SourceViewer::create(m_session, m_kind));
        m_tileBitmaps = {QStringLiteral("KEIMENO"), QStringLiteral("KEIMENO1"), QStringLiteral("KEIMENO2")};
        Label1->setToolTip(m_row.Book);
        Image1->setToolTip(m_row.Book);
        setAccessibleDescription(QStringLiteral("Κείμενο"));
        break;
    case SourceViewer::Kind::Map:
        adoptViewer(SourceViewer::create(m_session, m_kind));
        m_tileBitmaps = {QStringLiteral("XARTIS"), QStringLiteral("XARTIS1"), QStringLiteral("XARTIS2")};
        Label1->setToolTip(m_row.Caption);
        Image1->setToolTip(m_row.Caption);
        setAccessibleDescription(QStringLiteral("Χάρτης"));
        break;
    case SourceViewer::Kind::None:
        m_tileBitmaps = {};
        setAccessibleDescription(QString());
        break;
    }
    m_title = Image1->toolTip();
    nameForScreenReaders();
    setPicture(Closed);
}

void frmSmallButton::Load()
{
    setPicture(Closed);
    m_sourceOpen = 0;
    nameForScreenReaders();
}

void frmSmallButton::nameForScreenReaders()
{
    // The number first, as the tile shows it, then the title its tip shows.
    const QString number = Label1->text() == QLatin1String("Label1") ? QString() : Label1->text();
    QString name = m_title;
    if (!number.isEmpty())
        name = m_title.isEmpty() ? number : number + QStringLiteral(": ") + m_title;
    if (name.isEmpty())
        name = QStringLiteral("Πηγή");
    setAccessibleName(name);
    if (QMdiSubWindow *sub = subWindow())
        sub->setWindowTitle(name);
}

void frmSmallButton::focusInEvent(QFocusEvent *event)
{
    m_focusByKeys = controls::byKeyboard(event->reason());
    QWidget::focusInEvent(event);
}

bool frmSmallButton::focusNextPrevChild(bool next)
{
    // A tile's frame would keep Tab inside the tile: the keys go from tile to tile
    // instead, and past the last (or before the first) on to the shell's own controls.
    QMdiSubWindow *sub = subWindow();
    QMdiArea *area = sub ? sub->mdiArea() : nullptr;
    if (!area)
        return QWidget::focusNextPrevChild(next);
    QList<frmSmallButton *> tiles;
    for (QMdiSubWindow *candidate : area->subWindowList(QMdiArea::CreationOrder))
        if (auto *tile = qobject_cast<frmSmallButton *>(candidate->widget()); tile && !candidate->isHidden())
            tiles.append(tile);
    const qsizetype at = tiles.indexOf(this);
    const qsizetype to = at + (next ? 1 : -1);
    if (at >= 0 && to >= 0 && to < tiles.size()) {
        tiles.at(to)->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        return true;
    }
    // The shell's controls outside the area, in the window's focus order.
    QList<QWidget *> outside;
    QWidget *top = window();
    for (QWidget *w = top->nextInFocusChain(); w && w != top; w = w->nextInFocusChain()) {
        if ((w->focusPolicy() & Qt::TabFocus) && w->isVisibleTo(top) && w->isEnabled()
            && !area->isAncestorOf(w) && w != area)
            outside.append(w);
    }
    QWidget *target = outside.isEmpty() ? tiles.value(next ? 0 : tiles.size() - 1)
                                        : (next ? outside.first() : outside.last());
    if (!target)
        return false;
    target->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void frmSmallButton::focusOutEvent(QFocusEvent *event)
{
    m_focusByKeys = false;
    QWidget::focusOutEvent(event);
}

void frmSmallButton::accessiblePress()
{
    platform::guarded([this] { Image1_Click(); });
}

void frmSmallButton::keyPressEvent(QKeyEvent *event)
{
    platform::guarded([&] {
        const int key = event->key();
        const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
        if (plain && (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)) {
            if (!event->isAutoRepeat()) {
                Image1_Click();
                m_openedByKeys = m_sourceOpen != 0;
            }
            return;
        }
        if (plain
            && (key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down)) {
            focusNeighbour(key);
            return;
        }
        event->ignore();
    });
}

bool frmSmallButton::focusNeighbour(int key)
{
    QMdiSubWindow *sub = subWindow();
    QMdiArea *area = sub ? sub->mdiArea() : nullptr;
    if (!area)
        return false;
    const QRect mine = sub->geometry();
    frmSmallButton *best = nullptr;
    qint64 bestScore = 0;
    for (QMdiSubWindow *candidate : area->subWindowList(QMdiArea::CreationOrder)) {
        auto *tile = qobject_cast<frmSmallButton *>(candidate->widget());
        if (!tile || tile == this || candidate->isHidden())
            continue;
        const QPoint d = candidate->geometry().center() - mine.center();
        // Along the arrow's way only; the nearest row or column first, then the nearest
        // tile in it.
        const auto [along, across] = controls::arrowOffset(key, d);
        if (along <= 0)
            continue;
        const bool sideways = key == Qt::Key_Left || key == Qt::Key_Right;
        // Left and right stay in the row while there is a tile in it; up and down take the
        // tile straight above or below.
        const qint64 score = sideways ? qAbs(across) * 100000 + along : along * 100000 + qAbs(across);
        if (!best || score < bestScore) {
            best = tile;
            bestScore = score;
        }
    }
    if (!best)
        return false;
    best->setFocus(Qt::TabFocusReason);
    return true;
}

bool frmSmallButton::Unload()
{
    if (auto *sub = subWindow())
        return sub->close();
    return close();
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
    QString value;
    QString folder;
    switch (m_kind) {
    case SourceViewer::Kind::Photo:
    case SourceViewer::Kind::Map:
        value = m_row.PicturePath;
        folder = QStringLiteral("Pictures");
        break;
    case SourceViewer::Kind::Text:
        value = m_row.TextPath;
        folder = QStringLiteral("piges");
        break;
    case SourceViewer::Kind::None:
        return false;
    }
    if (value.isEmpty())
        return false;
    return platform::fileExists(
        platform::buildPath(platform::buildPath(m_session.content().dataFolder, folder), value));
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
            adoptViewer(SourceViewer::create(m_session, m_kind));
        if (!m_sourceForm)
            return; // no viewer of this kind in the program yet

        setPicture(Open);
        openSource(m_session, m_row, {.viewer = m_sourceForm});
        m_sourceOpen = -1;
    });
}

void frmSmallButton::adoptViewer(SourceViewer *viewer)
{
    m_sourceForm = viewer;
    if (!viewer)
        return;
    if (m_kind != SourceViewer::Kind::Map)
        viewer->setSource(m_row);
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
    // A source opened from the keyboard gives the keys back to its tile when it closes,
    // once the area has settled which window is active.
    if (std::exchange(m_openedByKeys, false))
        QTimer::singleShot(0, this, [this] {
            if (isVisible())
                setFocus(Qt::TabFocusReason);
        });
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
    nameForScreenReaders();
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
    // A tile the pupil reached with the keyboard keeps the focus; it still stays behind
    // the open windows.
    if (hasFocus() && m_focusByKeys) {
        ZOrderToBack();
        return;
    }
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
    // The tile takes its viewer along, unless the viewer stays to keep the pupil's work
    // (a changed map whose question was cancelled): then the tile stays beside it.
    if (m_sourceOpen && m_sourceForm && !m_sourceForm->Unload() && m_sourceOpen) {
        event->ignore();
        return;
    }
    QWidget::closeEvent(event);
}
