#pragma once

// A session for a test, with a recording host: `session.host` is what the program showed
// and started, and what the test answered.

#include "recordinghost.h"

#include <latethreads.h>
#include <session.h>

#include <memory>

namespace testing {

struct TestSession
{
    // Outlives the session: the threads it could not stop in time are joined here.
    platform::LateThreads late;
    RecordingHost *const host;
    std::unique_ptr<Session> session;

    explicit TestSession(Session::Services services = {})
        : TestSession(std::make_unique<RecordingHost>(), std::move(services))
    {
    }

    operator Session &() { return *session; }
    Session *operator->() { return session.get(); }

private:
    TestSession(std::unique_ptr<RecordingHost> recording, Session::Services services)
        : host(recording.get())
        , session(std::make_unique<Session>(std::move(recording), late, std::move(services)))
    {
    }
};

} // namespace testing
