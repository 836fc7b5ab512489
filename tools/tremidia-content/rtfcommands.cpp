#include "commands.h"

namespace commands {

int rtfText(const QStringList &)
{
    return fail(QStringLiteral("not available yet"));
}

int rtfRuns(const QStringList &)
{
    return fail(QStringLiteral("not available yet"));
}

} // namespace commands
