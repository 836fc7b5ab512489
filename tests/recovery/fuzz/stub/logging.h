#pragma once

// The fuzzing build's logging: the recovery category alone. The program's own header
// also declares the error helpers, which need std::source_location, which this clang's
// library does not have.
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcRecovery)
