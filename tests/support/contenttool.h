#pragma once

// Runs the built content tool as a maintainer would and collects what it printed.

#include <QProcess>
#include <QString>
#include <QStringList>

namespace testing {

struct ToolRun
{
    int exitCode = -1;
    QStringList lines; // stdout as UTF-8, one entry a line, empty lines left out
    QString errors; // stderr as UTF-8
};

inline ToolRun contentTool(const QStringList &args, int timeoutMs = 120000)
{
    QProcess process;
    process.start(QStringLiteral(TREMIDIA_BINARY_DIR "/bin/tremidia-content"), args);
    process.waitForFinished(timeoutMs);
    ToolRun run;
    run.exitCode = process.exitCode();
    run.lines = QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    run.errors = QString::fromUtf8(process.readAllStandardError());
    return run;
}

} // namespace testing
