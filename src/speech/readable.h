#pragma once

#include <QString>

class QTextEdit;

namespace speech {

// A window that has something to read aloud: its selection, or else its whole text.
// Windows inherit it beside their widget class; the reader finds them by the focus and
// the activation, so no window needs to know the reader.
class Readable
{
public:
    virtual ~Readable() = default;
    virtual QString textToRead() const = 0;
    // The text box the words are read from, where each word is marked as the voice
    // reaches it; then the box's selection, or its text from the cursor on, is what is
    // read. None: textToRead() is only heard.
    virtual QTextEdit *textBoxToRead() const { return nullptr; }
    // A window without a text box that paints its text itself shows the word being read
    // here: `length` characters of textToRead() from `start`, until the next word or
    // clearWordHighlight(). By default the text is only heard.
    virtual void highlightWord(int start, int length)
    {
        Q_UNUSED(start);
        Q_UNUSED(length);
    }
    virtual void clearWordHighlight() {}
};

} // namespace speech
