#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

// Runs another program to its end, for tests that check what a user or a technician sees
// of the program's commands.
struct ProcessRun
{
    int exitCode = -1; // -1 when it crashed, could not start or ran out of time
    QByteArray out;
    QByteArray err;

    bool ok() const { return exitCode == 0; }
    QByteArray all() const { return out + err; }
};

inline ProcessRun finishProcess(QProcess &p, int timeoutMs = 120000)
{
    if (!p.waitForFinished(timeoutMs)) {
        p.kill();
        p.waitForFinished();
        return ProcessRun {-1, p.readAllStandardOutput(), p.readAllStandardError() + "\n(ran out of time)"};
    }
    return ProcessRun {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, p.readAllStandardOutput(),
        p.readAllStandardError()};
}

inline ProcessRun runProcess(const QString &program, const QStringList &args,
    const QProcessEnvironment &env = QProcessEnvironment::systemEnvironment(), int timeoutMs = 120000,
    const QString &workingDirectory = QString())
{
    QProcess p;
    p.setProcessEnvironment(env);
    if (!workingDirectory.isEmpty())
        p.setWorkingDirectory(workingDirectory);
    p.start(program, args);
    return finishProcess(p, timeoutMs);
}
