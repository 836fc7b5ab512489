#pragma once

#include <QStringList>

namespace media {
class Engines;
}

// Each command takes its arguments (after the command's name) and returns the exit status:
// 0 success, 1 bad input (with a one-line message on stderr), other values as documented.
namespace commands {

int import(const QStringList &args); // import SOURCE DEST.sqlite
int tables(const QStringList &args); // tables FILE
int query(const QStringList &args); // query FILE SQL
int rtfText(const QStringList &args); // rtf-text FILE.rtf
int rtfRuns(const QStringList &args); // rtf-runs FILE.rtf
int rtfRewrite(const QStringList &args); // rtf-rewrite IN.rtf OUT.rtf
int hotwords(const QStringList &args); // hotwords FILE RESOURCEID
int check(const QStringList &args, media::Engines &engines); // check FILE
int search(const QStringList &args); // search FILE [--type N] [--author TEXT] ... (see usage)
int index(const QStringList &args); // index FILE [TYPE]
int fulltext(const QStringList &args); // fulltext FILE QUERY...
int picture(const QStringList &args); // picture IN OUT.png
int media(const QStringList &args, media::Engines &engines); // media FILE

// Why the viewers would not show the picture, or the player would not play the file;
// empty when they would.
QString showProblem(const QString &path);
QString playProblem(media::Engines &engines, const QString &path);

// Writes "tremidia-content: <message>" on stderr and returns 1.
int fail(const QString &message);

} // namespace commands
