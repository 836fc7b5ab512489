#pragma once

class QCoreApplication;

namespace platform {

// Loads Qt's own Greek translation so that standard dialogs and message-box buttons
// speak Greek, and sets the Greek locale as the default. Returns false when Qt's
// translation files are not installed (the program then still runs).
bool installGreekTranslations(QCoreApplication &app);

} // namespace platform
