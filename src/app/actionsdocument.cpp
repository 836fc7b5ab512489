#include "actionsdocument.h"

#include <contentpath.h>
#include <host.h>
#include <launch.h>
#include <runtimeerror.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace actions {

QString wordProcessorProgram()
{
    return platform::wordProcessorProgram();
}

void openCopyInWordProcessor(
    platform::Host &host, const QString &dataFolder, const QString &folderLiteral, const QString &fileName)
{
    const QString source = platform::contentPath(dataFolder, folderLiteral, fileName);
    if (!QFileInfo(source).isFile())
        throw platform::RuntimeError(platform::errors::FileNotFound,
            QStringLiteral("Δεν είναι δυνατό να βρεθεί το αρχείο «%1».").arg(source));

    const QString program = wordProcessorProgram();
    if (program.isEmpty())
        throw platform::RuntimeError(platform::errors::CannotCreateObject,
            QStringLiteral("Δεν βρέθηκε επεξεργαστής κειμένου (LibreOffice Writer) "
                           "εγκατεστημένος στον υπολογιστή σας."));

    // The copy keeps its name, so that Writer knows the format and shows a familiar
    // title; it has a folder of its own, which Writer may still read after we are gone.
    QTemporaryDir folder(QDir(QStandardPaths::writableLocation(QStandardPaths::TempLocation))
                             .filePath(QStringLiteral("tremidia-actions-XXXXXX")));
    if (!folder.isValid())
        throw platform::RuntimeError(platform::errors::PathNotFound,
            QStringLiteral("Δεν είναι δυνατή η δημιουργία προσωρινού φακέλου."));
    folder.setAutoRemove(false);
    const QString copy = folder.filePath(QFileInfo(source).fileName());
    if (!QFile::copy(source, copy))
        throw platform::RuntimeError(platform::errors::FileNotFound,
            QStringLiteral("Δεν είναι δυνατή η αντιγραφή του αρχείου «%1».").arg(source));

    // "-n" opens the file as a template: a new untitled document with its content, in
    // the module its format calls for (Writer for the assignments). "--writer" is left
    // out, since with it an office that is not running yet may add an empty document.
    const platform::LaunchResult started = host.launch(program, {QStringLiteral("-n"), copy}, {});
    if (!started.started)
        throw platform::RuntimeError(platform::errors::CannotCreateObject, started.error);
}

} // namespace actions
