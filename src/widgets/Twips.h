#pragma once

#include <cmath>

/// Layout rules count twips: 15 to a logical pixel.
inline constexpr int TwipsPerPixel = 15;

/// The nearest whole number of logical pixels.
inline int pixelsFromTwips(int twips)
{
    return static_cast<int>(std::lround(static_cast<double>(twips) / TwipsPerPixel));
}
