#include "drawingdialog.h"

#include <host.h>
#include <runtimeerror.h>
#include <session.h>

#include <QPrinter>
#include <QStringList>

namespace drawing {

namespace {

// "Εικόνες (*.bmp)|*.bmp" in the form the file dialog takes: one line per pair.
QStringList nameFilters(const QString &filter)
{
    const QStringList parts = filter.split(u'|');
    QStringList lines;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString &description = parts.at(i);
        const QString patterns = QString(parts.at(i + 1)).replace(u';', u' ');
        lines.append(
            description.contains(u'(') ? description : description + QStringLiteral(" (") + patterns + u')');
    }
    return lines;
}

constexpr int OverwritePrompt = 0x2;

} // namespace

CommonDialog::CommonDialog(Session &session)
    : m_session(session)
{
}

CommonDialog::~CommonDialog() = default;

QPrinter &CommonDialog::Printer()
{
    if (!m_printer)
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    return *m_printer;
}

void CommonDialog::finish(bool accepted)
{
    if (!accepted && CancelError)
        throw platform::RuntimeError(
            platform::errors::CommonDialogCancelled, QStringLiteral("Επιλέχθηκε άκυρο."));
}

void CommonDialog::showFile(bool save, QWidget *parent)
{
    platform::DialogRequest request;
    request.kind = save ? platform::DialogRequest::Kind::Save : platform::DialogRequest::Kind::Open;
    request.title = DialogTitle;
    request.flags = Flags;
    request.filter = Filter;
    request.nameFilters = nameFilters(Filter);
    request.fileName = FileName;
    if (save) {
        request.confirmOverwrite = Flags & OverwritePrompt;
        request.defaultSuffix = QString(DefaultExt).remove(0, DefaultExt.startsWith(u'.') ? 1 : 0);
    }
    const platform::DialogAnswer answer = m_session.host().dialog(request, parent);
    const bool accepted = answer.accepted && !answer.fileName.isEmpty();
    if (accepted)
        FileName = answer.fileName;
    finish(accepted);
}

void CommonDialog::ShowOpen(QWidget *parent)
{
    showFile(false, parent);
}

void CommonDialog::ShowSave(QWidget *parent)
{
    showFile(true, parent);
}

void CommonDialog::ShowPrinter(QWidget *parent)
{
    platform::DialogRequest request;
    request.kind = platform::DialogRequest::Kind::Print;
    request.title = DialogTitle;
    request.flags = Flags;
    request.printer = &Printer();
    request.printPageRange = true;
    const bool accepted = m_session.host().dialog(request, parent).accepted;
    PrinterDefault = accepted;
    finish(accepted);
}

} // namespace drawing
