#include "childwindows.h"

#include "frmnewfirst.h"
#include "frmploigisi.h"
#include "mdiform1.h"

#include <findingwindows.h>
#include <frmdrawing.h>
#include <frmfulltextsearch.h>
#include <frmindex.h>
#include <frmnotes.h>
#include <frmsearchresources.h>
#include <session.h>
#include <sourceviewer.h>

#include <QEvent>
#include <QMdiSubWindow>

#include <algorithm>

namespace {

// session: bridge. A window that still keeps its own single instance lets go of it when
// it closes; the session's slot follows, so that the next request makes a new one.
class InstanceFollower final : public QObject
{
public:
    InstanceFollower(Session &session, Session::Window kind, std::function<QWidget *()> existing, QWidget *w)
        : QObject(w)
        , m_session(session)
        , m_kind(kind)
        , m_existing(std::move(existing))
    {
        w->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Hide && m_existing() != watched
            && m_session.window(m_kind, false) == watched)
            m_session.setWindow(m_kind, nullptr);
        return false;
    }

private:
    Session &m_session;
    Session::Window m_kind;
    std::function<QWidget *()> m_existing;
};

template<typename W> void registerSingleInstance(Session &session, Session::Window kind)
{
    session.setWindowFactory(kind, [kind](Session &s) -> QWidget * {
        W *w = W::instance(true);
        const QObjectList children = w ? w->children() : QObjectList();
        const bool followed = std::any_of(children.cbegin(), children.cend(),
            [](const QObject *child) { return dynamic_cast<const InstanceFollower *>(child) != nullptr; });
        if (w && !followed)
            new InstanceFollower(
                s, kind, [] { return W::instance(false); }, w);
        return w;
    });
}

} // namespace

void registerShellWindows(Session &session)
{
    // The shell, the start screen, and the tree that floats above the shell and goes with it.
    session.setWindowFactory(Session::Window::Shell, [](Session &s) -> QWidget * { return new MDIForm1(s); });
    session.setWindowFactory(
        Session::Window::StartScreen, [](Session &s) -> QWidget * { return new frmNewFirst(s); });
    session.setWindowFactory(Session::Window::Navigation, [](Session &s) -> QWidget * {
        ShellWindow *shell = s.shell(false);
        return new frmPloigisi(s, shell ? shell->window() : nullptr);
    });
    // session: bridge, for the windows that still ask ShellWindow::instance().
    ShellWindow::setSessionShell([](bool create) -> ShellWindow * {
        Session *running = Session::current();
        return running ? running->shell(create) : nullptr;
    });
}

// Each subsystem registers its windows in a block of its own.
void registerChildWindows(Session &session)
{
    registerShellWindows(session);

    // Finding: the resource search and the index.
    registerSingleInstance<frmIndex>(session, Session::Window::Index); // session: frmIndex(Session &)
    // session: frmSearchResources(Session &)
    registerSingleInstance<frmSearchResources>(session, Session::Window::SearchResources);
    finding::registerFindingLinks(); // session: registerFindingLinks(Session &)
    // session: frmFullTextSearch(Session &)
    registerSingleInstance<frmFullTextSearch>(session, Session::Window::FullTextSearch);

    // Notepad.
    registerSingleInstance<frmNotes>(session, Session::Window::Notes); // session: frmNotes(Session &)

    // Drawing: the drawing window, also as the viewer of a map. The shell's own drawing
    // window is made afresh after it was closed.
    session.setWindowFactory(
        Session::Window::Drawing, [](Session &) -> QWidget * { return newDrawingWindow(); });
    session.setViewerFactory(
        int(SourceViewer::Kind::Map), [](Session &) -> QWidget * { return new frmDrawing; });
    SourceViewer::setFactory(
        SourceViewer::Kind::Map, [] { return new frmDrawing; }); // session: setViewerFactory
}

frmDrawing *newDrawingWindow()
{
    auto *drawing = new frmDrawing; // session: frmDrawing(Session &)
    QObject::connect(drawing, &SourceViewer::OnUnload, drawing, [drawing] {
        if (auto *sub = qobject_cast<QMdiSubWindow *>(drawing->parentWidget()))
            sub->deleteLater();
        else
            drawing->deleteLater();
    });
    drawing->Load();
    return drawing;
}
