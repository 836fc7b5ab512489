#include "main_routine.h"

#include <translations.h>

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tremidia"));
    QApplication::setApplicationDisplayName(QStringLiteral("Τρεμίδια"));
    platform::installGreekTranslations(app);

    if (!Main())
        return 1;
    return app.exec();
}
