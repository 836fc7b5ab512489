#include "frmfind.h"

#include "modeditor.h"

#include "placetwips.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <twips.h>

#include <QCheckBox>
#include <QCloseEvent>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>

namespace {

QPointer<frmFind> &defaultInstance()
{
    static QPointer<frmFind> form;
    return form;
}

constexpr int RepTop = 540;
constexpr int RepHeight = 315;

} // namespace

frmFind::frmFind(QWidget *owner)
    : QDialog(owner)
    , lbFind(new QLabel(QStringLiteral("Αναζήτηση λέξης:"), this))
    , txtFind(new QLineEdit(this))
    , lblRep(new QLabel(QStringLiteral("Αντικατάσταση με:"), this))
    , TxtRep(new QLineEdit(this))
    , Frame1(new QFrame(this))
    , frdirect(new QGroupBox(QStringLiteral("Κατεύθυνση"), Frame1))
    , optionDirection {new QRadioButton(QStringLiteral("Πάνω"), frdirect),
          new QRadioButton(QStringLiteral("Κάτω"), frdirect)}
    , ChWholeWord(new QCheckBox(QStringLiteral("Αναζήτηση ολόκληρης λέξης μόνο"), Frame1))
    , chCase(new QCheckBox(QStringLiteral("Συνδιασμός Κεφαλαίων"), Frame1))
    , cmdFind(new QPushButton(QStringLiteral("Εκτέλεσε Αναζήτηση"), Frame1))
    , cmdReplace(new QPushButton(QStringLiteral("Αντικατάσταση ..."), Frame1))
    , cmdCancel(new QPushButton(QStringLiteral("Ακύρωση"), Frame1))
{
    setObjectName(QStringLiteral("frmFind"));
    platform::useDesignedColours(this);
    setWindowTitle(QStringLiteral("Αναζήτηση"));
    setModal(false);
    setAttribute(Qt::WA_DeleteOnClose);
    txtFind->setObjectName(QStringLiteral("txtFind"));
    TxtRep->setObjectName(QStringLiteral("TxtRep"));
    lbFind->setBuddy(txtFind);
    lblRep->setBuddy(TxtRep);

    placeTwips(lbFind, 120, 120, 1700, 285);
    placeTwips(txtFind, 1860, 90, 3900, RepHeight);
    placeTwips(lblRep, 120, RepTop + 30, 1700, 285);
    placeTwips(TxtRep, 1860, RepTop, 3900, RepHeight);
    placeTwips(frdirect, 120, 0, 1800, 1000);
    placeTwips(optionDirection[0], 120, 300, 1500, 285);
    placeTwips(optionDirection[1], 120, 600, 1500, 285);
    placeTwips(ChWholeWord, 2040, 120, 3700, 285);
    placeTwips(chCase, 2040, 420, 3700, 285);
    placeTwips(cmdFind, 120, 1140, 1900, 375);
    placeTwips(cmdReplace, 2100, 1140, 1900, 375);
    placeTwips(cmdCancel, 4080, 1140, 1680, 375);
    placeTwips(Frame1, 0, 1200, 6015, 1600);
    TxtRep->hide();
    lblRep->hide();

    connect(txtFind, &QLineEdit::textChanged, this, [this](const QString &text) {
        modEditor::FindFirstTime = true;
        cmdFind->setEnabled(!text.isEmpty());
    });
    connect(chCase, &QCheckBox::toggled, this,
        [this] { modEditor::MatchCaseSetting = qint16(chCase->isChecked() ? 1 : 0); });
    connect(ChWholeWord, &QCheckBox::toggled, this,
        [this] { modEditor::WholeWordSetting = qint16(ChWholeWord->isChecked() ? 1 : 0); });
    for (qint16 index : {0, 1}) {
        connect(optionDirection[index], &QRadioButton::clicked, this,
            [index] { modEditor::FindDirection = index; });
    }
    connect(cmdFind, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdFind_Click(); }); });
    connect(
        cmdReplace, &QPushButton::clicked, this, [this] { platform::guarded([this] { LoadReplace(); }); });
    connect(
        cmdCancel, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdCancel_Click(); }); });

    platform::guarded([this] { Form_Load(); });
}

frmFind::~frmFind()
{
    if (defaultInstance() == this)
        defaultInstance() = nullptr;
}

frmFind *frmFind::instance(bool create, QWidget *owner)
{
    QPointer<frmFind> &form = defaultInstance();
    if (form && form->m_unloaded)
        form = nullptr;
    if (!form && create)
        form = new frmFind(owner);
    return form;
}

void frmFind::Form_Load()
{
    resize(platform::pixelsFromTwipsX(6015), platform::pixelsFromTwipsY(3075));
    if (!modEditor::ReplaceRequested) {
        cmdFind->setEnabled(false);
        optionDirection[modEditor::FindDirection == 1 ? 1 : 0]->setChecked(true);
        Frame1->move(Frame1->x(), platform::pixelsFromTwipsY(RepTop + RepHeight));
    } else {
        LoadReplace();
        modEditor::ReplaceRequested = false;
    }
}

void frmFind::LoadReplace()
{
    modEditor::FindText = txtFind->text();
    if (TxtRep->isHidden()) {
        Frame1->move(Frame1->x(), platform::pixelsFromTwipsY(1200));
        TxtRep->show();
        lblRep->show();
        cmdReplace->setText(QStringLiteral("Αντικατάσταση"));
        return;
    }
    modEditor::ReplaceText = TxtRep->text();
    modEditor::ReplaceNext();
}

void frmFind::cmdFind_Click()
{
    modEditor::FindText = txtFind->text();
    modEditor::FindNext();
}

void frmFind::cmdCancel_Click()
{
    modEditor::FindText = txtFind->text();
    modEditor::MatchCaseSetting = qint16(chCase->isChecked() ? 1 : 0);
    close();
}

void frmFind::reject()
{
    if (m_closing)
        QDialog::reject();
    else
        close();
}

void frmFind::closeEvent(QCloseEvent *event)
{
    m_unloaded = true;
    TxtRep->hide();
    lblRep->hide();
    m_closing = true;
    QDialog::closeEvent(event);
    m_closing = false;
}
