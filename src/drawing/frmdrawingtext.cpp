#include "frmdrawingtext.h"

#include <designedcolours.h>
#include <errorpolicy.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// The dialog's font is a Windows one, which Linux does not have: its name is replaced
// by the family that fontconfig draws in its place, so that the font list, which holds
// the system's families, shows it chosen.
QString systemFamily(const QString &designed)
{
    return QFontInfo(QFont(designed)).family();
}

} // namespace

frmDrawingText::frmDrawingText(QWidget *parent)
    : QDialog(parent)
    , txtText(new QLineEdit(this))
    , Frame1(new QGroupBox(this))
    , cmbFontName(new QComboBox(Frame1))
    , cmbFontSize(new QComboBox(Frame1))
    , chcBold(new QCheckBox(QStringLiteral("Έντονα"), this))
    , chcItalics(new QCheckBox(QStringLiteral("Πλάγια"), this))
    , cmdApply(new QPushButton(QStringLiteral("Εφαρμογή"), this))
    , cmdCancel(new QPushButton(QStringLiteral("Άκυρο"), this))
{
    setObjectName(QStringLiteral("frmDrawingText"));
    platform::useDesignedColours(this);
    setWindowTitle(QStringLiteral("Εισαγωγή Κειμένου"));
    setModal(true);
    txtText->setObjectName(QStringLiteral("txtText"));
    cmbFontName->setObjectName(QStringLiteral("cmbFontName"));
    cmbFontSize->setObjectName(QStringLiteral("cmbFontSize"));
    chcBold->setObjectName(QStringLiteral("chcBold"));
    chcItalics->setObjectName(QStringLiteral("chcItalics"));
    cmdApply->setObjectName(QStringLiteral("cmdApply"));
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    txtText->setText(QStringLiteral("Γράψτε εδώ"));
    QFont font(systemFamily(QStringLiteral("MS Sans Serif")));
    font.setPointSize(24);
    font.setWeight(QFont::Normal);
    txtText->setFont(font);
    txtText->setMinimumHeight(QFontMetrics(font).height() + 8);
    cmbFontSize->setEditable(true);
    cmbFontName->setToolTip(QStringLiteral("Γραμματοσειρά"));
    cmbFontSize->setToolTip(QStringLiteral("Μέγεθος γραμματοσειράς"));
    // Screen readers say what the tips say; the text to write is the field itself.
    txtText->setAccessibleName(QStringLiteral("Κείμενο"));
    cmbFontName->setAccessibleName(cmbFontName->toolTip());
    cmbFontSize->setAccessibleName(cmbFontSize->toolTip());
    cmbFontSize->lineEdit()->setAccessibleName(cmbFontSize->toolTip());
    chcBold->setToolTip(QStringLiteral("Έντονη γραφή"));
    chcItalics->setToolTip(QStringLiteral("Πλάγια γραφή"));
    cmdApply->setToolTip(QStringLiteral("Εφαρμογή και έξοδος"));
    cmdCancel->setToolTip(QStringLiteral("Έξοδος"));
    cmdApply->setAutoDefault(false);
    cmdCancel->setAutoDefault(false);

    auto *frameLayout = new QHBoxLayout(Frame1);
    frameLayout->addWidget(cmbFontName, 3);
    frameLayout->addWidget(cmbFontSize, 1);
    auto *checks = new QHBoxLayout;
    checks->addWidget(chcBold);
    checks->addWidget(chcItalics);
    checks->addStretch(1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdApply);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(txtText);
    layout->addWidget(Frame1);
    layout->addLayout(checks);
    layout->addLayout(buttons);
    resize(420, sizeHint().height());

    connect(chcBold, &QCheckBox::clicked, this, [this] { platform::guarded([this] { chcBold_Click(); }); });
    connect(
        chcItalics, &QCheckBox::clicked, this, [this] { platform::guarded([this] { chcItalics_Click(); }); });
    connect(cmbFontName, &QComboBox::activated, this,
        [this] { platform::guarded([this] { cmbFontName_Click(); }); });
    connect(cmbFontSize, &QComboBox::activated, this,
        [this] { platform::guarded([this] { cmbFontSize_Click(); }); });
    connect(
        cmdApply, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdApply_Click(); }); });
    connect(
        cmdCancel, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdCancel_Click(); }); });

    Form_Load();
}

frmDrawingText::~frmDrawingText() = default;

void frmDrawingText::Form_Load()
{
    // The test is made on one default font and not on each family: on a system whose
    // own font writes Greek, every family is listed.
    const QFont defaultFont;
    const bool greek
        = QFontDatabase::writingSystems(QFontInfo(defaultFont).family()).contains(QFontDatabase::Greek);
    if (greek)
        cmbFontName->addItems(QFontDatabase::families());
    for (const int size : {8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24})
        cmbFontSize->addItem(QString::number(size));

    platform::resumeNext([this] {
        const QString family = txtText->font().family();
        int index = cmbFontName->findText(family, Qt::MatchFixedString);
        if (index < 0)
            index = cmbFontName->findText(family, Qt::MatchStartsWith);
        cmbFontName->setCurrentIndex(index);
    });
    platform::resumeNext(
        [this] { cmbFontSize->setEditText(QString::number(int(txtText->font().pointSizeF()))); });
}

template<typename Apply> void frmDrawingText::applyFontControl(Apply apply)
{
    platform::resumeNext([this] { txtText->selectAll(); });
    platform::resumeNext([&] {
        QFont font = txtText->font();
        apply(font);
        txtText->setFont(font);
    });
}

void frmDrawingText::chcBold_Click()
{
    applyFontControl([this](QFont &font) { font.setBold(chcBold->isChecked()); });
}

void frmDrawingText::chcItalics_Click()
{
    applyFontControl([this](QFont &font) { font.setItalic(chcItalics->isChecked()); });
}

void frmDrawingText::cmbFontName_Click()
{
    applyFontControl([this](QFont &font) { font.setFamily(cmbFontName->currentText()); });
}

void frmDrawingText::cmbFontSize_Click()
{
    applyFontControl([this](QFont &font) {
        bool ok = false;
        const int size = cmbFontSize->currentText().trimmed().toShort(&ok);
        // A size that is no number, or none, leaves the font as it is.
        if (ok && size > 0)
            font.setPointSize(size);
    });
}

void frmDrawingText::cmdApply_Click()
{
    emit WriteString(txtText->font(), txtText->text());
    accept();
}

void frmDrawingText::cmdCancel_Click()
{
    reject();
}
