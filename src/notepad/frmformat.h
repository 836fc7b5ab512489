#pragma once

#include <QDialog>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class UpDown;

// "Παράγραφος": the alignment and the three indents of the selected paragraphs. The
// fields start empty at every showing, and only the fields touched since the last OK are
// applied; one shown unit is 100 twips.
class frmFormat final : public QDialog
{
    Q_OBJECT

public:
    explicit frmFormat(QWidget *owner = nullptr);
    ~frmFormat() override;
    Q_DISABLE_COPY_MOVE(frmFormat)

    // The single instance, loaded when there is none.
    static frmFormat *instance(QWidget *owner = nullptr);

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

    // State of the window that outlives its unloading: only OK clears the flags.
    static inline bool LeftChanged = false;
    static inline bool RightChanged = false;
    static inline bool HangingChanged = false;
    static inline bool FirstLineChanged = false;
    static inline QString Indentation;
    static inline QString RightIndentation;
    static inline QString HangingIndentation;

    void cmdOK_Click();

private:
    void Form_Load();
    void Text3_Change();
};
