#pragma once

#include <QDialog>

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class UpDown;

// "Κουκίδες": turns the selected paragraphs into a bulleted list and places the bullet
// and the text, in units of 100 twips. Only a touched field brings the bullet.
class frmBullets final : public QDialog
{
    Q_OBJECT

public:
    explicit frmBullets(QWidget *owner = nullptr);
    ~frmBullets() override;
    Q_DISABLE_COPY_MOVE(frmBullets)

    static frmBullets *instance(QWidget *owner = nullptr);

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

    // State of the window that outlives its unloading: only OK clears the flags.
    static inline bool BulletChanged = false;
    static inline bool TextChanged = false;
    static inline QString BulIndentation;
    static inline QString BulTextIndent;

    void cmdOK_Click();
};
