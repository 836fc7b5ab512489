#pragma once

#include <QList>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

class QThread;

namespace platform {

// The threads a service could not stop within its bound when the session ended: an
// engine stuck inside GStreamer (a file that never answers) or inside the speech service.
// No call can stop them, and a session that waited for them would keep a closing program
// on screen; so they are handed to this owner, which outlives the session (`main` keeps
// one until the process ends, a test keeps one beside its session) and joins each one
// once it has ended. Nothing is ever detached.
class LateThreads final
{
public:
    LateThreads();
    // Joins every thread it still keeps, however long they take: the owner decides
    // beforehand, through waitForAll(), whether to wait that long.
    ~LateThreads();
    LateThreads(const LateThreads &) = delete;
    LateThreads &operator=(const LateThreads &) = delete;

    // Takes a thread that raises `ended` as its last act.
    void keep(std::thread thread, std::shared_ptr<const std::atomic_bool> ended);
    // Takes a QThread, which is deleted once it has finished.
    void keep(std::unique_ptr<QThread> thread);

    // Joins the threads that have ended, waiting up to `limit` for the others; true when
    // none is left.
    bool waitForAll(std::chrono::milliseconds limit);
    // The threads kept and not joined yet.
    int count();
    // Hands every thread not joined yet to `owner`.
    void moveTo(LateThreads &owner);

    // The end of a process that keeps late threads: waits up to `limit` for them and
    // returns `code`. A thread still kept after that is inside a library (GStreamer, the
    // speech service) that no call can stop, and that library's teardown must not run
    // while its thread is still in it: the process then ends here with `code`, without
    // the static destructors (std::_Exit), and the system ends the thread with it.
    int finish(int code, std::chrono::milliseconds limit);

private:
    struct Entry
    {
        std::function<bool()> ended;
        std::function<void()> join;
    };

    void add(Entry entry);
    // Joins the ended ones; true when none is left.
    bool reap();

    std::mutex m_mutex;
    QList<Entry> m_entries;
};

} // namespace platform
