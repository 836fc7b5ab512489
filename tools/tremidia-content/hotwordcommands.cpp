#include "commands.h"

namespace commands {

int hotwords(const QStringList &)
{
    return fail(QStringLiteral("not available yet"));
}

int check(const QStringList &)
{
    return fail(QStringLiteral("not available yet"));
}

} // namespace commands
