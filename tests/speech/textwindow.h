#pragma once

// A window with a text to read, for the reading-aloud tests.

#include <readable.h>

#include <QKeyEvent>
#include <QTest>
#include <QTextEdit>
#include <QVBoxLayout>

namespace testing {

// A window with a text box, that offers its selection or else the whole of it, and counts
// the Escapes that reach it.
class TextWindow final : public QWidget, public speech::Readable
{
public:
    explicit TextWindow(const QString &text, QWidget *parent = nullptr)
        : QWidget(parent)
        , box(new QTextEdit(this))
    {
        box->setPlainText(text);
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(box);
        box->setReadOnly(true);
    }
    QString textToRead() const override
    {
        const QString selected = box->textCursor().selectedText();
        return selected.isEmpty() ? box->toPlainText() : selected;
    }
    QTextEdit *textBoxToRead() const override { return box; }
    QTextEdit *const box;
    int escapes = 0;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Escape)
            ++escapes;
        QWidget::keyPressEvent(event);
    }
};

// Shows a text window, active and with the focus in its text.
inline TextWindow *showTextWindow(const QString &text)
{
    auto *window = new TextWindow(text);
    window->show();
    window->activateWindow();
    window->box->setFocus();
    if (!QTest::qWaitForWindowActive(window))
        qWarning("the window did not become active");
    return window;
}

} // namespace testing
