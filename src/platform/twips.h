#pragma once

#include <cmath>

// Window geometry in this program is reasoned about in twips; the one conversion to
// logical pixels is here. One logical pixel is 15 twips on every screen, and the device
// pixel ratio takes care of HiDPI below that.
namespace platform {

inline constexpr int TwipsPerPixelX = 15;
inline constexpr int TwipsPerPixelY = 15;

constexpr int pixelsFromTwipsX(double twips) { return static_cast<int>(std::lround(twips / TwipsPerPixelX)); }
constexpr int pixelsFromTwipsY(double twips) { return static_cast<int>(std::lround(twips / TwipsPerPixelY)); }
constexpr int twipsFromPixelsX(int pixels) { return pixels * TwipsPerPixelX; }
constexpr int twipsFromPixelsY(int pixels) { return pixels * TwipsPerPixelY; }

} // namespace platform
