#pragma once

#include <QColor>
#include <QPointer>
#include <QTextEdit>

namespace speech {

// The colours of the word being read: black on a highlighter's yellow, set both, so the
// word reads the same under any desktop theme (contrast 15:1).
QColor readingWordForeground();
QColor readingWordBackground();

// Marks one stretch of a text box as the word being read, beside the box's other extra
// selections (a spelling check's, ...), which it leaves as they are; scrolls the box so
// that the word is in view without moving the pupil's cursor or selection.
class WordHighlight final
{
public:
    WordHighlight() = default;
    ~WordHighlight() { clear(); }
    Q_DISABLE_COPY_MOVE(WordHighlight)

    void show(QTextEdit *box, int position, int length);
    // Takes the mark away, leaving the box's other extra selections.
    void clear();

    QTextEdit *box() const { return m_box; }
    // Where the mark is; -1 when there is none.
    int position() const { return m_box ? m_position : -1; }
    int length() const { return m_length; }

    // Whether an extra selection is this mark (by a property of its format).
    static bool isMark(const QTextEdit::ExtraSelection &selection);

private:
    static void removeMark(QTextEdit *box);
    static void scrollIntoView(QTextEdit *box, const QTextCursor &word);

    QPointer<QTextEdit> m_box;
    int m_position = -1;
    int m_length = 0;
};

} // namespace speech
