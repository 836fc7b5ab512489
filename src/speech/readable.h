#pragma once

#include <QString>

namespace speech {

// A window that has something to read aloud: its selection, or else its whole text.
// Windows inherit it beside their widget class; the reader finds them by the focus and
// the activation, so no window needs to know the reader.
class Readable
{
public:
    virtual ~Readable() = default;
    virtual QString textToRead() const = 0;
};

} // namespace speech
