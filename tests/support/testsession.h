#pragma once

// A session for a test, with a recording host: `session.host` is what the program showed
// and started, and what the test answered.

#include "recordinghost.h"

#include <session.h>

#include <memory>

namespace testing {

struct TestSession
{
    RecordingHost *const host;
    std::unique_ptr<Session> session;

    TestSession()
        : TestSession(std::make_unique<RecordingHost>())
    {
    }

    operator Session &() { return *session; }
    Session *operator->() { return session.get(); }

private:
    explicit TestSession(std::unique_ptr<RecordingHost> recording)
        : host(recording.get())
        , session(std::make_unique<Session>(std::move(recording)))
    {
    }
};

} // namespace testing
