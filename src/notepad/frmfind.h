#pragma once

#include <QDialog>

class QCheckBox;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

// The find window over the notepad, modeless: it searches the notes up or down and
// replaces one occurrence at a time. In find mode its replace row is hidden.
class frmFind final : public QDialog
{
    Q_OBJECT

public:
    explicit frmFind(QWidget *owner = nullptr);
    ~frmFind() override;
    Q_DISABLE_COPY_MOVE(frmFind)

    // The single instance, loaded when `create` is set and there is none.
    static frmFind *instance(bool create, QWidget *owner = nullptr);

    // Controls.
    QLabel *const lbFind;
    QLineEdit *const txtFind;
    QLabel *const lblRep;
    QLineEdit *const TxtRep;
    QFrame *const Frame1;
    QGroupBox *const frdirect;
    QRadioButton *const optionDirection[2];
    QCheckBox *const ChWholeWord;
    QCheckBox *const chCase;
    QPushButton *const cmdFind;
    QPushButton *const cmdReplace;
    QPushButton *const cmdCancel;

    // The body of a press of cmdReplace: the first opens the replace row, the next
    // replace.
    void LoadReplace();

    void cmdFind_Click();
    void cmdCancel_Click();

    // Escape closes the window as Ακύρωση's close does, unloading it.
    void reject() override;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void Form_Load();

    bool m_unloaded = false;
    bool m_closing = false;
};
