#include "logging.h"

Q_LOGGING_CATEGORY(lcContent, "tremidia.content", QtWarningMsg)
