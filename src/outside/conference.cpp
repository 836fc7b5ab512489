#include "conference.h"

#include <contentpath.h>
#include <host.h>
#include <launch.h>
#include <runtimeerror.h>

#include <QDir>
#include <QFileInfo>

namespace outside {

namespace {

// An entry of `folder` by name, case ignored; exact names win. Only the part below the
// program's folder is matched, so the folder itself is taken exactly as it is.
QString entryIn(const QString &folder, const QString &name)
{
    const QDir dir(folder);
    if (QFileInfo::exists(dir.filePath(name)))
        return dir.filePath(name);
    const QStringList entries = dir.entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    for (const QString &entry : entries) {
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return dir.filePath(entry);
    }
    return dir.filePath(name);
}

} // namespace

QString conferenceProgram(const QString &programFolder)
{
    const QString network = entryIn(programFolder, QStringLiteral("Network"));
    const QString withExtension = entryIn(network, QStringLiteral("conference.exe"));
    if (QFileInfo(withExtension).isFile())
        return withExtension;
    const QString bare = entryIn(network, QStringLiteral("conference"));
    if (QFileInfo(bare).isFile())
        return bare;
    return withExtension;
}

void StartConference(platform::Host &host, const QString &programFolder)
{
    const QString program = conferenceProgram(programFolder);
    if (!QFileInfo(program).isFile())
        throw platform::RuntimeError(platform::errors::FileNotFound, QStringLiteral("Το αρχείο δεν βρέθηκε"));
    const platform::LaunchResult started
        = host.launch(program, {}, QFileInfo(program).absolutePath());
    if (!started.started)
        throw platform::RuntimeError(platform::errors::FileNotFound, started.error);
}

void StartConference(platform::Host &host)
{
    StartConference(host, platform::applicationFolder());
}

} // namespace outside
