#include "main_routine.h"
#include "mdiform1.h"

#include <translations.h>

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tremidia"));
    QApplication::setApplicationDisplayName(QStringLiteral("Τρεμίδια"));
    platform::installGreekTranslations(app);
    MDIForm1::registerDefaultInstance();

    // After a failed start the error box has been shown; the program ends there.
    if (!Main())
        return 1;
    return app.exec();
}
