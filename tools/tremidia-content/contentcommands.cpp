#include "commands.h"

#include <database.h>
#include <runtimeerror.h>

#include <QLocale>
#include <QTextStream>

#include <cstdio>

namespace commands {

namespace {

// One TSV cell: NULL as \N; backslash, tab and line breaks escaped so that a memo with
// CR LF stays on its row.
QString cell(const QVariant &value)
{
    if (value.isNull())
        return QStringLiteral("\\N");
    if (value.typeId() == QMetaType::QByteArray)
        return QStringLiteral("\\\\x") + QString::fromLatin1(value.toByteArray().toHex());
    if (value.typeId() == QMetaType::Double)
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    QString text = value.toString();
    text.replace(u'\\', QStringLiteral("\\\\"));
    text.replace(u'\t', QStringLiteral("\\t"));
    text.replace(u'\n', QStringLiteral("\\n"));
    text.replace(u'\r', QStringLiteral("\\r"));
    return text;
}

QString errorText(const platform::RuntimeError &e)
{
    return QStringLiteral("%1 (%2)").arg(e.description()).arg(e.number());
}

} // namespace

int fail(const QString &message)
{
    QTextStream(stderr) << "tremidia-content: " << message << '\n';
    return 1;
}

int import(const QStringList &args)
{
    if (args.size() != 2)
        return fail(QStringLiteral("usage: import SOURCE DEST.sqlite"));
    try {
        const auto db = content::Database::OpenDatabase(args.at(0));
        db->saveCopy(args.at(1));
    } catch (const platform::RuntimeError &e) {
        return fail(errorText(e));
    }
    return 0;
}

int tables(const QStringList &args)
{
    if (args.size() != 1)
        return fail(QStringLiteral("usage: tables FILE"));
    try {
        const auto db = content::Database::OpenDatabase(args.at(0));
        QTextStream out(stdout);
        out.setEncoding(QStringConverter::Utf8);
        for (const QString &name : db->tableNames()) {
            const auto rs = db->OpenRecordset(name, content::dbOpenSnapshot);
            out << name << '\t' << rs->RecordCount() << '\n';
        }
    } catch (const platform::RuntimeError &e) {
        return fail(errorText(e));
    }
    return 0;
}

int query(const QStringList &args)
{
    if (args.size() != 2)
        return fail(QStringLiteral("usage: query FILE SQL"));
    try {
        const auto db = content::Database::OpenDatabase(args.at(0));
        const auto rs = db->OpenRecordset(args.at(1), content::dbOpenSnapshot);
        QTextStream out(stdout);
        out.setEncoding(QStringConverter::Utf8);
        QStringList header;
        for (int c = 0; c < rs->fieldCount(); ++c)
            header << cell(rs->fieldName(c));
        out << header.join(u'\t') << '\n';
        while (!rs->Eof()) {
            QStringList row;
            for (int c = 0; c < rs->fieldCount(); ++c)
                row << cell(rs->value(c));
            out << row.join(u'\t') << '\n';
            rs->MoveNext();
        }
    } catch (const platform::RuntimeError &e) {
        return fail(errorText(e));
    }
    return 0;
}

} // namespace commands
