#pragma once

// The fuzzing build's logging: the content category alone. clang's standard library here
// has no std::source_location, which the platform's logging header needs for the rest.
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcContent)
