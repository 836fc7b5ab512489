#pragma once

#include <latethreads.h>

#include <QList>
#include <QString>

#include <chrono>
#include <memory>

namespace media {

namespace engine {
struct Mailbox;
}

// The owner of the engines' threads (engine.h): one per session, handed to every player
// it makes. A pipeline stops on its own thread after its player has dropped it, so the
// threads outlive their players; each ended thread is joined at the next start, and
// stop() drops the engines still running and waits for them a bounded time.
//
// A pipeline stuck inside GStreamer (a file that never answers: a pipe nobody writes to,
// a hung network folder) cannot be stopped by any call. Its thread is handed to the late
// threads' owner, which outlives the session and joins it once GStreamer lets it go; the
// end of the process decides how long to wait for it (LateThreads::finish). No thread is
// ever detached.
class Engines final
{
public:
    // What the end of the owner waits for the engines still stopping, all together.
    static constexpr int StopWaitMs = 400;

    explicit Engines(platform::LateThreads &late);
    ~Engines();
    Engines(const Engines &) = delete;
    Engines &operator=(const Engines &) = delete;

    // Starts the engine for `file` on a thread of its own; it runs until the mailbox is
    // dropped (engine::drop).
    std::shared_ptr<engine::Mailbox> start(const QString &file, bool silent);

    // Drops every engine, and waits up to `limit` for all of them to end; the ones still
    // stuck then go to the late threads. True when every one had ended.
    bool stop(std::chrono::milliseconds limit);

    // Waits up to `limit` for the engines already dropped to end; true when none is left.
    bool waitForDropped(std::chrono::milliseconds limit);

    // The engines' threads not joined yet.
    int threads();

private:
    platform::LateThreads &m_late;
    platform::LateThreads m_threads; // every engine's, joined once ended
    QList<std::weak_ptr<engine::Mailbox>> m_mailboxes; // as long as their players hold them
};

} // namespace media
