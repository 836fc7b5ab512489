#pragma once

#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>

// A stand-in for an outside program: a shell script that writes the arguments it was
// given, one a line, to a file beside it, so a test can read what really arrived.
namespace testing {

inline bool writeRecorder(const QString &scriptPath, const QString &argvFile)
{
    QDir().mkpath(QFileInfo(scriptPath).absolutePath());
    QFile script(scriptPath);
    if (!script.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    QString quotedOut = argvFile;
    quotedOut.replace(QStringLiteral("'"), QStringLiteral("'\\''"));
    const QString body = QStringLiteral("#!/bin/sh\n"
                                        "out='%1'\n"
                                        "printf '%s\\n' \"$#\" > \"$out.tmp\"\n"
                                        "for a in \"$@\"; do printf '%s\\n' \"$a\" >> \"$out.tmp\"; done\n"
                                        "mv \"$out.tmp\" \"$out\"\n")
                             .arg(quotedOut);
    script.write(body.toUtf8());
    script.close();
    return script.setPermissions(script.permissions() | QFileDevice::ExeOwner | QFileDevice::ExeUser);
}

// The arguments recorded: the count on the first line, then one per line.
inline QStringList readRecorded(const QString &argvFile)
{
    QFile file(argvFile);
    if (!file.open(QIODevice::ReadOnly))
        return {QStringLiteral("<nothing recorded>")};
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    if (lines.isEmpty())
        return {};
    lines.removeFirst();
    return lines;
}

} // namespace testing
