#pragma once

#include <QWidget>

class QLineEdit;
class QToolButton;

// A spinner of two arrow keys beside a text box of the paragraph and bullet dialogs:
// a whole Value between Min and Max, changed by Increment at each press.
class UpDown final : public QWidget
{
    Q_OBJECT

public:
    explicit UpDown(QWidget *parent = nullptr);
    Q_DISABLE_COPY_MOVE(UpDown)

    int Min = 0;
    int Max = 100;
    int Increment = 1;

    int Value() const { return m_value; }
    // Kept between Min and Max; Change comes only when the value moves.
    void setValue(int value);

    QToolButton *const upButton;
    QToolButton *const downButton;

signals:
    void Change();
    void UpClick();
    void DownClick();

private:
    int m_value = 0;
};

// The number of a field, with or without its unit " mm", through its spinner: the
// number goes to the spinner as its Value, and the spinner's Value is the answer. Text
// that is no number raises the run-time error 13.
int ParseMillimetres(QLineEdit &text, UpDown &spinner);

// The spinner's events write "Value Tag" into its text box; the box's Tag is "mm".
void bindSpinner(UpDown &spinner, QLineEdit &text);
