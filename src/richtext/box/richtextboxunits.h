#pragma once

#include "runtimeerror.h"
#include "twips.h"

#include <cmath>

// Units and checks shared by the parts of RichTextBox. Indents and tab stops live in
// the document in pixels and are told in twips.
namespace richtextbox {

// The control's "Invalid property value".
inline constexpr int InvalidPropertyValue = 380;

[[noreturn]] inline void throwInvalidPropertyValue()
{
    throw platform::RuntimeError(InvalidPropertyValue, QStringLiteral("Μη έγκυρη τιμή ιδιότητας"));
}

inline void requireNotNegative(int value)
{
    if (value < 0)
        throwInvalidPropertyValue();
}

inline double pixelsFromTwips(int twips)
{
    return double(twips) / platform::TwipsPerPixelX;
}

inline int twipsFromPixels(double pixels)
{
    return int(std::lround(pixels * platform::TwipsPerPixelX));
}

} // namespace richtextbox
