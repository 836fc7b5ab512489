#include "wordhighlight.h"

#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>

namespace speech {

namespace {

// Tells our mark from the other extra selections of the box.
constexpr int MarkProperty = QTextFormat::UserProperty + 0x5e1;

} // namespace

QColor readingWordForeground()
{
    return QColor(0x00, 0x00, 0x00);
}

QColor readingWordBackground()
{
    return QColor(0xFF, 0xD8, 0x4D);
}

bool WordHighlight::isMark(const QTextEdit::ExtraSelection &selection)
{
    return selection.format.boolProperty(MarkProperty);
}

void WordHighlight::removeMark(QTextEdit *box)
{
    QList<QTextEdit::ExtraSelection> selections = box->extraSelections();
    if (selections.removeIf(isMark) > 0)
        box->setExtraSelections(selections);
}

void WordHighlight::show(QTextEdit *box, int position, int length)
{
    if (m_box && m_box != box)
        clear();
    m_box = box;
    m_position = position;
    m_length = length;
    if (!box)
        return;
    const int size = box->document()->characterCount() - 1;
    if (position < 0 || position >= size)
        return;
    QTextCursor word(box->document());
    word.setPosition(position);
    word.setPosition(qMin(position + length, size), QTextCursor::KeepAnchor);

    QTextEdit::ExtraSelection mark;
    mark.cursor = word;
    mark.format.setForeground(readingWordForeground());
    mark.format.setBackground(readingWordBackground());
    mark.format.setProperty(MarkProperty, true);
    QList<QTextEdit::ExtraSelection> selections = box->extraSelections();
    selections.removeIf(isMark);
    selections.append(mark);
    box->setExtraSelections(selections);
    scrollIntoView(box, word);
}

void WordHighlight::clear()
{
    if (m_box)
        removeMark(m_box);
    m_box = nullptr;
    m_position = -1;
    m_length = 0;
}

void WordHighlight::scrollIntoView(QTextEdit *box, const QTextCursor &word)
{
    // ensureCursorVisible() would need the box's own cursor on the word, and that would
    // take away the pupil's place and selection.
    QTextCursor start = word;
    start.setPosition(word.selectionStart());
    QTextCursor end = word;
    end.setPosition(word.selectionEnd());
    const QRect first = box->cursorRect(start);
    const QRect last = box->cursorRect(end);
    const int top = qMin(first.top(), last.top());
    const int bottom = qMax(first.bottom(), last.bottom());
    const int height = box->viewport()->height();
    const int margin = qMin(first.height(), height / 4);
    QScrollBar *bar = box->verticalScrollBar();
    if (top < 0)
        bar->setValue(bar->value() + top - margin);
    else if (bottom > height)
        bar->setValue(bar->value() + bottom - height + margin);
    const int width = box->viewport()->width();
    QScrollBar *across = box->horizontalScrollBar();
    if (first.left() < 0)
        across->setValue(across->value() + first.left());
    else if (last.right() > width)
        across->setValue(across->value() + last.right() - width);
}

} // namespace speech
