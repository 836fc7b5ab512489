#include "launch.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace platform {

LaunchResult launchDetached(
    const QString &program, const QStringList &arguments, const QString &workingDirectory)
{
    LaunchResult result;
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    if (!workingDirectory.isEmpty())
        process.setWorkingDirectory(workingDirectory);
    process.setStandardInputFile(QProcess::nullDevice());
    result.started = process.startDetached(&result.pid);
    if (!result.started)
        result.error = QStringLiteral("Δεν είναι δυνατή η εκκίνηση του προγράμματος «%1»").arg(program);
    return result;
}

QString findProgram(const QString &nameOrPath)
{
    if (nameOrPath.contains(u'/')) {
        const QFileInfo info(nameOrPath);
        return info.isFile() && info.isExecutable() ? info.absoluteFilePath() : QString();
    }
    return QStandardPaths::findExecutable(nameOrPath);
}

QString wordProcessorProgram()
{
    for (const QString &name : {QStringLiteral("soffice"), QStringLiteral("libreoffice")}) {
        const QString found = findProgram(name);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

QString applicationFolder()
{
    return QCoreApplication::applicationDirPath();
}

} // namespace platform
