#include "frmformat.h"

#include "modeditor.h"
#include "notesform.h"
#include "updown.h"

#include "placetwips.h"
#include "sessionwindow.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <notepadstate.h>
#include <programbitmaps.h>
#include <richtextbox.h>
#include <session.h>
#include <twips.h>

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

namespace {

const QString FirstLine = QStringLiteral("Πρώτη γραμμή");

} // namespace

frmFormat::frmFormat(Session &session, QWidget *owner)
    : QDialog(owner)
    , Label1(new QLabel(QStringLiteral("Ευθυγράμμιση:"), this))
    , imgCombo(new QComboBox(this))
    , Frame1(new QGroupBox(QStringLiteral("Περιθώρια"), this))
    , Frame2(new QGroupBox(Frame1))
    , Label2(new QLabel(QStringLiteral("Περιθώριο:"), Frame1))
    , Label3(new QLabel(QStringLiteral("Αριστερά:"), Frame1))
    , Text1(new QLineEdit(Frame1))
    , UpDown1(new UpDown(Frame1))
    , Label4(new QLabel(QStringLiteral("Δεξιά:"), Frame1))
    , Text2(new QLineEdit(Frame1))
    , UpDown2(new UpDown(Frame1))
    , Label5(new QLabel(QStringLiteral("Ειδικότερα:"), Frame2))
    , Combo1(new QComboBox(Frame2))
    , Text3(new QLineEdit(Frame2))
    , UpDown3(new UpDown(Frame2))
    , cmdOK(new QPushButton(QStringLiteral("OK"), this))
    , cmdCancel(new QPushButton(QStringLiteral("Ακύρωση"), this))
    , m_session(session)
{
    setObjectName(QStringLiteral("frmFormat"));
    platform::useDesignedColours(this);
    setWindowTitle(QStringLiteral("Παράγραφος"));
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(true);
    Combo1->setEditable(true);
    // Screen readers name each field by the label before it.
    Label1->setBuddy(imgCombo);
    Label3->setBuddy(Text1);
    Label4->setBuddy(Text2);
    Label5->setBuddy(Combo1);
    Combo1->lineEdit()->setAccessibleName(Label5->text());
    Text3->setAccessibleName(QStringLiteral("Απόσταση"));
    resize(platform::pixelsFromTwipsX(5400), platform::pixelsFromTwipsY(3600));
    placeTwips(Label1, 240, 240, 1500, 285);
    placeTwips(imgCombo, 1800, 200, 3000, 360);
    placeTwips(Frame1, 120, 720, 5100, 2160);
    placeTwips(Label2, 120, 300, 1500, 285);
    placeTwips(Label3, 240, 660, 1100, 285);
    placeTwips(Text1, 1380, 620, 900, 315);
    placeTwips(UpDown1, 2280, 620, 255, 315);
    placeTwips(Label4, 2700, 660, 800, 285);
    placeTwips(Text2, 3540, 620, 900, 315);
    placeTwips(UpDown2, 4440, 620, 255, 315);
    placeTwips(Frame2, 120, 1080, 4860, 960);
    placeTwips(Label5, 120, 360, 1100, 285);
    placeTwips(Combo1, 1260, 320, 2100, 330);
    placeTwips(Text3, 3420, 320, 900, 315);
    placeTwips(UpDown3, 4320, 320, 255, 315);
    placeTwips(cmdOK, 2520, 3000, 1200, 400);
    placeTwips(cmdCancel, 3840, 3000, 1300, 400);
    cmdOK->setDefault(true);

    bindSpinner(*UpDown1, *Text1);
    bindSpinner(*UpDown2, *Text2);
    bindSpinner(*UpDown3, *Text3);
    connect(Text1, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_session.notepad().Indentation = text;
        m_session.notepad().LeftChanged = true;
    });
    connect(Text2, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_session.notepad().RightIndentation = text;
        m_session.notepad().RightChanged = true;
    });
    connect(Text3, &QLineEdit::textChanged, this, [this] { platform::guarded([this] { Text3_Change(); }); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdOK_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { close(); });

    platform::guarded([this] { Form_Load(); });
}

frmFormat::~frmFormat() = default;

frmFormat *frmFormat::open(Session &session)
{
    return sessionWindow<frmFormat>(session, Session::Window::Format, true,
        [&session] { return new frmFormat(session, session.window(Session::Window::Notes, false)); });
}

void frmFormat::Form_Load()
{
    const struct
    {
        QString key, text;
    } items[] = {{QStringLiteral("Left"), QStringLiteral("Αριστερή στοίχιση")},
        {QStringLiteral("Center"), QStringLiteral("Κεντρική στοίχιση")},
        {QStringLiteral("Right"), QStringLiteral("Δεξιά στοίχιση")}};
    for (const auto &item : items) {
        QIcon icon;
        platform::resumeNext([&] { icon = resources::LoadResIcon(QStringLiteral("nt_") + item.key); });
        imgCombo->addItem(icon, item.text, item.key);
    }
    imgCombo->setCurrentIndex(0);
    // A mixed selection keeps the first item.
    const std::optional<int> alignment = modEditor::notesForm(m_session).notes->SelAlignment();
    if (alignment == RichTextBox::AlignLeft)
        imgCombo->setCurrentIndex(0);
    else if (alignment == RichTextBox::AlignRight)
        imgCombo->setCurrentIndex(2);
    else if (alignment == RichTextBox::AlignCenter)
        imgCombo->setCurrentIndex(1);

    // The trailing blank of the third item belongs to it.
    Combo1->addItems({QStringLiteral("Καμία"), FirstLine, QStringLiteral("Αναρτημένες γραμμές ")});
    Combo1->setCurrentIndex(-1);
    Combo1->clearEditText();
}

void frmFormat::Text3_Change()
{
    NotepadState &state = m_session.notepad();
    // The kind is read when the amount changes; "Καμία" counts as hanging.
    if (!Combo1->currentText().isEmpty()) {
        if (Combo1->currentText() == FirstLine)
            state.FirstLineChanged = true;
        else
            state.HangingChanged = true;
    } else {
        Combo1->setEditText(FirstLine);
        state.FirstLineChanged = true;
    }
    state.HangingIndentation = Text3->text();
}

void frmFormat::cmdOK_Click()
{
    NotepadState &state = m_session.notepad();
    RichTextBox &notes = *modEditor::notesForm(m_session).notes;
    const QString chosen = imgCombo->currentText();
    qint16 alignment = 0;
    if (chosen == imgCombo->itemText(1))
        alignment = 2;
    else if (chosen == imgCombo->itemText(2))
        alignment = 1;
    modEditor::SetAlignment(m_session, alignment);
    if (state.LeftChanged) {
        ParseMillimetres(*Text1, *UpDown1);
        notes.setSelIndent(UpDown1->Value() * 100);
        state.LeftChanged = false;
    }
    if (state.RightChanged) {
        ParseMillimetres(*Text2, *UpDown2);
        notes.setSelRightIndent(UpDown2->Value() * 100);
        state.RightChanged = false;
    }
    if (state.HangingChanged || state.FirstLineChanged) {
        ParseMillimetres(*Text3, *UpDown3);
        if (state.FirstLineChanged) {
            // The first line is set by one tab stop, not by an indent.
            notes.setSelTabCount(1);
            notes.setSelTabs(0, UpDown3->Value() * 100);
            state.FirstLineChanged = false;
        } else {
            notes.setSelHangingIndent(UpDown3->Value() * 100);
            state.HangingChanged = false;
        }
    }
    close();
}
