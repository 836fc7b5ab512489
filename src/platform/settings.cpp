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

SettingsGroup readSettingsGroupFrom(const QString &iniFile, const QString &group)
{
    SettingsGroup result;
    QFile file(iniFile);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return result;

    bool inGroup = false;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (QString line : lines) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(u';') || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[') && line.endsWith(u']')) {
            inGroup = line.mid(1, line.size() - 2).trimmed() == group;
            if (inGroup)
                result.settingsFile = QFileInfo(iniFile).absoluteFilePath();
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
        result.entries.append({line.left(eq).trimmed(), value});
    }
    return result;
}

SettingsGroup readSettingsGroup(const QString &group)
{
    for (const QString &candidate : settingsSearchPath()) {
        SettingsGroup found = readSettingsGroupFrom(candidate, group);
        if (!found.settingsFile.isEmpty())
            return found;
    }
    return {};
}

QString SettingsGroup::value(const QString &key) const
{
    for (const auto &[k, v] : entries)
        if (k == key)
            return v;
    return {};
}

SelectedDatabase readSelectedDatabaseFrom(const QString &iniFile)
{
    SelectedDatabase result;
    const SettingsGroup group = readSettingsGroupFrom(iniFile, SelectedDatabaseGroup.toString());
    if (group.entries.isEmpty())
        return result;
    result.title = group.entries.first().first;
    result.path = group.entries.first().second;
    result.settingsFile = group.settingsFile;
    return result;
}

QString userSettingsPath()
{
    return QDir(envOr("XDG_CONFIG_HOME", QDir::homePath() + QStringLiteral("/.config")))
        .filePath(QStringLiteral("tremidia/user.conf"));
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
