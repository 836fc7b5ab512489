#include "settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace platform {

namespace {

QString envOr(const char *name, const QString &fallback)
{
    const QString value = qEnvironmentVariable(name);
    return value.isEmpty() ? fallback : value;
}

} // namespace

QStringList settingsSearchPath()
{
    QStringList dirs;
    dirs << envOr("XDG_CONFIG_HOME", QDir::homePath() + QStringLiteral("/.config"));
    const QString system = envOr("XDG_CONFIG_DIRS", QStringLiteral("/etc/xdg"));
    for (const QString &dir : system.split(u':', Qt::SkipEmptyParts))
        dirs << dir;

    QStringList files;
    for (const QString &dir : std::as_const(dirs))
        files << QDir(dir).filePath(SettingsRelativePath.toString());
    return files;
}

SelectedDatabase readSelectedDatabaseFrom(const QString &iniFile)
{
    SelectedDatabase result;
    QFile file(iniFile);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return result;

    const QString wanted = SelectedDatabaseGroup.toString();
    bool inGroup = false;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (QString line : lines) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(u';') || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[') && line.endsWith(u']')) {
            inGroup = line.mid(1, line.size() - 2).trimmed() == wanted;
            continue;
        }
        if (!inGroup)
            continue;
        const qsizetype eq = line.indexOf(u'=');
        if (eq <= 0)
            continue;
        QString value = line.mid(eq + 1).trimmed();
        if (value.size() >= 2 && value.startsWith(u'"') && value.endsWith(u'"'))
            value = value.mid(1, value.size() - 2);
        result.title = line.left(eq).trimmed();
        result.path = value;
        result.settingsFile = QFileInfo(iniFile).absoluteFilePath();
        return result;
    }
    return result;
}

SelectedDatabase readSelectedDatabase()
{
    for (const QString &candidate : settingsSearchPath()) {
        SelectedDatabase found = readSelectedDatabaseFrom(candidate);
        if (!found.settingsFile.isEmpty())
            return found;
    }
    return {};
}

} // namespace platform
