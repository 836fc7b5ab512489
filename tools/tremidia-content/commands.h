#pragma once

#include <QStringList>
#include <QStringView>

#include <span>

namespace media {
class Engines;
}

// Each command takes its arguments (after the command's name) and returns the exit status:
// 0 success, 1 bad input (with a one-line message on stderr), other values as documented.
// Their names and arguments are in the table below (commandtable.cpp).
namespace commands {

int import(const QStringList &args);
int tables(const QStringList &args);
int query(const QStringList &args);
int rtfText(const QStringList &args);
int rtfRuns(const QStringList &args);
int rtfRewrite(const QStringList &args);
int hotwords(const QStringList &args);
int check(const QStringList &args, media::Engines &engines);
int search(const QStringList &args);
int index(const QStringList &args);
int fulltext(const QStringList &args);
int spell(const QStringList &args);
int picture(const QStringList &args);
int media(const QStringList &args, media::Engines &engines);
int readAloud(const QStringList &args);
int handins(const QStringList &args);

// One command of the tool. The table is the one list of them: the tool runs a command and
// writes its usage from it, and a test holds the README and the manual page to it.
struct Command
{
    QStringView name;
    QStringView arguments; // as the usage line shows them after the name
    QStringView help;      // what it does and prints, in the usage text; lines split by \n
    // The players' engines are the tool's, for the commands that play.
    int (*run)(const QStringList &args, media::Engines &engines);
};

std::span<const Command> table();

// The command of that name, or null.
const Command *find(QStringView name);

// The usage text, every command of the table in its order.
QString usage();

// Why the viewers would not show the picture, or the player would not play the file;
// empty when they would.
QString showProblem(const QString &path);
QString playProblem(media::Engines &engines, const QString &path);

// Writes "tremidia-content: <message>" on stderr and returns 1.
int fail(const QString &message);

} // namespace commands
