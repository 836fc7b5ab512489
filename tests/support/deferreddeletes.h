#pragma once

#include <QCoreApplication>
#include <QEvent>

namespace testing {

// Deletes what closing windows left for later (frames, then what they held), as the
// event loop would between two user actions.
inline void flushDeletes()
{
    for (int i = 0; i < 3; ++i)
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace testing
