#pragma once

// Stands in for the user in front of the program's message boxes: records each box the
// program would show and answers it, from `answers` in turn, then OK.

#include "recordinghost.h"

#include <msgbox.h>

#include <QList>
#include <QString>

namespace testing {

class MsgBoxRecorder : public QList<ShownBox>
{
public:
    // The answers to give, first to last (platform::vbCancel, vbYes, ...).
    QList<int> answers;

    // Forgets what was recorded and takes the place of the dialogs.
    void install()
    {
        clear();
        answers.clear();
        platform::setMsgBoxHook([this](const QString &text, int style, const QString &title) {
            append({text, style, title});
            return answers.isEmpty() ? int(platform::vbOK) : answers.takeFirst();
        });
    }
};

} // namespace testing
