#pragma once

// Small helpers shared by the RichTextBox tests.

#include <richtextbox.h>
#include <runtimeerror.h>

#include <functional>

namespace richtextboxtest {

constexpr quint32 Red = 0x0000FF; // RGB(255, 0, 0)
constexpr quint32 Blue = 0xFF0000; // RGB(0, 0, 255)

// The number of the run-time error a statement raises, or 0 when it raises none.
inline int errorNumberOf(const std::function<void()> &statement)
{
    try {
        statement();
    } catch (const platform::RuntimeError &e) {
        return e.number();
    }
    return 0;
}

inline void select(RichTextBox &box, int start, int length)
{
    box.setSelStart(start);
    box.setSelLength(length);
}

} // namespace richtextboxtest
