#pragma once

#include <QString>
#include <QStringList>


namespace platform {

// Starts an outside program with an argument vector (never through a shell, so paths
// with spaces, quotes or ";" arrive untouched) and does not wait for it.
struct LaunchResult
{
    bool started = false;
    qint64 pid = 0;
    QString error; // why it did not start, in words for the user
};

LaunchResult launchDetached(
    const QString &program, const QStringList &arguments, const QString &workingDirectory = {});

// A program by name on PATH, or by path; empty when there is none.
QString findProgram(const QString &nameOrPath);

// The word processor's program: soffice on PATH, else libreoffice; empty when neither.
QString wordProcessorProgram();

// The folder of the running program (what the original called App.Path).
QString applicationFolder();

} // namespace platform
