#pragma once

#include "background.h"

#include <destinations.h>
#include <host.h>

#include <QHash>
#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace content {
class Database;
}
namespace handin {
class Outbox;
}
namespace media {
class Engines;
}
namespace platform {
class LateThreads;
}
namespace recovery {
class Store;
}
namespace spelling {
class Service;
}
namespace speech {
class ReadAloud;
class Speaker;
} // namespace speech
class ShellWindow;
class TextZoom;
struct NotepadState;

// One running program: the content it shows, the windows it has open, the notepad's
// memory, the services that run threads or timers, and the host it meets the outside
// world through. `main` makes one; a test makes as many as it likes, one after another.
// Nothing of it outlives it: ~Session stops everything, in the order written there.
class Session final
{
public:
    // What a session's services are made with, other than the desktop's own.
    struct Services
    {
        // The speaker that reads aloud, made at its first use; empty: the desktop's speech
        // engine on a thread of its own.
        std::function<std::unique_ptr<speech::Speaker>(platform::LateThreads &late)> speaker;
        // Milliseconds from a change to its recovery copy; 0: the store's own delay.
        int recoveryDelayMs = 0;
        // Where the spell checker looks for its Greek dictionary; empty: the system's
        // folders (/usr/share/hunspell, ...).
        QStringList spellingFolders = {};
        // Where hand-ins wait until they are handed in; empty: the user's state folder.
        QString handInFolder {};
        // Where hand-ins go; none: the system settings' group «Παράδοση».
        std::optional<handin::Destinations> handInDestinations {};
        // Milliseconds between the tries of what waits; 0: the outbox's own.
        int handInRetryMs = 0;
    };

    // `late` takes the threads that do not stop within their bound when the session ends
    // (an engine stuck inside GStreamer or the speech service), and must outlive it: `main`
    // keeps one until the process ends, a test one beside its session.
    Session(std::unique_ptr<platform::Host> host, platform::LateThreads &late);
    Session(std::unique_ptr<platform::Host> host, platform::LateThreads &late, Services services);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    platform::Host &host() { return *m_host; }

    // --- The content -----------------------------------------------------------------
    struct Content
    {
        QString databasePath;  // full path of the content database file
        QString databaseTitle; // its presentation name, shown on the start screen
        std::unique_ptr<content::Database> database; // every query runs on it
        QString dataFolder;    // parent folder of the database file, no trailing separator
        qint32 themeID = 0;    // theme chosen on the start screen
        qint32 scenarioID = 0; // scenario the user last went through
        qint32 activityID = 0; // activity now shown in the main shell
    };
    Content &content() { return m_content; }
    const Content &content() const { return m_content; }
    content::Database &database(); // the open content; a run-time error when none is

    // --- The windows -----------------------------------------------------------------
    // The windows the program has at most one of, by kind.
    enum class Window {
        Shell,
        StartScreen,
        Navigation,
        Index,
        SearchResources,
        FullTextSearch,
        Notes,
        Find,
        Format,
        Bullets,
        Drawing,
        Tip,
        Photo,
        MaxPhoto,
        HandIn,
    };
    using WindowFactory = std::function<QWidget *(Session &)>;
    void setWindowFactory(Window kind, WindowFactory factory);
    // The window of `kind`: the one open, else (with `create`) a new one from its factory;
    // null when there is none and none can be made.
    QWidget *window(Window kind, bool create = true);
    template<typename T> T *window(Window kind, bool create = true)
    {
        return qobject_cast<T *>(window(kind, create));
    }
    // Makes `widget` the window of `kind` (a window that made itself).
    void setWindow(Window kind, QWidget *widget);

    // The other windows the session closes at its end: drawings, notes, viewers.
    void adopt(QWidget *widget);

    // The viewer of each kind of source, made by the factory its subsystem registered.
    using ViewerFactory = std::function<QWidget *(Session &)>;
    void setViewerFactory(int kind, ViewerFactory factory);
    QWidget *makeViewer(int kind);

    // The main shell, made through the shell's factory when there is none and `create`.
    ShellWindow *shell(bool create = true);

    // What a viewer asks of windows that stand above it: filled in when those windows
    // register; a link left empty does nothing.
    struct Links
    {
        // Shows the index on the term's tab at the term, with its explanation and picture.
        std::function<void(
            qint32 indexType, const QString &term, const QString &explanation, const QString &pictureName)>
            openIndex;
        // Clears Ghosted on the search list's item whose tag is the text given.
        std::function<void(const QString &tag)> unghostSearchItem;
    };
    Links &links() { return m_links; }

    // --- The notepad's memory --------------------------------------------------------
    NotepadState &notepad() { return *m_notepad; }

    // --- Services ----------------------------------------------------------------------
    Background &background() { return m_background; }
    recovery::Store &recovery() { return *m_recovery; }
    speech::ReadAloud &readAloud() { return *m_readAloud; }
    TextZoom &textZoom() { return *m_textZoom; }
    // The owner of the media players' engine threads; every player is handed it.
    media::Engines &mediaEngines() { return *m_mediaEngines; }
    // The spell checker: its dictionary loads on a background worker at its first need.
    spelling::Service &spelling() { return *m_spelling; }
    // The pupils' hand-ins: made as the session starts, so that what waits from an earlier
    // run is sent again at once, and then every two minutes.
    handin::Outbox &handIns() { return *m_handIns; }

private:
    void closeWindows();

    std::unique_ptr<platform::Host> m_host;
    platform::HostScope m_hostScope;
    Content m_content;
    std::unique_ptr<NotepadState> m_notepad;
    Background m_background;
    std::unique_ptr<recovery::Store> m_recovery;
    std::unique_ptr<TextZoom> m_textZoom;
    std::unique_ptr<speech::ReadAloud> m_readAloud;
    std::unique_ptr<media::Engines> m_mediaEngines;
    std::unique_ptr<spelling::Service> m_spelling;
    std::unique_ptr<handin::Outbox> m_handIns;
    QHash<int, WindowFactory> m_windowFactories;
    QHash<int, QPointer<QWidget>> m_windows;
    QList<QPointer<QWidget>> m_adopted;
    QHash<int, ViewerFactory> m_viewerFactories;
    Links m_links;
};

// Centres `form` in the main shell's client area and shows it modelessly, as a child
// window of the shell. The left and top are computed in twips, unrounded, and may be
// negative for a form larger than the shell. Creates the shell if there is none.
void CenterAndShow(Session &session, QWidget *form);

// Stops the program at once, running no further unload handlers: the way the start
// screen's exit button, the toolbar's exit key and a failed start end it.
void End(Session &session);
