#pragma once

// The texts of the message boxes a test session showed, in order.

#include "../support/recordinghost.h"

#include <QStringList>

namespace testing {

inline QStringList boxTexts(const RecordingHost &host)
{
    QStringList texts;
    for (const ShownBox &box : host.boxes)
        texts << box.text;
    return texts;
}

} // namespace testing
