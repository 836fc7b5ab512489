#pragma once

#include <QString>

// Content paths are built, as the content expects, by joining the data folder, a folder
// literal such as "\piges\" and a file name out of the database. The literals and the
// names were written for a file system that ignores case and uses backslashes; these
// helpers make such a path usable here.
namespace platform {

// Joins the pieces as plain text, then turns backslashes into "/", folds doubled
// separators and resolves every component case-insensitively against what is on disk.
// Components that do not exist are kept as written, so the result can still be tested
// with fileExists() and gives a readable path in messages.
QString contentPath(const QString &dataFolder, const QString &literal, const QString &fileName);

// The same resolution for a path that is already joined.
QString resolvePath(const QString &path);

// Scripting.FileSystemObject stand-ins.
QString parentFolderName(const QString &path); // "" for a bare file name
QString buildPath(const QString &folder, const QString &name);
bool fileExists(const QString &path); // a regular file, resolved case-insensitively

} // namespace platform
