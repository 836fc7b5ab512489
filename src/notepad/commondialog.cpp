#include "commondialog.h"

#include <host.h>
#include <notepadstate.h>
#include <runtimeerror.h>
#include <session.h>

#include <QDir>
#include <QFileInfo>
#include <QPrinter>
#include <QStandardPaths>

namespace {

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

CommonDialog::CommonDialog(Session &session, QWidget *owner)
    : m_session(session)
    , m_owner(owner)
{
}

QString CommonDialog::startFolder() const
{
    const QString &last = m_session.notepad().lastFolder;
    if (!last.isEmpty() && QFileInfo(last).isDir())
        return last;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!documents.isEmpty() && QFileInfo(documents).isDir())
        return documents;
    return QDir::homePath();
}

platform::DialogAnswer CommonDialog::ask(const platform::DialogRequest &request)
{
    return m_session.host().dialog(request, m_owner);
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
    m_session.notepad().lastFolder = QFileInfo(path).absolutePath();
}

bool CommonDialog::runFileDialog(bool save)
{
    platform::DialogRequest request;
    request.kind = save ? platform::DialogRequest::Kind::Save : platform::DialogRequest::Kind::Open;
    request.title = DialogTitle;
    request.flags = Flags;
    request.filter = Filter;
    request.qtDialog = true;
    request.confirmOverwrite = save && (Flags & OverwritePrompt);
    if (!DefaultExt.isEmpty())
        request.defaultSuffix = DefaultExt.startsWith(u'.') ? DefaultExt.mid(1) : DefaultExt;
    request.nameFilters = qtFilters(Filter);
    request.selectedFilter = std::max(0, FilterIndex - 1);
    const QFileInfo proposal(FileName);
    request.folder = !FileName.isEmpty() && proposal.absoluteDir().exists() && FileName.contains(u'/')
        ? proposal.absolutePath()
        : startFolder();
    if (!FileName.isEmpty())
        request.fileName = proposal.fileName();
    const platform::DialogAnswer answer = ask(request);
    if (!answer.accepted)
        return false;
    finishFile(answer.fileName);
    return true;
}

void CommonDialog::ShowOpen()
{
    if (!runFileDialog(false)) {
        FileName.clear();
        FileTitle.clear();
        cancelled();
    }
}

void CommonDialog::ShowSave()
{
    if (!runFileDialog(true))
        cancelled();
}

void CommonDialog::ShowPrinter(QPrinter &printer)
{
    printer.setCopyCount(std::max(1, Copies));
    printer.setPrintRange((Flags & PrintSelection) ? QPrinter::Selection : QPrinter::AllPages);
    platform::DialogRequest request;
    request.kind = platform::DialogRequest::Kind::Print;
    request.title = DialogTitle;
    request.flags = Flags;
    request.printer = &printer;
    request.printToFile = true;
    request.printSelection = Flags & PrintSelection;
    const platform::DialogAnswer answer = ask(request);
    if (answer.accepted)
        Copies = answer.copies;
    else
        cancelled();
}

void CommonDialog::ShowFont()
{
    platform::DialogRequest request;
    request.kind = platform::DialogRequest::Kind::Font;
    // The font dialog has a title of its own: the object's DialogTitle belongs to the
    // file and print dialogs it showed before.
    request.title = FontDialogTitle;
    request.flags = Flags;
    request.font = QFont(FontName);
    request.font.setPointSizeF(FontSize > 0 ? FontSize : 12);
    request.font.setBold(FontBold);
    request.font.setItalic(FontItalic);
    request.font.setStrikeOut(FontStrikethru);
    request.font.setUnderline(FontUnderline);
    request.fontColour = Flags & FontEffects;
    request.colour = Color;
    const platform::DialogAnswer answer = ask(request);
    if (!answer.accepted) {
        cancelled();
        return;
    }
    FontName = answer.font.family();
    FontSize = answer.font.pointSizeF();
    FontBold = answer.font.bold();
    FontItalic = answer.font.italic();
    FontStrikethru = answer.font.strikeOut();
    FontUnderline = answer.font.underline();
    if (request.fontColour)
        Color = answer.colour;
}
