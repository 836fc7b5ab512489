#include "runtimeerror.h"

namespace platform {

RuntimeError::RuntimeError(int number, QString description)
    : m_number(number)
    , m_description(std::move(description))
    , m_what(QString(QStringLiteral("%1: %2")).arg(m_number).arg(m_description).toUtf8())
{
}

} // namespace platform
