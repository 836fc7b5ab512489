#include "commands.h"

#include <fulltextindex.h>
#include <runtimeerror.h>

#include <QFileInfo>
#include <QTextStream>

namespace commands {

int fulltext(const QStringList &args)
{
    if (args.isEmpty())
        return fail(QStringLiteral("usage: fulltext FILE QUERY..."));
    const QString file = args.at(0);
    const QFileInfo info(file);
    if (!info.isFile() || !info.isReadable())
        return fail(QStringLiteral("%1: cannot read the file").arg(file));
    QTextStream out(stdout);
    out.setEncoding(QStringConverter::Utf8);
    try {
        const auto index = ::fulltext::openIndex(file);
        const QStringList words = args.mid(1);
        for (const ::fulltext::Result &r : index->search(words.join(u' ')))
            out << r.resourceID << '\t' << r.resTypeID << '\t' << r.title << '\n';
    } catch (const platform::RuntimeError &e) {
        out.flush();
        return fail(QStringLiteral("%1 (%2)").arg(e.description()).arg(e.number()));
    }
    return 0;
}

} // namespace commands
