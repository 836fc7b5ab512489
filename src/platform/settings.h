#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace platform {

// The one setting of the program: which content database this machine presents.
// It lives in the INI file tremidia/tremidia.conf, looked up through the XDG config
// folders (the user's first, then the system's), in the group "Επιλεγμένη Βάση",
// whose first key is the title of the database and its value the path of its file.
struct SelectedDatabase
{
    QString title;
    QString path;
    QString settingsFile; // the file it came from; empty when none was found
};

inline constexpr QStringView SettingsRelativePath = u"tremidia/tremidia.conf";
inline constexpr QStringView SelectedDatabaseGroup = u"Επιλεγμένη Βάση";

// The candidate files, in the order they are tried.
QStringList settingsSearchPath();

// Reads the first candidate that holds an entry in the group. A machine without one
// gives empty strings, and the open of the empty path is what then fails.
SelectedDatabase readSelectedDatabase();

// Reads one INI file (UTF-8). Lines: "[group]", "key=value", ";" or "#" comments.
SelectedDatabase readSelectedDatabaseFrom(const QString &iniFile);

// One group of the settings file, its keys and values in the file's order. The first
// candidate of settingsSearchPath() that has the group gives it; `settingsFile` tells which.
struct SettingsGroup
{
    QList<QPair<QString, QString>> entries;
    QString settingsFile; // empty when no candidate has the group
    QString value(const QString &key) const; // empty when the key is not there
};
SettingsGroup readSettingsGroup(const QString &group);
SettingsGroup readSettingsGroupFrom(const QString &iniFile, const QString &group);

// The pupil's own choices that the program remembers (reading speed, spell checking, the
// name and class a hand-in is signed with): $XDG_CONFIG_HOME/tremidia/user.conf, or
// ~/.config/tremidia/user.conf. A file of its own, written through QSettings' INI format
// with ASCII groups and keys, so that it never touches the hand-written settings file.
QString userSettingsPath();

} // namespace platform
