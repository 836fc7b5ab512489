#include "commondialog.h"

#include <richtextbox.h>
#include <runtimeerror.h>

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>

namespace {

CommonDialog::Hook &hook()
{
    static CommonDialog::Hook h;
    return h;
}

QString &lastFolder()
{
    static QString folder;
    return folder;
}

// "description|pattern|..." as Qt's "description (pattern);;...". Patterns are matched
// without regard to case, so "*.Rtf" also finds "notes.rtf" and "NOTES.RTF".
QStringList qtFilters(const QString &filter)
{
    const QStringList parts = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts.at(i + 1).trimmed();
        patterns.replace(u';', u' ');
        filters.append(parts.at(i).trimmed() + QStringLiteral(" (") + patterns + u')');
    }
    return filters;
}

} // namespace

CommonDialog::CommonDialog(QWidget *owner)
    : m_owner(owner)
{
}

void CommonDialog::setHook(Hook h)
{
    hook() = std::move(h);
}

QString CommonDialog::startFolder()
{
    if (!lastFolder().isEmpty() && QFileInfo(lastFolder()).isDir())
        return lastFolder();
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!documents.isEmpty() && QFileInfo(documents).isDir())
        return documents;
    return QDir::homePath();
}

void CommonDialog::cancelled()
{
    if (CancelError)
        throw platform::RuntimeError(platform::errors::CommonDialogCancelled, QStringLiteral("Ακυρώθηκε"));
}

void CommonDialog::finishFile(const QString &path)
{
    FileName = QDir::toNativeSeparators(path);
    FileTitle = QFileInfo(path).fileName();
    lastFolder() = QFileInfo(path).absolutePath();
}

bool CommonDialog::runFileDialog(bool save)
{
    QFileDialog dialog(m_owner, DialogTitle);
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (save && !(Flags & OverwritePrompt))
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (!DefaultExt.isEmpty())
        dialog.setDefaultSuffix(DefaultExt.startsWith(u'.') ? DefaultExt.mid(1) : DefaultExt);
    const QStringList filters = qtFilters(Filter);
    if (!filters.isEmpty()) {
        dialog.setNameFilters(filters);
        dialog.selectNameFilter(filters.value(std::max(0, FilterIndex - 1)));
    }
    const QFileInfo proposal(FileName);
    dialog.setDirectory(!FileName.isEmpty() && proposal.absoluteDir().exists() && FileName.contains(u'/')
            ? proposal.absolutePath()
            : startFolder());
    if (!FileName.isEmpty())
        dialog.selectFile(proposal.fileName());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    finishFile(dialog.selectedFiles().constFirst());
    return true;
}

void CommonDialog::ShowOpen()
{
    const bool chosen = hook() ? hook()(Kind::Open, *this, nullptr) : runFileDialog(false);
    if (!chosen) {
        FileName.clear();
        FileTitle.clear();
        cancelled();
        return;
    }
    if (hook())
        finishFile(FileName);
}

void CommonDialog::ShowSave()
{
    const bool chosen = hook() ? hook()(Kind::Save, *this, nullptr) : runFileDialog(true);
    if (!chosen) {
        cancelled();
        return;
    }
    if (hook())
        finishFile(FileName);
}

void CommonDialog::ShowPrinter(QPrinter &printer)
{
    printer.setCopyCount(std::max(1, Copies));
    bool chosen = false;
    if (hook()) {
        chosen = hook()(Kind::Print, *this, &printer);
    } else {
        QPrintDialog dialog(&printer, m_owner);
        dialog.setWindowTitle(DialogTitle);
        QAbstractPrintDialog::PrintDialogOptions options = QAbstractPrintDialog::PrintToFile
            | QAbstractPrintDialog::PrintShowPageSize | QAbstractPrintDialog::PrintCollateCopies;
        if (Flags & PrintSelection) {
            options |= QAbstractPrintDialog::PrintSelection;
            printer.setPrintRange(QPrinter::Selection);
        } else {
            printer.setPrintRange(QPrinter::AllPages);
        }
        dialog.setOptions(options);
        chosen = dialog.exec() == QDialog::Accepted;
        if (chosen)
            Copies = printer.copyCount();
    }
    if (!chosen)
        cancelled();
}

void CommonDialog::ShowFont()
{
    bool chosen = false;
    if (hook()) {
        chosen = hook()(Kind::Font, *this, nullptr);
    } else {
        QFont initial(FontName);
        initial.setPointSizeF(FontSize > 0 ? FontSize : 12);
        initial.setBold(FontBold);
        initial.setItalic(FontItalic);
        initial.setStrikeOut(FontStrikethru);
        initial.setUnderline(FontUnderline);
        const QFont font = QFontDialog::getFont(&chosen, initial, m_owner, DialogTitle,
            QFontDialog::DontUseNativeDialog | QFontDialog::ScalableFonts);
        if (chosen) {
            FontName = font.family();
            FontSize = font.pointSizeF();
            FontBold = font.bold();
            FontItalic = font.italic();
            FontStrikethru = font.strikeOut();
            FontUnderline = font.underline();
        }
    }
    if (!chosen)
        cancelled();
}
