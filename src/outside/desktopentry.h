#pragma once

#include <QString>
#include <QStringList>

// Just enough of the freedesktop.org desktop entry format to start the program that an
// entry describes: find the entry, read its Exec key, split it into an argument vector.
namespace outside {

// The file of a desktop entry id such as "thunderbird.desktop", looked up in the
// "applications" folders of $XDG_DATA_HOME and $XDG_DATA_DIRS (an id "a-b.desktop" may
// also live as "a/b.desktop"). Empty when there is none.
QString findDesktopEntry(const QString &desktopId);

// The value of Exec in the [Desktop Entry] group, with the format's string escapes
// undone; empty when the file or the key is missing.
QString desktopEntryExec(const QString &desktopFile);

// Splits an Exec value into program and arguments: blanks separate, double quotes
// group, and inside quotes a backslash escapes '"', '`', '$' and '\'. The field codes
// (%u, %U, %f, %F, %i, %c, %k and the deprecated ones) stand for what a launcher hands
// over; nothing is handed over here, so they go, and "%%" is a plain "%".
QStringList splitExec(const QString &exec);

} // namespace outside
