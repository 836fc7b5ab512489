#include "exporttoword.h"

#include "frmnotes.h"

#include <errorpolicy.h>
#include <launch.h>
#include <richtextbox.h>
#include <rtf.h>
#include <rtffile.h>

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QMimeData>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace exporttoword {

void copyRichText(const QByteArray &rtf, const QString &plainText)
{
    auto *data = new QMimeData;
    data->setData(QStringLiteral("text/rtf"), rtf);
    data->setData(QStringLiteral("application/rtf"), rtf);
    data->setText(plainText);
    QApplication::clipboard()->setMimeData(data);
}

bool openInWordProcessor(const QByteArray &rtf)
{
    const QString program = platform::wordProcessorProgram();
    if (program.isEmpty())
        return false;
    // A folder of its own, which the word processor may still read after we are gone.
    QTemporaryDir folder(QDir(QStandardPaths::writableLocation(QStandardPaths::TempLocation))
                             .filePath(QStringLiteral("tremidia-notes-XXXXXX")));
    if (!folder.isValid())
        return false;
    folder.setAutoRemove(false);
    const QString file = folder.filePath(QStringLiteral("Σημειωματάριο.rtf"));
    if (!platform::resumeNext([&] { richtext::writeFileWhole(file, rtf); }))
        return false;
    // "-n" opens the file as a template: a new untitled document with its content.
    return platform::launchDetached(program, {QStringLiteral("-n"), file}).started;
}

} // namespace exporttoword

void frmNotes::ExportToWord()
{
    // Every step goes on whatever the one before did; no failure is shown, and the
    // selection comes back.
    const int selStart = notes->SelStart();
    const int selLength = notes->SelLength();
    QByteArray rtf;
    platform::resumeNext([&] {
        notes->setSelStart(0);
        notes->setSelLength(notes->TextLength());
    });
    platform::resumeNext([&] {
        rtf = richtext::writeDocument(*notes->document());
        exporttoword::copyRichText(rtf, notes->Text());
    });
    platform::resumeNext([&] { exporttoword::openInWordProcessor(rtf); });
    platform::resumeNext([&] {
        notes->setSelStart(selStart);
        notes->setSelLength(selLength);
    });
}
