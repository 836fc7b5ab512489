#include "errorpolicy.h"

#include "msgbox.h"

namespace platform {

QString runtimeErrorText(int number, const QString &description)
{
    return QStringLiteral("Λάθος # ") + QString::number(number) + QStringLiteral("\r\n") + description;
}

void showRuntimeError(int number, const QString &description)
{
    MsgBox(runtimeErrorText(number, description), vbCritical);
}

namespace detail {

void reportUnexpected(const std::exception &e)
{
    // Anything that is not one of the program's own errors is reported like the
    // platform's internal error, so the user still sees a box and keeps working.
    showRuntimeError(51, QString::fromLocal8Bit(e.what()));
}

void reportUnknown()
{
    showRuntimeError(51, QStringLiteral("Εσωτερικό λάθος"));
}

} // namespace detail

} // namespace platform
