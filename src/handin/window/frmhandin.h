#pragma once

#include "handinwork.h"

#include <bundle.h>

#include <QDialog>
#include <QList>
#include <QPointer>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class RichTextBox;
class Session;

// «Παράδοση εργασίας»: the pupil signs the work with name and class, picks what goes (the
// open note, the activity's drawings, all of it at first) and hands it in. The bundle goes
// to the session's outbox, which sends it to the school's drop folder or WebDAV share; on
// a computer with neither, the pupil saves it where the pupil chooses. The window shows
// how the hand-in went, and so does the shell.
class frmHandIn final : public QDialog
{
    Q_OBJECT

public:
    explicit frmHandIn(Session &session, QWidget *parent = nullptr);
    ~frmHandIn() override;
    Q_DISABLE_COPY_MOVE(frmHandIn)

    // The session's hand-in window, made when there is none.
    static frmHandIn *open(Session &session);

    // Controls.
    QLineEdit *const txtName;
    QLineEdit *const txtClass;
    QGroupBox *const fraWhat;
    QCheckBox *const chkNote;
    QList<QCheckBox *> chkDrawings; // one per drawing, in the order of drawings()
    QLabel *const lblNothing;
    QLabel *const lblStatus;
    QPushButton *const cmdHandIn;
    QPushButton *const cmdCancel;

    // The drawings offered, as the window found them when it opened.
    const QList<handin::OpenDrawing> &drawings() const { return m_drawings; }
    // The last bundle handed in or saved by this window; empty before.
    const QString &LastBundle() const { return m_lastBundle; }

    // Handlers.
    void cmdHandIn_Click();
    void cmdCancel_Click();

    // Closed by a button, Escape or the frame: the next request makes a fresh window,
    // which finds the drawings open then.
    void done(int result) override;

private:
    void Form_Load();
    void rememberPupil(const handin::Pupil &pupil);
    QList<handin::File> gatherFiles();
    // True when the bundle was written where the pupil chose.
    bool saveWhereChosen(const handin::Bundle &bundle);
    void showStatus(const QString &text);
    void handedIn();

    Session &m_session;
    QPointer<RichTextBox> m_note;
    QList<handin::OpenDrawing> m_drawings;
    QString m_lastBundle;
};

// Makes the hand-in window the session's (Session::Window::HandIn).
void registerHandInWindows(Session &session);
