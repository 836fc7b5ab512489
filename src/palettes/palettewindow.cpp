#include "palettewindow.h"

#include <arrowkeys.h>
#include <designedcolours.h>
#include <errorpolicy.h>
#include <logging.h>
#include <runtimeerror.h>
#include <twips.h>

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

PaletteWindow::PaletteWindow(int cellCount, QSize designSize, QWidget *owner)
    : QWidget(owner, Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
    , m_cells(std::size_t(cellCount))
{
    // Hover is followed without a button held.
    setMouseTracking(true);
    platform::useDesignedColours(this);
    setFixedSize(designSize);
    setFocusPolicy(Qt::StrongFocus);
}

PaletteWindow::~PaletteWindow() = default;

int PaletteWindow::Left() const
{
    return platform::twipsFromPixelsX(frameGeometry().x());
}

int PaletteWindow::Top() const
{
    return platform::twipsFromPixelsY(frameGeometry().y());
}

int PaletteWindow::Width() const
{
    return platform::twipsFromPixelsX(frameGeometry().width());
}

int PaletteWindow::Height() const
{
    return platform::twipsFromPixelsY(frameGeometry().height());
}

void PaletteWindow::setLeft(int twips)
{
    Load();
    move(platform::pixelsFromTwipsX(twips), frameGeometry().y());
}

void PaletteWindow::setTop(int twips)
{
    Load();
    move(frameGeometry().x(), platform::pixelsFromTwipsY(twips));
}

void PaletteWindow::Move(int leftTwips, int topTwips)
{
    Load();
    // A window's position is that of its frame.
    move(platform::pixelsFromTwipsX(leftTwips), platform::pixelsFromTwipsY(topTwips));
}

void PaletteWindow::setCaption(const QString &caption)
{
    Load();
    setWindowTitle(caption);
}

void PaletteWindow::Show()
{
    Load();
    show();
    raise();
    activateWindow();
}

void PaletteWindow::Load()
{
    if (m_loaded)
        return;
    m_loaded = true;
    m_paintErrorReported = false;
    Form_Load();
}

void PaletteWindow::Unload()
{
    if (!m_loaded)
        return;
    m_loaded = false;
    m_captured = false;
    m_raised.reset();
    hide();
}

const PaletteCell &PaletteWindow::Cells(int index) const
{
    if (index < 1 || index > CellCount())
        throw platform::RuntimeError(
            platform::errors::SubscriptOutOfRange, QStringLiteral("Δείκτης εκτός περιοχής"));
    return m_cells[std::size_t(index - 1)];
}

PaletteCell &PaletteWindow::cell(int index)
{
    return const_cast<PaletteCell &>(std::as_const(*this).Cells(index));
}

QPixmap &PaletteWindow::newPicture(QSize clientSize)
{
    setFixedSize(clientSize);
    const qreal ratio = devicePixelRatioF();
    m_picture = QPixmap(clientSize * ratio);
    m_picture.setDevicePixelRatio(ratio);
    m_picture.fill(palette().color(QPalette::Window));
    return m_picture;
}

void PaletteWindow::Refresh()
{
    m_raised.reset();
    repaint();
}

QPoint PaletteWindow::cellPoint(QPointF position) const
{
    // Positions come in twips and are divided down to whole pixels, as the window
    // reasons in twips: the twips are rounded to a whole number first, then divided.
    const auto toPixel = [](double pixels, int twipsPerPixel) {
        const long twips = std::lrint(pixels * twipsPerPixel);
        return int(twips / twipsPerPixel);
    };
    return QPoint(
        toPixel(position.x(), platform::TwipsPerPixelX), toPixel(position.y(), platform::TwipsPerPixelY));
}

// --- Event handlers ----------------------------------------------------------------------

void PaletteWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    try {
        Form_Paint(painter);
    } catch (const platform::RuntimeError &e) {
        // The box can't open inside the paint itself: it would ask for this paint again.
        reportPaintError(e.number(), e.description());
    } catch (...) {
        // Nothing else can fail here; a paint never ends the program.
        platform::logCurrentPassedOver(std::source_location::current());
    }
}

void PaletteWindow::Form_Paint(QPainter &painter)
{
    if (m_selectedIndex == 0)
        m_selectedIndex = 1;
    const QRect sunken = sunkenArea(m_selectedIndex);
    painter.drawPixmap(0, 0, m_picture);
    paletteedge::draw(painter, sunken, paletteedge::Kind::Sunken);
    if (m_raised)
        paletteedge::draw(painter, *m_raised, paletteedge::Kind::Raised);
}

void PaletteWindow::reportPaintError(int number, const QString &description)
{
    if (m_paintErrorReported)
        return;
    m_paintErrorReported = true;
    QMetaObject::invokeMethod(
        this, [number, description] { platform::showRuntimeError(number, description); },
        Qt::QueuedConnection);
}

void PaletteWindow::mousePressEvent(QMouseEvent *event)
{
    platform::guarded([&] { Form_MouseDown(event->position()); });
}

void PaletteWindow::Form_MouseDown(QPointF position)
{
    m_pickStarted = true;
    const QPoint p = cellPoint(position);
    for (int i = 1; i <= CellCount(); ++i) {
        if (pickArea(i).contains(p)) {
            m_selectedIndex = qint16(i);
            Refresh();
            break;
        }
    }
    // A press beside every cell picks again what was chosen before.
    raiseNewValue();
}

void PaletteWindow::mouseMoveEvent(QMouseEvent *event)
{
    platform::guarded([&] { Form_MouseMove(event->position()); });
}

void PaletteWindow::Form_MouseMove(QPointF position)
{
    if (m_pickStarted)
        return;
    m_captured = true;
    const QPoint p = cellPoint(position);
    for (int i = 1; i <= CellCount(); ++i) {
        if (i == m_hotIndex || !Cells(i).contains(p))
            continue;
        if (m_hotIndex > 0) {
            m_raised.reset();
            repaint(hotRepaintArea(m_hotIndex));
        }
        if (i != m_selectedIndex) {
            m_raised = raisedArea(i);
            repaint(*m_raised);
        }
        m_hotIndex = qint16(i);
        break;
    }
    // The whole window counts, frame included, as the window measures itself.
    const int outerWidth = Width() / platform::TwipsPerPixelX;
    const int outerHeight = Height() / platform::TwipsPerPixelY;
    if (p.x() < 0 || p.y() < 0 || p.x() > outerWidth || p.y() > outerHeight)
        pointerLeft();
}

void PaletteWindow::leaveEvent(QEvent *event)
{
    // The window system tells of the pointer leaving instead of a first move outside.
    platform::guarded([&] {
        if (m_captured && !m_pickStarted)
            pointerLeft();
    });
    QWidget::leaveEvent(event);
}

void PaletteWindow::pointerLeft()
{
    // Without a hot cell there is nothing raised to take back.
    if (m_hotIndex > 0) {
        m_raised.reset();
        repaint(hotRepaintArea(m_hotIndex));
    }
    m_hotIndex = 0;
    m_captured = false;
}

void PaletteWindow::mouseReleaseEvent(QMouseEvent *)
{
    platform::guarded([&] { Form_MouseUp(); });
}

void PaletteWindow::Form_MouseUp()
{
    if (m_pickStarted)
        Unload();
}

void PaletteWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && m_loaded && isVisible() && !isActiveWindow())
        Unload();
}

void PaletteWindow::closeEvent(QCloseEvent *event)
{
    Unload();
    event->accept();
}

void PaletteWindow::keyPressEvent(QKeyEvent *event)
{
    platform::guarded([&] {
        const int key = event->key();
        const int from = m_hotIndex > 0 ? m_hotIndex : qMax<int>(1, m_selectedIndex);
        switch (key) {
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down: {
            const int to = neighbour(from, key);
            if (to <= 0)
                return;
            if (m_hotIndex > 0) {
                m_raised.reset();
                repaint(hotRepaintArea(m_hotIndex));
            }
            m_hotIndex = qint16(to);
            if (to != m_selectedIndex) {
                m_raised = raisedArea(to);
                repaint(*m_raised);
            }
            return;
        }
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            m_pickStarted = true;
            m_selectedIndex = qint16(from);
            Refresh();
            raiseNewValue();
            Unload();
            return;
        case Qt::Key_Escape:
            Unload();
            return;
        default:
            event->ignore();
        }
    });
}

int PaletteWindow::neighbour(int from, int key) const
{
    // The nearest cell that way: along the arrow first, then the least off to the side.
    const QPoint here = Cells(from).rect().center();
    int best = 0;
    qint64 bestScore = 0;
    for (int i = 1; i <= CellCount(); ++i) {
        if (i == from)
            continue;
        const QPoint d = Cells(i).rect().center() - here;
        const auto [along, across] = controls::arrowOffset(key, d);
        if (along <= 0)
            continue;
        const qint64 score = qAbs(across) * 4 + along;
        if (!best || score < bestScore) {
            best = i;
            bestScore = score;
        }
    }
    return best;
}
