#include "session.h"

#include "notepadstate.h"

#include <database.h>
#include <engines.h>
#include <latethreads.h>
#include <logging.h>
#include <outbox.h>
#include <readaloud.h>
#include <recoverystore.h>
#include <runtimeerror.h>
#include <shellwindow.h>
#include <spellingservice.h>
#include <textzoom.h>
#include <twips.h>

#include <QDeadlineTimer>
#include <QMdiArea>
#include <QMdiSubWindow>

#include <algorithm>

namespace {

// How long the end of a session waits for background work that was told to stop.
constexpr int BackgroundStopMs = 500;
// The most the end of a session waits for every service together: a closing program
// does not stay on screen for a service that does not answer.
constexpr int StopBudgetMs = 900;
// Of which the speaker's engine gets at most this much.
constexpr int SpeechStopMs = 250;
// And the outbox's drop folder write, kept aside from what the media engines may take.
constexpr int HandInStopMs = handin::Outbox::FolderExitWaitMs;

std::chrono::milliseconds within(const QDeadlineTimer &budget, int most)
{
    return std::chrono::milliseconds(std::clamp<qint64>(budget.remainingTime(), 0, most));
}

} // namespace

Session::Session(std::unique_ptr<platform::Host> host, platform::LateThreads &late)
    : Session(std::move(host), late, Services())
{
}

Session::Session(std::unique_ptr<platform::Host> host, platform::LateThreads &late, Services services)
    : m_host(host ? std::move(host) : std::make_unique<platform::DesktopHost>())
    , m_hostScope(*m_host)
    , m_notepad(std::make_unique<NotepadState>())
    , m_recovery(std::make_unique<recovery::Store>())
    , m_textZoom(std::make_unique<TextZoom>())
    , m_readAloud(std::make_unique<speech::ReadAloud>(std::move(services.speaker), late))
    , m_mediaEngines(std::make_unique<media::Engines>(late))
    , m_spelling(std::make_unique<spelling::Service>(
          [this](QObject *context, spelling::Service::Job job, spelling::Service::Done done) {
              m_background.run<spelling::Loaded>(context, std::move(job), std::move(done));
          },
          std::move(services.spellingFolders)))
{
    m_recovery->setDelayMs(services.recoveryDelayMs);
    // The outbox reads the clock through the host, so that a test's clock is the status's.
    m_handIns = std::make_unique<handin::Outbox>(
        services.handInDestinations ? *std::move(services.handInDestinations)
                                    : handin::Destinations::fromSettings(),
        late, services.handInFolder, [host = m_host.get()] { return host->now(); },
        services.handInRetryMs > 0 ? services.handInRetryMs : handin::Outbox::RetryMs);
}

Session::~Session()
{
    const QDeadlineTimer budget(StopBudgetMs);
    // 1. The workers: no result comes back to a window that is about to go (nor a
    //    spelling dictionary still loading to its checker).
    m_background.cancelAll();
    if (!m_background.waitForDone(int(within(budget, BackgroundStopMs).count())))
        qCWarning(lcErrors) << "background work still running at the session's end";
    // 2. Speech: the reading stops, and the speaker's engine thread ends or, stuck in the
    //    speech service, goes to the late threads.
    m_readAloud->leave(within(budget, SpeechStopMs));
    // 3. The media engines: every pipeline is dropped and stops on its own thread; one
    //    stuck inside GStreamer goes to the late threads. The players still open find
    //    their engines gone and play no more.
    //    A drop folder write under way keeps its moment of step 4 back from them.
    const int handInReserveMs = m_handIns->writingToFolder() ? HandInStopMs : 0;
    if (!m_mediaEngines->stop(within(budget, std::max(0, int(budget.remainingTime()) - handInReserveMs))))
        qCWarning(lcMedia) << "a media engine still stopping at the session's end was left to its owner";
    // 4. The hand-ins: an upload under way is dropped, and its bundle stays in the outbox
    //    for the next start; a drop folder write stuck in its share goes to the late
    //    threads. Before the windows, which may show the outbox's status.
    m_handIns->leave(within(budget, HandInStopMs));
    m_handIns.reset();
    // 5. The windows, without their closing questions: the pupil's work stays in its
    //    recovery copies.
    closeWindows();
    // 6. The recovery copies of work neither saved nor discarded stay for the next start;
    //    the program's folder goes only when nothing is left in it.
    m_recovery.reset();
    // 7. The content.
    m_content.database.reset();
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
