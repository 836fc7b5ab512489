#pragma once

#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>

// The one way the program works in the background: a job runs on a thread of a pool
// the session owns, sees a cancel flag, and its result comes back to the interface
// thread by a queued call, to a context object that must still live. The session cancels
// every job first when it ends, and waits for them a bounded time.
class Background
{
public:
    using CancelFlag = std::shared_ptr<const std::atomic_bool>;

    Background();
    ~Background();
    Background(const Background &) = delete;
    Background &operator=(const Background &) = delete;

    // Runs `job(cancelled)` on a pool thread; then `done(result)` on `context`'s thread,
    // unless the job was cancelled or `context` has gone. Returns the job's flag, which
    // cancel() raises.
    template<typename Result>
    CancelFlag run(QObject *context, std::function<Result(const std::atomic_bool &cancelled)> job,
        std::function<void(Result)> done)
    {
        auto cancelled = newFlag();
        QPointer<QObject> target(context);
        start([cancelled, target, job = std::move(job), done = std::move(done)]() mutable {
            Result result = job(*cancelled);
            if (*cancelled || !target)
                return;
            QMetaObject::invokeMethod(
                target.data(),
                [cancelled, target, done = std::move(done), result = std::move(result)]() mutable {
                    if (!*cancelled && target)
                        done(std::move(result));
                },
                Qt::QueuedConnection);
        });
        return cancelled;
    }

    // Raises one job's flag; its result is dropped.
    static void cancel(const CancelFlag &flag);
    // Raises every job's flag.
    void cancelAll();
    // Waits up to `milliseconds` for the jobs under way; true when none is left.
    bool waitForDone(int milliseconds);
    int running() const;

private:
    std::shared_ptr<std::atomic_bool> newFlag();
    void start(std::function<void()> job);

    QThreadPool m_pool;
    QList<std::weak_ptr<std::atomic_bool>> m_flags;
};
