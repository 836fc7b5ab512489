#include "commondialog.h"

#include <richtextbox.h>
#include <runtimeerror.h>

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QFontInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPixmap>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>

namespace {

CommonDialog::Hook &hook()
{
    static CommonDialog::Hook h;
    return h;
}

// The sixteen colours of the font dialog's "Χρώμα" list, 0x00BBGGRR, with their names.
struct NamedColor
{
    quint32 value;
    const char16_t *name;
};

constexpr NamedColor FontColors[]
    = {{0x000000, u"Μαύρο"}, {0x000080, u"Βυσσινί"}, {0x008000, u"Πράσινο"}, {0x008080, u"Λαδί"},
        {0x800000, u"Μπλε σκούρο"}, {0x800080, u"Μωβ"}, {0x808000, u"Πετρόλ"}, {0x808080, u"Γκρι"},
        {0xC0C0C0, u"Ασημί"}, {0x0000FF, u"Κόκκινο"}, {0x00FF00, u"Λαχανί"}, {0x00FFFF, u"Κίτρινο"},
        {0xFF0000, u"Μπλε"}, {0xFF00FF, u"Φούξια"}, {0xFFFF00, u"Γαλάζιο"}, {0xFFFFFF, u"Λευκό"}};

QColor qtColor(quint32 value)
{
    return QColor(int(value & 0xFF), int((value >> 8) & 0xFF), int((value >> 16) & 0xFF));
}

// Qt's font dialog has no colour; the list stands under its effects, where the
// platform's dialog had it. A colour outside the sixteen is kept as an entry of its own.
QComboBox *addColorChoice(QFontDialog &dialog, quint32 current)
{
    auto *colors = new QComboBox(&dialog);
    colors->setObjectName(QStringLiteral("cmbColor"));
    const auto add = [colors](quint32 value, const QString &name) {
        QPixmap swatch(16, 12);
        swatch.fill(qtColor(value));
        colors->addItem(QIcon(swatch), name, value);
    };
    for (const NamedColor &color : FontColors)
        add(color.value, QString::fromUtf16(color.name));
    int index = colors->findData(current & 0xFFFFFF);
    if (index < 0) {
        add(current & 0xFFFFFF, QStringLiteral("Άλλο"));
        index = colors->count() - 1;
    }
    colors->setCurrentIndex(index);
    auto *label = new QLabel(QStringLiteral("Χ&ρώμα:"), &dialog);
    label->setBuddy(colors);
    // The effects are the group of check boxes (strikeout, underline).
    QLayout *place = nullptr;
    for (QGroupBox *group : dialog.findChildren<QGroupBox *>())
        if (!place && group->findChild<QCheckBox *>())
            place = group->layout();
    if (auto *box = qobject_cast<QBoxLayout *>(place)) {
        box->addWidget(label);
        box->addWidget(colors);
    } else if (auto *grid = qobject_cast<QGridLayout *>(dialog.layout())) {
        const int row = grid->rowCount();
        grid->addWidget(label, row, 0);
        grid->addWidget(colors, row, 1);
    }
    return colors;
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
        // A Windows name ("Times New Roman") stands in the list as the family that
        // fontconfig draws in its place.
        initial.setFamily(QFontInfo(initial).family());
        QFontDialog dialog(initial, m_owner);
        dialog.setOptions(QFontDialog::DontUseNativeDialog | QFontDialog::ScalableFonts);
        // The font dialog has a title of its own: the object's DialogTitle belongs to the
        // file and print dialogs it showed before.
        dialog.setWindowTitle(FontDialogTitle);
        QComboBox *colors = (Flags & FontEffects) ? addColorChoice(dialog, Color) : nullptr;
        chosen = dialog.exec() == QDialog::Accepted;
        if (chosen) {
            const QFont font = dialog.selectedFont();
            FontName = font.family();
            FontSize = font.pointSizeF();
            FontBold = font.bold();
            FontItalic = font.italic();
            FontStrikethru = font.strikeOut();
            FontUnderline = font.underline();
            if (colors)
                Color = colors->currentData().toUInt();
        }
    }
    if (!chosen)
        cancelled();
}
