#pragma once

#include <QDialog>

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class Session;
class UpDown;

// "Κουκίδες": turns the selected paragraphs into a bulleted list and places the bullet
// and the text, in units of 100 twips. Only a touched field brings the bullet.
class frmBullets final : public QDialog
{
    Q_OBJECT

public:
    frmBullets(Session &session, QWidget *owner);
    ~frmBullets() override;
    Q_DISABLE_COPY_MOVE(frmBullets)

    // The session's dialog, loaded (over its notes window) when there is none.
    static frmBullets *open(Session &session);

    // Controls.
    QGroupBox *const Frame2;
    QLabel *const Label3;
    QLineEdit *const Text1;
    UpDown *const UpDown1;
    QGroupBox *const Frame1;
    QLabel *const Label1;
    QLineEdit *const Text2;
    UpDown *const UpDown2;
    QPushButton *const cmdOK;
    QPushButton *const cmdCancel;

    void cmdOK_Click();

private:
    Session &m_session;
};
