#include "frmfind.h"

#include "modeditor.h"

#include "placetwips.h"
#include "sessionwindow.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <notepadstate.h>
#include <session.h>
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

constexpr int RepTop = 540;
constexpr int RepHeight = 315;

} // namespace

frmFind::frmFind(Session &session, QWidget *owner)
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
    , m_session(session)
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
        m_session.notepad().FindFirstTime = true;
        cmdFind->setEnabled(!text.isEmpty());
    });
    connect(chCase, &QCheckBox::toggled, this,
        [this] { m_session.notepad().MatchCaseSetting = qint16(chCase->isChecked() ? 1 : 0); });
    connect(ChWholeWord, &QCheckBox::toggled, this,
        [this] { m_session.notepad().WholeWordSetting = qint16(ChWholeWord->isChecked() ? 1 : 0); });
    for (qint16 index : {0, 1}) {
        connect(optionDirection[index], &QRadioButton::clicked, this,
            [this, index] { m_session.notepad().FindDirection = index; });
    }
    connect(cmdFind, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdFind_Click(); }); });
    connect(
        cmdReplace, &QPushButton::clicked, this, [this] { platform::guarded([this] { LoadReplace(); }); });
    connect(
        cmdCancel, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdCancel_Click(); }); });

    platform::guarded([this] { Form_Load(); });
}

frmFind::~frmFind() = default;

frmFind *frmFind::open(Session &session, bool create)
{
    // A window that unloaded is not the find window any more, even before it goes.
    if (auto *form = session.window<frmFind>(Session::Window::Find, false); form && form->m_unloaded)
        session.setWindow(Session::Window::Find, nullptr);
    return sessionWindow<frmFind>(session, Session::Window::Find, create,
        [&session] { return new frmFind(session, session.window(Session::Window::Notes, false)); });
}

void frmFind::Form_Load()
{
    NotepadState &state = m_session.notepad();
    resize(platform::pixelsFromTwipsX(6015), platform::pixelsFromTwipsY(3075));
    if (!state.ReplaceRequested) {
        cmdFind->setEnabled(false);
        optionDirection[state.FindDirection == 1 ? 1 : 0]->setChecked(true);
        Frame1->move(Frame1->x(), platform::pixelsFromTwipsY(RepTop + RepHeight));
    } else {
        LoadReplace();
        state.ReplaceRequested = false;
    }
}

void frmFind::LoadReplace()
{
    m_session.notepad().FindText = txtFind->text();
    if (TxtRep->isHidden()) {
        Frame1->move(Frame1->x(), platform::pixelsFromTwipsY(1200));
        TxtRep->show();
        lblRep->show();
        cmdReplace->setText(QStringLiteral("Αντικατάσταση"));
        return;
    }
    m_session.notepad().ReplaceText = TxtRep->text();
    modEditor::ReplaceNext(m_session);
}

void frmFind::cmdFind_Click()
{
    m_session.notepad().FindText = txtFind->text();
    modEditor::FindNext(m_session);
}

void frmFind::cmdCancel_Click()
{
    m_session.notepad().FindText = txtFind->text();
    m_session.notepad().MatchCaseSetting = qint16(chCase->isChecked() ? 1 : 0);
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
