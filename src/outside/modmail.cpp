#include "modmail.h"

#include "desktopentry.h"

#include <host.h>
#include <launch.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTextStream>

namespace modMail {

namespace {

const QString MailtoType = QStringLiteral("x-scheme-handler/mailto");

// xdg-mime knows how each desktop keeps its choice of default applications, so it is
// asked first; the plain mimeapps.list lookup covers a machine without xdg-utils.
QString handlerFromXdgMime()
{
    const QString xdgMime = platform::findProgram(QStringLiteral("xdg-mime"));
    if (xdgMime.isEmpty())
        return {};
    QProcess query;
    query.setStandardInputFile(QProcess::nullDevice());
    query.start(xdgMime, {QStringLiteral("query"), QStringLiteral("default"), MailtoType});
    if (!query.waitForFinished(5000)) {
        query.kill();
        query.waitForFinished(1000);
        return {};
    }
    if (query.exitStatus() != QProcess::NormalExit || query.exitCode() != 0)
        return {};
    const QString out = QString::fromUtf8(query.readAllStandardOutput()).trimmed();
    return out.section(u'\n', 0, 0).section(u';', 0, 0).trimmed();
}

QString handlerFromMimeappsList()
{
    QStringList dirs;
    QString configHome = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (configHome.isEmpty())
        configHome = QDir::homePath() + QStringLiteral("/.config");
    dirs << configHome;
    QString configDirs = qEnvironmentVariable("XDG_CONFIG_DIRS");
    if (configDirs.isEmpty())
        configDirs = QStringLiteral("/etc/xdg");
    dirs << configDirs.split(u':', Qt::SkipEmptyParts);
    QString dataHome = qEnvironmentVariable("XDG_DATA_HOME");
    if (dataHome.isEmpty())
        dataHome = QDir::homePath() + QStringLiteral("/.local/share");
    QString dataDirs = qEnvironmentVariable("XDG_DATA_DIRS");
    if (dataDirs.isEmpty())
        dataDirs = QStringLiteral("/usr/local/share/:/usr/share/");
    for (const QString &d : QStringList {dataHome} + dataDirs.split(u':', Qt::SkipEmptyParts))
        dirs << d + QStringLiteral("/applications");

    for (const QString &dir : std::as_const(dirs)) {
        QFile file(dir + QStringLiteral("/mimeapps.list"));
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            continue;
        QTextStream in(&file);
        bool inDefaults = false;
        while (!in.atEnd()) {
            const QString line = in.readLine().trimmed();
            if (line.startsWith(u'[')) {
                inDefaults = line == QStringLiteral("[Default Applications]");
                continue;
            }
            if (inDefaults && line.startsWith(MailtoType + u'=')) {
                const QString id = line.mid(MailtoType.size() + 1).section(u';', 0, 0).trimmed();
                if (!id.isEmpty())
                    return id;
            }
        }
    }
    return {};
}

} // namespace

bool StartMailClient(platform::Host &host)
{
    QString desktopId = handlerFromXdgMime();
    if (desktopId.isEmpty())
        desktopId = handlerFromMimeappsList();
    if (desktopId.isEmpty())
        return false;

    const QString entry = outside::findDesktopEntry(desktopId);
    if (entry.isEmpty())
        return false;
    QStringList argv = outside::splitExec(outside::desktopEntryExec(entry));
    if (argv.isEmpty())
        return false;

    // The client opens as the user starts it from the menu: no address, no message.
    const QString program = argv.takeFirst();
    const platform::LaunchResult started = host.launch(program, argv, {});
    return started.started && started.pid != 0;
}

} // namespace modMail
