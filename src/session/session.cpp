#include "session.h"

#include "notepadstate.h"

#include <database.h>
#include <logging.h>
#include <readaloud.h>
#include <recoverystore.h>
#include <runtimeerror.h>
#include <shellwindow.h>
#include <textzoom.h>
#include <twips.h>

#include <QMdiArea>
#include <QMdiSubWindow>

namespace {

// Only while windows are moved over to the session they are handed.
Session *g_current = nullptr;

// How long the end of a session waits for background work that was told to stop.
constexpr int BackgroundStopMs = 500;

} // namespace

Session::Session(std::unique_ptr<platform::Host> host)
    : m_host(host ? std::move(host) : std::make_unique<platform::DesktopHost>())
    , m_hostScope(*m_host)
    , m_notepad(std::make_unique<NotepadState>())
{
    g_current = this;
}

Session::~Session()
{
    // 1. The workers: no result comes back to a window that is about to go.
    m_background.cancelAll();
    if (!m_background.waitForDone(BackgroundStopMs))
        qCWarning(lcErrors) << "background work still running at the session's end";
    // 4. The windows, without their closing questions: the pupil's work stays in its
    //    recovery copies.
    closeWindows();
    // 6. The content.
    m_content.database.reset();
    if (g_current == this)
        g_current = nullptr;
}

Session *Session::current()
{
    return g_current;
}

content::Database &Session::database()
{
    if (!m_content.database)
        throw platform::RuntimeError(
            platform::errors::ObjectNotSet, QStringLiteral("Δεν έχει οριστεί μεταβλητή αντικειμένου"));
    return *m_content.database;
}

void Session::setWindowFactory(Window kind, WindowFactory factory)
{
    m_windowFactories.insert(int(kind), std::move(factory));
}

QWidget *Session::window(Window kind, bool create)
{
    if (QWidget *open = m_windows.value(int(kind)))
        return open;
    // A copy, and no reference into the table: a window's making may ask for others.
    const WindowFactory factory = create ? m_windowFactories.value(int(kind)) : WindowFactory();
    if (!factory)
        return nullptr;
    QWidget *made = factory(*this);
    m_windows.insert(int(kind), made);
    return made;
}

void Session::setWindow(Window kind, QWidget *widget)
{
    m_windows[int(kind)] = widget;
}

void Session::adopt(QWidget *widget)
{
    m_adopted.removeAll(nullptr);
    if (widget && !m_adopted.contains(widget))
        m_adopted.append(widget);
}

void Session::setViewerFactory(int kind, ViewerFactory factory)
{
    m_viewerFactories.insert(kind, std::move(factory));
}

QWidget *Session::makeViewer(int kind)
{
    const auto factory = m_viewerFactories.constFind(kind);
    if (factory == m_viewerFactories.constEnd() || !*factory)
        return nullptr;
    QWidget *viewer = (*factory)(*this);
    adopt(viewer);
    return viewer;
}

ShellWindow *Session::shell(bool create)
{
    return dynamic_cast<ShellWindow *>(window(Window::Shell, create));
}

recovery::Store &Session::recovery()
{
    return recovery::Store::instance();
}

speech::ReadAloud &Session::readAloud()
{
    return speech::ReadAloud::instance();
}

TextZoom &Session::textZoom()
{
    return TextZoom::instance();
}

void Session::closeWindows()
{
    // The pupil's windows first, the shell last, as the shell's own closing does.
    QList<QPointer<QWidget>> windows = m_adopted;
    QPointer<QWidget> shellWindow;
    for (auto it = m_windows.cbegin(); it != m_windows.cend(); ++it) {
        if (it.key() == int(Window::Shell))
            shellWindow = it.value();
        else
            windows.append(it.value());
    }
    for (const QPointer<QWidget> &w : std::as_const(windows)) {
        if (w && w != shellWindow)
            delete w.data();
    }
    delete shellWindow.data();
    m_adopted.clear();
    m_windows.clear();
}

void CenterAndShow(Session &session, QWidget *form)
{
    if (!form)
        return;
    ShellWindow *shell = session.shell();
    QMdiArea *area = shell ? shell->mdiArea() : nullptr;
    if (!area) {
        form->show();
        return;
    }

    QMdiSubWindow *sub = qobject_cast<QMdiSubWindow *>(form);
    if (!sub)
        sub = qobject_cast<QMdiSubWindow *>(form->parentWidget());
    if (!sub || sub->mdiArea() != area) {
        // A child window takes its size from its form, as the form was designed; the
        // sub-window would otherwise shrink it to its own default.
        const QSize designed = form->size();
        const Qt::WindowFlags flags = form->windowFlags() & Qt::FramelessWindowHint;
        sub = area->addSubWindow(form, flags ? Qt::SubWindow | Qt::FramelessWindowHint : Qt::SubWindow);
        const QMargins frame = sub->contentsMargins();
        sub->resize(designed.grownBy(frame));
    }

    const double scaleWidth = platform::twipsFromPixelsX(area->viewport()->width());
    const double scaleHeight = platform::twipsFromPixelsY(area->viewport()->height());
    const double width = platform::twipsFromPixelsX(sub->width());
    const double height = platform::twipsFromPixelsY(sub->height());
    const double left = (scaleWidth - width) / 2.0;
    const double top = (scaleHeight - height) / 2.0;
    sub->move(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(top));
    sub->show();
    form->show();
    sub->raise();
    area->setActiveSubWindow(sub);
}

void End(Session &session)
{
    session.host().end();
}
