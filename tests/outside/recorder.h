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

// Makes `home` the whole XDG desktop (config and data), with `client` as the default
// mailto handler through a desktop entry; `client` records its arguments to `argvFile`.
inline bool registerMailClient(const QString &home, const QString &client, const QString &argvFile)
{
    for (const char *name : {"XDG_CONFIG_DIRS", "XDG_DATA_DIRS"})
        qputenv(name, (home + QStringLiteral("/none")).toUtf8());
    qputenv("XDG_CONFIG_HOME", home.toUtf8());
    qputenv("XDG_DATA_HOME", home.toUtf8());
    qunsetenv("XDG_CURRENT_DESKTOP");
    if (!writeRecorder(client, argvFile))
        return false;
    QFile list(home + QStringLiteral("/mimeapps.list"));
    if (!list.open(QIODevice::WriteOnly))
        return false;
    list.write("[Default Applications]\nx-scheme-handler/mailto=testmail.desktop\n");
    list.close();
    QDir().mkpath(home + QStringLiteral("/applications"));
    QFile entry(home + QStringLiteral("/applications/testmail.desktop"));
    if (!entry.open(QIODevice::WriteOnly))
        return false;
    entry.write(QStringLiteral("[Desktop Entry]\nType=Application\nName=Mail\nExec=\"%1\" %u\n")
                    .arg(client)
                    .toUtf8());
    return true;
}

} // namespace testing
