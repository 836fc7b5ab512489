#include "frmhandin.h"

#include <logging.h>

#include <designedcolours.h>
#include <errorpolicy.h>
#include <frmdrawing.h>
#include <msgbox.h>
#include <notepadstate.h>
#include <outbox.h>
#include <richtextbox.h>
#include <rtffile.h>
#include <session.h>
#include <settings.h>
#include <shellwindow.h>

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QSettings>
#include <QVBoxLayout>

namespace {

// The pupil's own settings file: ASCII names, the values as typed.
constexpr char NameKey[] = "HandIn/Name";
constexpr char ClassKey[] = "HandIn/Class";

// A name or a class is a line, not a page.
constexpr int MostTyped = 60;

QLineEdit *lineEdit(const char *name)
{
    auto *edit = new QLineEdit;
    edit->setObjectName(QLatin1String(name));
    edit->setMaxLength(MostTyped);
    return edit;
}

} // namespace

frmHandIn::frmHandIn(Session &session, QWidget *parent)
    : QDialog(parent)
    , txtName(lineEdit("txtName"))
    , txtClass(lineEdit("txtClass"))
    , fraWhat(new QGroupBox(QStringLiteral("Τι παραδίδεις")))
    , chkNote(new QCheckBox(QStringLiteral("Οι σημειώσεις (κείμενο και PDF)")))
    , lblNothing(new QLabel(QStringLiteral("Δεν υπάρχουν ανοιχτές σημειώσεις ή σχέδια για παράδοση.")))
    , lblStatus(new QLabel)
    , cmdHandIn(new QPushButton(QStringLiteral("Παράδοση")))
    , cmdCancel(new QPushButton(QStringLiteral("Άκυρο")))
    , m_session(session)
{
    setObjectName(QStringLiteral("frmHandIn"));
    platform::useDesignedColours(this);
    setWindowTitle(QStringLiteral("Παράδοση εργασίας"));
    setWindowModality(Qt::WindowModal);
    fraWhat->setObjectName(QStringLiteral("fraWhat"));
    chkNote->setObjectName(QStringLiteral("chkNote"));
    lblNothing->setObjectName(QStringLiteral("lblNothing"));
    lblNothing->setWordWrap(true);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    lblStatus->setWordWrap(true);
    cmdHandIn->setObjectName(QStringLiteral("cmdHandIn"));
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    txtClass->setPlaceholderText(QStringLiteral("π.χ. Β2"));

    auto *pupil = new QFormLayout;
    auto *nameLabel = new QLabel(QStringLiteral("&Όνομα:"));
    nameLabel->setBuddy(txtName);
    auto *classLabel = new QLabel(QStringLiteral("&Τμήμα:"));
    classLabel->setBuddy(txtClass);
    pupil->addRow(nameLabel, txtName);
    pupil->addRow(classLabel, txtClass);

    auto *what = new QVBoxLayout(fraWhat);
    what->addWidget(chkNote);
    what->addWidget(lblNothing);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdHandIn);
    buttons->addWidget(cmdCancel);
    cmdHandIn->setDefault(true);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(pupil);
    layout->addWidget(fraWhat);
    layout->addWidget(lblStatus);
    layout->addLayout(buttons);

    connect(
        cmdHandIn, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdHandIn_Click(); }); });
    connect(
        cmdCancel, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdCancel_Click(); }); });
    handin::Outbox &outbox = m_session.handIns();
    connect(&outbox, &handin::Outbox::statusChanged, this,
        [this](const QString &text) { platform::guarded([&] { showStatus(text); }); });
    // A bundle's end tells the status again even when its words did not change (a second
    // hand-in within the same minute); queued, since the outbox words it after the signal.
    const auto refresh
        = [this] { platform::guarded([this] { showStatus(m_session.handIns().statusText()); }); };
    connect(&outbox, &handin::Outbox::delivered, this, refresh, Qt::QueuedConnection);
    connect(&outbox, &handin::Outbox::queued, this, refresh, Qt::QueuedConnection);

    platform::guarded([this] { Form_Load(); });
}

frmHandIn::~frmHandIn() = default;

frmHandIn *frmHandIn::open(Session &session)
{
    return session.window<frmHandIn>(Session::Window::HandIn);
}

void frmHandIn::Form_Load()
{
    QSettings remembered(platform::userSettingsPath(), QSettings::IniFormat);
    txtName->setText(remembered.value(QLatin1String(NameKey)).toString().left(MostTyped));
    txtClass->setText(remembered.value(QLatin1String(ClassKey)).toString().left(MostTyped));

    m_note = handin::openNote(m_session);
    chkNote->setChecked(m_note != nullptr);
    chkNote->setVisible(m_note != nullptr);

    m_drawings = handin::openDrawings(m_session);
    auto *what = qobject_cast<QVBoxLayout *>(fraWhat->layout());
    for (int i = 0; i < m_drawings.size(); ++i) {
        auto *check = new QCheckBox(QStringLiteral("Σχέδιο %1: %2").arg(i + 1).arg(m_drawings.at(i).title));
        check->setObjectName(QStringLiteral("chkDrawing%1").arg(i + 1));
        check->setChecked(true);
        what->insertWidget(what->count() - 1, check);
        chkDrawings.append(check);
    }

    const bool anything = m_note || !m_drawings.isEmpty();
    lblNothing->setVisible(!anything);
    cmdHandIn->setEnabled(anything);
    showStatus(m_session.handIns().destinations().any() ? m_session.handIns().statusText() : QString());

    // The pupil types what is missing; a signed hand-in goes on with Enter.
    if (txtName->text().isEmpty())
        txtName->setFocus();
    else if (txtClass->text().isEmpty())
        txtClass->setFocus();
    else
        cmdHandIn->setFocus();
}

void frmHandIn::cmdHandIn_Click()
{
    const handin::Pupil pupil {txtName->text().simplified(), txtClass->text().simplified()};
    if (pupil.name.isEmpty()) {
        platform::MsgBox(QStringLiteral("Γράψε το όνομά σου."), platform::vbExclamation);
        txtName->setFocus();
        return;
    }
    if (pupil.className.isEmpty()) {
        platform::MsgBox(QStringLiteral("Γράψε το τμήμα σου, για παράδειγμα Β2."), platform::vbExclamation);
        txtClass->setFocus();
        return;
    }
    rememberPupil(pupil);

    QList<handin::File> files;
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        const auto restore = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
        files = gatherFiles();
    }
    if (files.isEmpty()) {
        platform::MsgBox(QStringLiteral("Δεν διάλεξες τίποτα για παράδοση."), platform::vbExclamation);
        return;
    }
    const QDateTime now = m_session.host().now();
    const QDateTime time = now.toOffsetFromUtc(now.offsetFromUtc());
    const handin::Bundle bundle = handin::makeBundle(pupil, handin::placeOf(m_session), time, files);
    if (bundle.zip.isEmpty()) {
        qCWarning(lcHandin).noquote() << "the bundle" << bundle.fileName << "could not be made";
        platform::MsgBox(
            QStringLiteral("Η εργασία δεν παραδόθηκε: δεν μπόρεσα να τη συσκευάσω."), platform::vbCritical);
        return;
    }

    handin::Outbox &outbox = m_session.handIns();
    if (!outbox.destinations().any()) {
        if (saveWhereChosen(bundle)) {
            m_lastBundle = bundle.fileName;
            handedIn();
        }
        return;
    }
    // Until the outbox tells how it went, through the event loop: a drop folder on a share
    // that hangs may never tell, and the window stays usable meanwhile.
    showStatus(QStringLiteral("Η εργασία παραδίδεται…"));
    if (!outbox.handIn(bundle)) {
        showStatus(QString());
        platform::MsgBox(
            QStringLiteral("Η εργασία δεν παραδόθηκε: δεν μπορώ να τη φυλάξω σε αυτόν τον υπολογιστή."),
            platform::vbCritical);
        return;
    }
    m_lastBundle = bundle.fileName;
    handedIn();
}

void frmHandIn::cmdCancel_Click()
{
    reject();
}

void frmHandIn::done(int result)
{
    if (m_session.window(Session::Window::HandIn, false) == this)
        m_session.setWindow(Session::Window::HandIn, nullptr);
    QDialog::done(result);
    deleteLater();
}

void frmHandIn::rememberPupil(const handin::Pupil &pupil)
{
    QDir().mkpath(QFileInfo(platform::userSettingsPath()).absolutePath());
    QSettings remembered(platform::userSettingsPath(), QSettings::IniFormat);
    remembered.setValue(QLatin1String(NameKey), pupil.name);
    remembered.setValue(QLatin1String(ClassKey), pupil.className);
    remembered.sync();
    if (remembered.status() != QSettings::NoError)
        qCWarning(lcHandin) << "the pupil's name and class could not be kept in" << remembered.fileName();
}

QList<handin::File> frmHandIn::gatherFiles()
{
    QList<handin::File> files;
    if (chkNote->isChecked() && m_note) {
        files.append({QString::fromLatin1(handin::NoteRtfName), handin::noteRtf(*m_note)});
        files.append({QString::fromLatin1(handin::NotePdfName), handin::notePdf(*m_note)});
    }
    int number = 0;
    for (int i = 0; i < m_drawings.size(); ++i) {
        const frmDrawing *drawing = m_drawings.at(i).window;
        if (!chkDrawings.at(i)->isChecked() || !drawing)
            continue;
        files.append({handin::drawingName(++number), handin::drawingPng(handin::drawingPicture(*drawing))});
    }
    return files;
}

bool frmHandIn::saveWhereChosen(const handin::Bundle &bundle)
{
    platform::DialogRequest request;
    request.kind = platform::DialogRequest::Kind::Save;
    request.title = QStringLiteral("Αποθήκευση εργασίας για παράδοση");
    request.nameFilters = {QStringLiteral("Εργασία για παράδοση (*.zip)")};
    request.defaultSuffix = QStringLiteral("zip");
    const QString lastFolder = m_session.notepad().lastFolder;
    request.folder = !lastFolder.isEmpty() && QFileInfo(lastFolder).isDir() ? lastFolder : QDir::homePath();
    request.fileName = bundle.fileName;
    // Whether to write over a file that is there is asked below, once, in the program's box.
    request.confirmOverwrite = false;
    const platform::DialogAnswer answer = m_session.host().dialog(request, this);
    if (!answer.accepted || answer.fileName.isEmpty())
        return false;
    QString path = answer.fileName;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".zip");
    if (QFileInfo::exists(path)
        && platform::MsgBox(QStringLiteral("Το αρχείο %1 υπάρχει ήδη.\r\nΝα αντικατασταθεί;")
                                .arg(QFileInfo(path).fileName()),
               platform::vbYesNo + platform::vbExclamation)
            != platform::vbYes)
        return false;
    richtext::writeFileWhole(path, bundle.zip);
    showStatus(QStringLiteral("Αποθηκεύτηκε στο αρχείο %1").arg(QDir::toNativeSeparators(path)));
    return true;
}

void frmHandIn::showStatus(const QString &text)
{
    lblStatus->setText(text);
    lblStatus->setVisible(!text.isEmpty());
}

void frmHandIn::handedIn()
{
    // Handed in once: Enter now closes the window, and a second hand-in is asked for by
    // pressing the button itself.
    cmdCancel->setText(QStringLiteral("Κλείσιμο"));
    cmdHandIn->setDefault(false);
    cmdCancel->setDefault(true);
    cmdCancel->setFocus();
}

void registerHandInWindows(Session &session)
{
    session.setWindowFactory(Session::Window::HandIn, [](Session &s) -> QWidget * {
        ShellWindow *shell = s.shell(false);
        return new frmHandIn(s, shell ? shell->window() : nullptr);
    });
}
