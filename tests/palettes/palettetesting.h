#pragma once

// Small helpers of the palette tests: the pointer as the window system moves it, and what
// the window shows.

#include "../support/testsession.h"

#include <palettewindow.h>

#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QRegion>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace palettetesting {

// Delivers a mouse event straight to the window, wherever the point is, as the window
// system does while the window follows the pointer or a button is held.
inline void send(QWidget &w, QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held)
{
    QMouseEvent event(type, QPointF(at), w.mapToGlobal(QPointF(at)), button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&w, &event);
}

inline void hover(QWidget &w, QPoint at)
{
    send(w, QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton);
}

inline void drag(QWidget &w, QPoint at, Qt::MouseButton held = Qt::LeftButton)
{
    send(w, QEvent::MouseMove, at, Qt::NoButton, held);
}

inline void press(QWidget &w, QPoint at, Qt::MouseButton button = Qt::LeftButton)
{
    send(w, QEvent::MouseButtonPress, at, button, button);
}

inline void release(QWidget &w, QPoint at, Qt::MouseButton button = Qt::LeftButton)
{
    send(w, QEvent::MouseButtonRelease, at, button, Qt::NoButton);
}

inline void leave(QWidget &w)
{
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(&w, &event);
}

// What the window shows now, at one logical pixel per pixel.
inline QImage shown(QWidget &w)
{
    QPixmap pix = w.grab();
    QImage image = pix.toImage();
    if (pix.devicePixelRatio() != 1.0)
        image = image.scaled(w.size());
    return image.convertToFormat(QImage::Format_RGB32);
}

inline QColor windowColour(const QWidget &w)
{
    return w.palette().color(QPalette::Window);
}

// Whether the one-pixel edge of that kind frames the rectangle in the image.
inline bool edgeShows(const QImage &image, const QRect &r, paletteedge::Kind kind)
{
    const QColor upperLeft = kind == paletteedge::Kind::Raised ? paletteedge::Highlight : paletteedge::Shadow;
    const QColor lowerRight
        = kind == paletteedge::Kind::Raised ? paletteedge::Shadow : paletteedge::Highlight;
    for (int x = r.left(); x < r.right(); ++x)
        if (image.pixelColor(x, r.top()) != upperLeft || image.pixelColor(x, r.bottom()) != lowerRight)
            return false;
    for (int y = r.top(); y < r.bottom(); ++y)
        if (image.pixelColor(r.left(), y) != upperLeft || image.pixelColor(r.right(), y) != lowerRight)
            return false;
    return true;
}

// Whether any pixel of the rectangle's outline is an edge colour.
inline bool anyEdgeOn(const QImage &image, const QRect &r)
{
    for (int x = r.left(); x <= r.right(); ++x)
        for (int y : {r.top(), r.bottom()}) {
            const QColor c = image.pixelColor(x, y);
            if (c == paletteedge::Highlight || c == paletteedge::Shadow)
                return true;
        }
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x : {r.left(), r.right()}) {
            const QColor c = image.pixelColor(x, y);
            if (c == paletteedge::Highlight || c == paletteedge::Shadow)
                return true;
        }
    return false;
}

// Counts the paints a window receives.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget &w) { w.installEventFilter(this); }
    int count = 0;
    QRegion painted;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            ++count;
            painted += static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }
};

// Shows the palette where the owner placed it and waits until it is on screen.
inline bool showAt(PaletteWindow &palette, int leftTwips = 3000, int topTwips = 3000)
{
    palette.Move(leftTwips, topTwips);
    palette.Show();
    return QTest::qWaitForWindowExposed(&palette);
}

// The palette of one test, fresh and shown, in a session of its own, and the boxes its
// host showed meanwhile.
template<typename Palette> class Fixture
{
public:
    QList<testing::ShownBox> boxes;

    void begin()
    {
        boxes.clear();
        m_session = std::make_unique<testing::TestSession>();
        m_session->host->onBox = [this](const testing::ShownBox &box) { boxes.append(box); };
    }
    void end()
    {
        m_palette.reset();
        m_session.reset();
    }
    Palette &shownPalette()
    {
        m_palette = std::make_unique<Palette>();
        if (!showAt(*m_palette))
            qFatal("the palette did not show");
        return *m_palette;
    }

private:
    std::unique_ptr<testing::TestSession> m_session;
    std::unique_ptr<Palette> m_palette;
};

// Shows the palette over another window, makes that one the active window and tells
// whether the palette closed without raising its event.
template<typename Palette, typename Event>
bool closesSilentlyWhenAnotherWindowIsActivated(Palette &palette, Event event)
{
    QWidget other;
    other.resize(200, 200);
    other.show();
    if (!QTest::qWaitForWindowExposed(&other) || !showAt(palette))
        return false;
    QSignalSpy picked(&palette, event);
    if (!QTest::qWaitFor([&] { return palette.isActiveWindow(); }))
        return false;
    hover(palette, QPoint(10, 10));
    other.activateWindow();
    return QTest::qWaitFor([&] { return !palette.Loaded(); }) && !palette.isVisible() && picked.isEmpty();
}

} // namespace palettetesting
