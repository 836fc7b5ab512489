#pragma once

// The warnings written while it lives, kept instead of printed: each as its logging
// category, a space, and its message. Warnings of any thread (an index built in the
// background) are kept.

#include <QMutex>
#include <QStringList>
#include <QtGlobal>

namespace testing {

class WarningLog
{
public:
    WarningLog()
    {
        QMutexLocker lock(&state().mutex);
        state().lines.clear();
        m_previous = qInstallMessageHandler(&record);
    }
    ~WarningLog() { qInstallMessageHandler(m_previous); }
    Q_DISABLE_COPY_MOVE(WarningLog)

    QStringList lines() const
    {
        QMutexLocker lock(&state().mutex);
        return state().lines;
    }

private:
    struct State
    {
        QMutex mutex;
        QStringList lines;
    };
    static State &state()
    {
        static State s;
        return s;
    }
    static void record(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (type != QtWarningMsg)
            return;
        QMutexLocker lock(&state().mutex);
        state().lines << QString::fromUtf8(context.category ? context.category : "default") + u' ' + message;
    }

    QtMessageHandler m_previous = nullptr;
};

} // namespace testing
