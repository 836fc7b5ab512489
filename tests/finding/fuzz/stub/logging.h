#pragma once

#include <QLoggingCategory>

// The fuzzing build's stand-in for the platform's logging header, whose
// std::source_location clang 14 lacks: the one category the index reader writes to.
Q_DECLARE_LOGGING_CATEGORY(lcContent)
