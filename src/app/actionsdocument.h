#pragma once

#include <QString>

namespace platform {
class Host;
}

// The activity's assignment document goes to the word processor as a new, untitled
// document holding a copy of the file; the file itself is never opened for writing.
namespace actions {

// Copies the file (data folder + folder literal + name, matched without regard to case)
// to a private temporary folder and starts LibreOffice, through `host`, on the copy as on a
// template, which gives an untitled document and brings Writer to the front. Raises
// platform::RuntimeError with a description for the user when the file is missing or
// there is no word processor.
void openCopyInWordProcessor(
    platform::Host &host, const QString &dataFolder, const QString &folderLiteral, const QString &fileName);

// The word processor's program: soffice on PATH, else libreoffice; empty when neither.
QString wordProcessorProgram();

} // namespace actions
