#pragma once

// The content tool's commands as each of its documents lists them: the usage text the tool
// prints, the README's table and the manual page. A command is its name and the arguments
// its synopsis shows.

#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

namespace testing {

struct ListedCommand
{
    QString name;
    QString arguments;
    bool operator==(const ListedCommand &) const = default;
};

inline ListedCommand listedCommand(const QString &synopsis)
{
    const QString text = synopsis.trimmed();
    const qsizetype blank = text.indexOf(u' ');
    if (blank < 0)
        return {text, {}};
    return {text.left(blank), text.mid(blank + 1).trimmed()};
}

// "  name ARGS   what it does": a synopsis is indented by two blanks and ends at two
// blanks or the line's end; the lines of what a command does are indented further.
inline QList<ListedCommand> commandsInUsage(const QString &usage)
{
    QList<ListedCommand> listed;
    const QStringList lines = usage.split(u'\n');
    for (const QString &line : lines) {
        if (!line.startsWith(QLatin1String("  ")) || line.size() < 3 || line.at(2) == u' ')
            continue;
        const QString rest = line.mid(2);
        const qsizetype end = rest.indexOf(QLatin1String("  "));
        listed << listedCommand(end < 0 ? rest : rest.left(end));
    }
    return listed;
}

// The rows of the table below "## The content tool": "| `name ARGS` | what it does |".
inline QList<ListedCommand> commandsInReadme(const QString &readme)
{
    QList<ListedCommand> listed;
    const qsizetype start = readme.indexOf(QLatin1String("\n## The content tool\n"));
    if (start < 0)
        return listed;
    qsizetype end = readme.indexOf(QLatin1String("\n## "), start + 1);
    if (end < 0)
        end = readme.size();
    static const QRegularExpression row(QStringLiteral("^\\| `([^`]+)` \\|"), QRegularExpression::MultilineOption);
    auto rows = row.globalMatch(readme.mid(start, end - start));
    while (rows.hasNext())
        listed << listedCommand(rows.next().captured(1));
    return listed;
}

// The tagged paragraphs of the section COMMANDS: ".TP", then ".BI name \" ARGS\"".
inline QList<ListedCommand> commandsInManualPage(const QString &page)
{
    QList<ListedCommand> listed;
    bool inCommands = false;
    bool tagNext = false;
    const QStringList lines = page.split(u'\n');
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1String(".SH "))) {
            inCommands = line == QLatin1String(".SH COMMANDS");
            continue;
        }
        if (!inCommands)
            continue;
        if (line == QLatin1String(".TP")) {
            tagNext = true;
            continue;
        }
        if (!tagNext)
            continue;
        tagNext = false;
        QString tag = line;
        if (tag.startsWith(QLatin1String(".BI ")) || tag.startsWith(QLatin1String(".B ")))
            tag = tag.section(u' ', 1);
        tag.remove(u'"').replace(QLatin1String("\\-"), QLatin1String("-"));
        listed << listedCommand(tag);
    }
    return listed;
}

} // namespace testing
