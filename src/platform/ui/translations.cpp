#include "translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace platform {

bool installGreekTranslations(QCoreApplication &app)
{
    QLocale::setDefault(QLocale(QLocale::Greek, QLocale::Greece));

    // Qt's own catalogue first, where the system has one; then the program's own Greek
    // catalogue of Qt's strings (buttons, file, print, font and colour dialogs), which
    // also fills what Qt's catalogue leaves out.
    bool any = false;
    const QString dir = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    auto *system = new QTranslator(&app);
    if (system->load(QLocale(QLocale::Greek), QStringLiteral("qtbase"), QStringLiteral("_"), dir)) {
        app.installTranslator(system);
        any = true;
    } else {
        delete system;
    }
    auto *own = new QTranslator(&app);
    if (own->load(QStringLiteral(":/i18n/qt_el.qm"))) {
        app.installTranslator(own);
        any = true;
    } else {
        delete own;
    }
    return any;
}

} // namespace platform
