#include "frmbullets.h"

#include "notesform.h"
#include "updown.h"

#include "placetwips.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <richtextbox.h>
#include <twips.h>

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

namespace {

QPointer<frmBullets> &defaultInstance()
{
    static QPointer<frmBullets> form;
    return form;
}

} // namespace

frmBullets::frmBullets(QWidget *owner)
    : QDialog(owner)
    , Frame2(new QGroupBox(QStringLiteral("Θέση κουκίδας"), this))
    , Label3(new QLabel(QStringLiteral("Περιθώριο στα:"), Frame2))
    , Text1(new QLineEdit(Frame2))
    , UpDown1(new UpDown(Frame2))
    , Frame1(new QGroupBox(QStringLiteral("Θέση κειμένου"), this))
    , Label1(new QLabel(QStringLiteral("Περιθώριο στα:"), Frame1))
    , Text2(new QLineEdit(Frame1))
    , UpDown2(new UpDown(Frame1))
    , cmdOK(new QPushButton(QStringLiteral("OK"), this))
    , cmdCancel(new QPushButton(QStringLiteral("Ακύρωση"), this))
{
    setObjectName(QStringLiteral("frmBullets"));
    platform::useDesignedColours(this);
    setWindowTitle(QStringLiteral("Κουκίδες"));
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(true);
    resize(platform::pixelsFromTwipsX(4200), platform::pixelsFromTwipsY(2700));
    placeTwips(Frame2, 120, 120, 3960, 840);
    placeTwips(Label3, 240, 360, 1500, 285);
    placeTwips(Text1, 1800, 320, 1200, 315);
    placeTwips(UpDown1, 3000, 320, 255, 315);
    placeTwips(Frame1, 120, 1080, 3960, 840);
    placeTwips(Label1, 240, 360, 1500, 285);
    placeTwips(Text2, 1800, 320, 1200, 315);
    placeTwips(UpDown2, 3000, 320, 255, 315);
    placeTwips(cmdOK, 1440, 2100, 1200, 400);
    placeTwips(cmdCancel, 2760, 2100, 1300, 400);
    cmdOK->setDefault(true);

    bindSpinner(*UpDown1, *Text1);
    bindSpinner(*UpDown2, *Text2);
    connect(Text1, &QLineEdit::textChanged, this, [](const QString &text) {
        BulIndentation = text;
        BulletChanged = true;
    });
    connect(Text2, &QLineEdit::textChanged, this, [](const QString &text) {
        BulTextIndent = text;
        TextChanged = true;
    });
    connect(cmdOK, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdOK_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { close(); });
}

frmBullets::~frmBullets()
{
    if (defaultInstance() == this)
        defaultInstance() = nullptr;
}

frmBullets *frmBullets::instance(QWidget *owner)
{
    QPointer<frmBullets> &form = defaultInstance();
    if (!form)
        form = new frmBullets(owner);
    return form;
}

void frmBullets::cmdOK_Click()
{
    RichTextBox &notes = *modEditor::notesForm().notes;
    if (BulletChanged) {
        ParseMillimetres(*Text1, *UpDown1);
        notes.setSelBullet(true);
        notes.setSelIndent(UpDown1->Value() * 100);
        BulletChanged = false;
    }
    if (TextChanged) {
        ParseMillimetres(*Text2, *UpDown2);
        notes.setSelBullet(true);
        notes.setSelHangingIndent(UpDown2->Value() * 100);
        TextChanged = false;
    }
    close();
}
