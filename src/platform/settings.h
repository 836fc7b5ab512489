#pragma once

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

} // namespace platform
