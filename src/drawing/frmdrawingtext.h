#pragma once

#include <QDialog>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;

// "Εισαγωγή Κειμένου": asks the Text tool for one line of text and its font, shows the
// text in that font as it will look, and hands both to the drawing window.
class frmDrawingText final : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmDrawingText)

public:
    explicit frmDrawingText(QWidget *parent = nullptr);
    ~frmDrawingText() override;

    // Controls. The font of txtText is the font in force.
    QLineEdit *const txtText;
    QGroupBox *const Frame1;
    QComboBox *const cmbFontName;
    QComboBox *const cmbFontSize;
    QCheckBox *const chcBold;
    QCheckBox *const chcItalics;
    QPushButton *const cmdApply;
    QPushButton *const cmdCancel;

    // Event handlers.
    void chcBold_Click();
    void chcItalics_Click();
    void cmbFontName_Click();
    void cmbFontSize_Click();
    void cmdApply_Click();
    void cmdCancel_Click();

signals:
    void WriteString(const QFont &font, const QString &text);

private:
    void Form_Load();
    // Shows the whole text selected, then applies one control's value.
    template<typename Apply> void applyFontControl(Apply apply);
};
