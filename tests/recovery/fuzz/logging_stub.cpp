// The fuzzing build's recovery category, as the program defines it.
#include <logging.h>

Q_LOGGING_CATEGORY(lcRecovery, "tremidia.recovery", QtWarningMsg)
