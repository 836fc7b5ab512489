#pragma once

#include <QLoggingCategory>

// tremidia.handin, as the hand-in library writes it: what a hand-in passed over.
Q_DECLARE_LOGGING_CATEGORY(lcHandInWindow)
