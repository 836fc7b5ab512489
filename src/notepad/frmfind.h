#pragma once

#include <QDialog>

class QCheckBox;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class Session;

// The find window over the notepad, modeless: it searches the notes up or down and
// replaces one occurrence at a time. In find mode its replace row is hidden.
class frmFind final : public QDialog
{
    Q_OBJECT

public:
    frmFind(Session &session, QWidget *owner);
    ~frmFind() override;
    Q_DISABLE_COPY_MOVE(frmFind)

    // The session's find window, made (over its notes window) when `create` is set and
    // there is none.
    static frmFind *open(Session &session, bool create = true);

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

    Session &m_session;
    bool m_unloaded = false;
    bool m_closing = false;
};
