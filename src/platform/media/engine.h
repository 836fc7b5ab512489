#pragma once

#include "failure.h"

#include <QImage>
#include <QString>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

// The thread that owns one GStreamer pipeline. The player only leaves it orders and picks
// up its news, under a lock that guards plain data and is never held while GStreamer
// runs; so whatever GStreamer's threads do, and however long a pipeline takes to stop,
// the interface thread is never held up. A player that is done with a pipeline drops it:
// the engine stops it on its own thread and ends. The threads belong to `Engines`.
namespace media::engine {

struct Order
{
    enum Kind { Play, Pause, Seek } kind;
    qint64 ms = 0;
};

struct News
{
    enum Kind { Loaded, Duration, Position, EndOfStream, Error } kind;
    qint64 ms = 0;
    bool video = false;
    Failure failure = Failure::None; // GStreamer's own words went to the log
};

struct Mailbox
{
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<Order> orders;
    bool dropped = false;
    std::vector<News> news;
    QImage frame;
    bool newFrame = false;
};

// Runs the engine for `file` on the calling thread (one of Engines' threads) until the
// mailbox is dropped, then stops its pipeline.
void run(const std::shared_ptr<Mailbox> &mailbox, const QString &file, bool silent);

// Orders the engine to stop and forgets it.
void drop(std::shared_ptr<Mailbox> &mailbox);

} // namespace media::engine
