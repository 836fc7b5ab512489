#include "commands.h"

#include <database.h>
#include <indexterms.h>
#include <resourcesearch.h>
#include <runtimeerror.h>

#include <QTextStream>

namespace commands {

namespace {

QString errorText(const platform::RuntimeError &e)
{
    return QStringLiteral("%1 (%2)").arg(e.description()).arg(e.number());
}

bool isNumber(const QString &text)
{
    bool ok = false;
    text.toLong(&ok);
    return ok;
}

} // namespace

int search(const QStringList &args)
{
    const QString usageText = QStringLiteral("usage: search FILE [--type N] [--author TEXT] [--museum TEXT] "
                                             "[--keyword N] [--time N] [--place N]");
    if (args.isEmpty())
        return fail(usageText);
    finding::SearchCriteria criteria;
    for (qsizetype i = 1; i < args.size(); i += 2) {
        if (i + 1 >= args.size())
            return fail(usageText);
        const QString &option = args.at(i);
        const QString &value = args.at(i + 1);
        QString *numeric = nullptr;
        if (option == u"--type")
            numeric = &criteria.ResType;
        else if (option == u"--keyword")
            numeric = &criteria.KeyWord;
        else if (option == u"--time")
            numeric = &criteria.Time;
        else if (option == u"--place")
            numeric = &criteria.Place;
        else if (option == u"--author")
            criteria.Author = value;
        else if (option == u"--museum")
            criteria.Museum = value;
        else
            return fail(usageText);
        if (numeric) {
            if (!isNumber(value))
                return fail(QStringLiteral("%1 needs a number").arg(option));
            *numeric = QString::number(value.toLong());
        }
    }

    QTextStream out(stdout);
    out.setEncoding(QStringConverter::Utf8);
    try {
        const auto db = content::Database::OpenDatabase(args.at(0));
        const finding::SearchList list = finding::Search(*db, criteria);
        for (const finding::SearchListItem &item : list.items)
            out << item.icon << '\t' << item.text << '\t' << item.tag << '\n';
    } catch (const platform::RuntimeError &e) {
        out.flush();
        return fail(errorText(e));
    }
    return 0;
}

int index(const QStringList &args)
{
    if (args.isEmpty() || args.size() > 2 || (args.size() == 2 && !isNumber(args.at(1))))
        return fail(QStringLiteral("usage: index FILE [TYPE]"));
    const qint32 type = args.size() == 2 ? qint32(args.at(1).toLong()) : 0;
    QTextStream out(stdout);
    out.setEncoding(QStringConverter::Utf8);
    try {
        const auto db = content::Database::OpenDatabase(args.at(0));
        for (const finding::IndexTerm &term : finding::IndexTerms(*db, type))
            out << term.EuretirioID << '\t' << term.Oros << '\n';
    } catch (const platform::RuntimeError &e) {
        out.flush();
        return fail(errorText(e));
    }
    return 0;
}

} // namespace commands
