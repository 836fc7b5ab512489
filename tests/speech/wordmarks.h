#pragma once

#include <wordhighlight.h>

#include <QList>
#include <QTextEdit>

namespace testing {

// The word marks a text box shows, without the box's other extra selections.
inline QList<QTextEdit::ExtraSelection> marksIn(QTextEdit *box)
{
    QList<QTextEdit::ExtraSelection> marks;
    for (const QTextEdit::ExtraSelection &s : box->extraSelections()) {
        if (speech::WordHighlight::isMark(s))
            marks << s;
    }
    return marks;
}

} // namespace testing
