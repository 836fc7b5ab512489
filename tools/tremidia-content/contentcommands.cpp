#include "commands.h"

#include <QTextStream>

namespace commands {

int fail(const QString &message)
{
    QTextStream(stderr) << "tremidia-content: " << message << '\n';
    return 1;
}

int import(const QStringList &)
{
    return fail(QStringLiteral("not available yet"));
}

int tables(const QStringList &)
{
    return fail(QStringLiteral("not available yet"));
}

int query(const QStringList &)
{
    return fail(QStringLiteral("not available yet"));
}

} // namespace commands
