#include "commands.h"

#include <array>

namespace commands {

namespace {

// A command that plays nothing.
template<int (*Run)(const QStringList &)> int plain(const QStringList &args, media::Engines &)
{
    return Run(args);
}

// The usage text's column of what each command does.
constexpr qsizetype HelpColumn = 30;

constexpr std::array<Command, 16> Commands {{
    {u"import", u"SOURCE DEST.sqlite", u"convert a Jet or SQLite content file to SQLite", plain<import>},
    {u"tables", u"FILE", u"user tables and their row counts", plain<tables>},
    {u"query", u"FILE SQL", u"run SQL, print the rows as TSV", plain<query>},
    {u"rtf-text", u"FILE.rtf", u"plain text of an RTF file", plain<rtfText>},
    {u"rtf-runs", u"FILE.rtf", u"formatting runs of an RTF file, as JSON lines", plain<rtfRuns>},
    {u"rtf-rewrite", u"IN.rtf OUT.rtf", u"open a file as the notepad does, save it as the notepad does",
        plain<rtfRewrite>},
    {u"hotwords", u"FILE RESOURCEID", u"the hot words of a text source, located", plain<hotwords>},
    {u"check", u"FILE",
        u"audit the content files (that each picture shows\n"
        u"and each sound or video plays) and hot words",
        check},
    {u"search", u"FILE [--type N] [--author TEXT] [--museum TEXT] [--keyword N] [--time N] [--place N]",
        u"the search window's list for those criteria:\n"
        u"icon, tab, text, tab, tag",
        plain<search>},
    {u"index", u"FILE [TYPE]",
        u"the index's list for a type (0 or none: all):\n"
        u"EuretirioID, tab, Oros",
        plain<index>},
    {u"fulltext", u"FILE QUERY...",
        u"the sources whose words match the query, best first:\n"
        u"ResourceID, tab, ResTypeID, tab, title",
        plain<fulltext>},
    {u"spell", u"FILE",
        u"the misspelt Greek words of an RTF or UTF-8 text file\n"
        u"(- reads standard input): offset in UTF-16 units of\n"
        u"the plain text, tab, word, tab, suggestions by commas",
        plain<spell>},
    {u"picture", u"IN OUT.png", u"draw a picture as the viewers do, into a PNG", plain<picture>},
    {u"media", u"FILE",
        u"whether the player plays a sound or video:\n"
        u"duration in ms, tab, video or audio",
        media},
    {u"read-aloud", u"FILE.rtf [--rate PERCENT]",
        u"read a text aloud as the program does (speed 50-250 %);\n"
        u"as each word is said: index, tab, ms since the start, tab, word",
        plain<readAloud>},
    {u"handins", u"FOLDER [--pdf OUT.pdf] [--activity ID]",
        u"the bundles handed in, by class, pupil and time:\n"
        u"class, tab, pupil, tab, activity, tab, time, tab,\n"
        u"number of files, tab, ok or damaged;\n"
        u"--pdf: one PDF to read and mark instead",
        plain<handins>},
}};

} // namespace

std::span<const Command> table()
{
    return Commands;
}

const Command *find(QStringView name)
{
    for (const Command &command : Commands) {
        if (command.name == name)
            return &command;
    }
    return nullptr;
}

QString usage()
{
    QString text = QStringLiteral("usage: tremidia-content COMMAND ARGS\n");
    const QString indent(HelpColumn, u' ');
    for (const Command &command : Commands) {
        // A synopsis too long for its column stands on a line of its own.
        QString line = QStringLiteral("  %1 %2").arg(command.name, command.arguments);
        if (line.size() + 2 > HelpColumn)
            line += u'\n' + indent;
        else
            line = line.leftJustified(HelpColumn);
        text += line + command.help.toString().replace(u'\n', u'\n' + indent) + u'\n';
    }
    return text;
}

} // namespace commands
