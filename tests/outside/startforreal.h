#pragma once

#include "../support/recordinghost.h"

namespace testing {

// A recording host that also starts each program it records, as the desktop does, so
// that a test sees what a real program receives.
inline void startForReal(RecordingHost &host)
{
    host.onLaunch = [](const Launch &launch) {
        return platform::DesktopHost().launch(launch.program, launch.arguments, launch.workingDirectory);
    };
}

} // namespace testing
