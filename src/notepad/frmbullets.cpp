#include "frmbullets.h"

#include "notesform.h"
#include "updown.h"

#include "placetwips.h"
#include "sessionwindow.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <notepadstate.h>
#include <richtextbox.h>
#include <session.h>
#include <twips.h>

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

namespace {

} // namespace

frmBullets::frmBullets(Session &session, QWidget *owner)
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
    , m_session(session)
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
    connect(Text1, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_session.notepad().BulIndentation = text;
        m_session.notepad().BulletChanged = true;
    });
    connect(Text2, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_session.notepad().BulTextIndent = text;
        m_session.notepad().TextChanged = true;
    });
    connect(cmdOK, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdOK_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { close(); });
}

frmBullets::~frmBullets() = default;

frmBullets *frmBullets::open(Session &session)
{
    return sessionWindow<frmBullets>(session, Session::Window::Bullets, true,
        [&session] { return new frmBullets(session, session.window(Session::Window::Notes, false)); });
}

void frmBullets::cmdOK_Click()
{
    NotepadState &state = m_session.notepad();
    RichTextBox &notes = *modEditor::notesForm(m_session).notes;
    if (state.BulletChanged) {
        ParseMillimetres(*Text1, *UpDown1);
        notes.setSelBullet(true);
        notes.setSelIndent(UpDown1->Value() * 100);
        state.BulletChanged = false;
    }
    if (state.TextChanged) {
        ParseMillimetres(*Text2, *UpDown2);
        notes.setSelBullet(true);
        notes.setSelHangingIndent(UpDown2->Value() * 100);
        state.TextChanged = false;
    }
    close();
}
