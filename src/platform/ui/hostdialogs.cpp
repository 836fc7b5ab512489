// The desktop's file, print and font dialogs, as the host shows them.

#include "host.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFontDialog>
#include <QFontInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPixmap>
#include <QPrintDialog>
#include <QPrinter>

namespace platform {

namespace {

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

DialogAnswer fileDialog(const DialogRequest &request, QWidget *parent)
{
    const bool save = request.kind == DialogRequest::Kind::Save;
    QFileDialog dialog(parent, request.title);
    if (request.qtDialog)
        dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (save && !request.confirmOverwrite)
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (!request.defaultSuffix.isEmpty())
        dialog.setDefaultSuffix(request.defaultSuffix);
    if (!request.nameFilters.isEmpty()) {
        dialog.setNameFilters(request.nameFilters);
        dialog.selectNameFilter(request.nameFilters.value(std::max(0, request.selectedFilter)));
    }
    if (!request.folder.isEmpty())
        dialog.setDirectory(request.folder);
    if (!request.fileName.isEmpty())
        dialog.selectFile(request.fileName);
    DialogAnswer answer;
    answer.accepted = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
    if (answer.accepted)
        answer.fileName = dialog.selectedFiles().constFirst();
    return answer;
}

DialogAnswer printDialog(const DialogRequest &request, QWidget *parent)
{
    DialogAnswer answer;
    if (!request.printer)
        return answer;
    QPrintDialog dialog(request.printer, parent);
    dialog.setWindowTitle(request.title);
    QAbstractPrintDialog::PrintDialogOptions options
        = QAbstractPrintDialog::PrintShowPageSize | QAbstractPrintDialog::PrintCollateCopies;
    if (request.printToFile)
        options |= QAbstractPrintDialog::PrintToFile;
    if (request.printPageRange)
        options |= QAbstractPrintDialog::PrintPageRange;
    if (request.printSelection)
        options |= QAbstractPrintDialog::PrintSelection;
    dialog.setOptions(options);
    answer.accepted = dialog.exec() == QDialog::Accepted;
    answer.copies = request.printer->copyCount();
    return answer;
}

DialogAnswer fontDialog(const DialogRequest &request, QWidget *parent)
{
    QFont initial = request.font;
    // A Windows name ("Times New Roman") stands in the list as the family that
    // fontconfig draws in its place.
    initial.setFamily(QFontInfo(initial).family());
    QFontDialog dialog(initial, parent);
    dialog.setOptions(QFontDialog::DontUseNativeDialog | QFontDialog::ScalableFonts);
    dialog.setWindowTitle(request.title);
    QComboBox *colors = request.fontColour ? addColorChoice(dialog, request.colour) : nullptr;
    DialogAnswer answer;
    answer.accepted = dialog.exec() == QDialog::Accepted;
    answer.font = answer.accepted ? dialog.selectedFont() : request.font;
    answer.colour = colors && answer.accepted ? colors->currentData().toUInt() : request.colour;
    return answer;
}

} // namespace

DialogAnswer DesktopHost::dialog(const DialogRequest &request, QWidget *parent)
{
    switch (request.kind) {
    case DialogRequest::Kind::Open:
    case DialogRequest::Kind::Save:
        return fileDialog(request, parent);
    case DialogRequest::Kind::Print:
        return printDialog(request, parent);
    case DialogRequest::Kind::Font:
        return fontDialog(request, parent);
    }
    return {};
}

} // namespace platform
