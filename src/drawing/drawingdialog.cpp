#include "drawingdialog.h"

#include <runtimeerror.h>

#include <QFileDialog>
#include <QPrintDialog>
#include <QPrinter>
#include <QStringList>

namespace drawing {

namespace {

CommonDialog::Hook &hook()
{
    static CommonDialog::Hook h;
    return h;
}

// "Εικόνες (*.bmp)|*.bmp" in the form the file dialog takes: one line per pair.
QString nameFilters(const QString &filter)
{
    const QStringList parts = filter.split(u'|');
    QStringList lines;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString &description = parts.at(i);
        const QString patterns = QString(parts.at(i + 1)).replace(u';', u' ');
        lines.append(
            description.contains(u'(') ? description : description + QStringLiteral(" (") + patterns + u')');
    }
    return lines.join(QStringLiteral(";;"));
}

constexpr int OverwritePrompt = 0x2;

} // namespace

CommonDialog::CommonDialog() = default;
CommonDialog::~CommonDialog() = default;

void CommonDialog::setHook(Hook h)
{
    hook() = std::move(h);
}

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

void CommonDialog::ShowOpen(QWidget *parent)
{
    if (hook())
        return finish(hook()(*this, Action::Open));
    const QString name = QFileDialog::getOpenFileName(parent, DialogTitle, FileName, nameFilters(Filter));
    if (!name.isEmpty())
        FileName = name;
    finish(!name.isEmpty());
}

void CommonDialog::ShowSave(QWidget *parent)
{
    if (hook())
        return finish(hook()(*this, Action::Save));
    QFileDialog dialog(parent, DialogTitle, FileName, nameFilters(Filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !(Flags & OverwritePrompt));
    if (!DefaultExt.isEmpty())
        dialog.setDefaultSuffix(QString(DefaultExt).remove(0, DefaultExt.startsWith(u'.') ? 1 : 0));
    const bool accepted = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
    if (accepted)
        FileName = dialog.selectedFiles().constFirst();
    finish(accepted);
}

void CommonDialog::ShowPrinter(QWidget *parent)
{
    if (hook())
        return finish(hook()(*this, Action::Print));
    QPrintDialog dialog(&Printer(), parent);
    dialog.setWindowTitle(DialogTitle);
    dialog.setOption(QAbstractPrintDialog::PrintToFile, false);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    PrinterDefault = accepted;
    finish(accepted);
}

} // namespace drawing
