#pragma once

#include <QDialog>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class Session;
class UpDown;

// "Παράγραφος": the alignment and the three indents of the selected paragraphs. The
// fields start empty at every showing, and only the fields touched since the last OK are
// applied; one shown unit is 100 twips.
class frmFormat final : public QDialog
{
    Q_OBJECT

public:
    frmFormat(Session &session, QWidget *owner);
    ~frmFormat() override;
    Q_DISABLE_COPY_MOVE(frmFormat)

    // The session's dialog, loaded (over its notes window) when there is none.
    static frmFormat *open(Session &session);

    // Controls.
    QLabel *const Label1;
    QComboBox *const imgCombo;
    QGroupBox *const Frame1;
    QGroupBox *const Frame2;
    QLabel *const Label2;
    QLabel *const Label3;
    QLineEdit *const Text1;
    UpDown *const UpDown1;
    QLabel *const Label4;
    QLineEdit *const Text2;
    UpDown *const UpDown2;
    QLabel *const Label5;
    QComboBox *const Combo1;
    QLineEdit *const Text3;
    UpDown *const UpDown3;
    QPushButton *const cmdOK;
    QPushButton *const cmdCancel;

    void cmdOK_Click();

private:
    Session &m_session;
    void Form_Load();
    void Text3_Change();
};
