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
// the engine stops it on its own thread and ends.
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

// Starts the engine for `file` on a thread of its own; it runs until the mailbox is dropped.
std::shared_ptr<Mailbox> start(const QString &file, bool silent);

// Orders the engine to stop and forgets it.
void drop(std::shared_ptr<Mailbox> &mailbox);

// Waits (up to `ms`) for the dropped engines to finish stopping; true when none is left.
bool waitForDropped(int ms);

// The most the end of the process waits for the engines still stopping, all together;
// an engine stuck inside GStreamer longer is left behind, and the process ends without it.
inline constexpr int ExitWaitMs = 1000;

} // namespace media::engine
