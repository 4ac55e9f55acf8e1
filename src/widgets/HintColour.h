#pragma once

#include <QPalette>

#include <cmath>

/// The colour of a hint where there is nothing else to read yet: the palette's own for such texts,
/// unless that is hardly seen on `ground`, as on dark desktops that set all colours but this one;
/// then `text`, made faint.
inline QColor hintColour(const QPalette& palette, QPalette::ColorRole ground,
                         QPalette::ColorRole text)
{
    constexpr int leastContrast = 60;
    constexpr int faint = 160;
    QColor colour = palette.color(QPalette::PlaceholderText);
    const int difference = colour.lightness() - palette.color(ground).lightness();
    if (std::abs(difference * double(colour.alphaF())) < leastContrast) {
        colour = palette.color(text);
        colour.setAlpha(faint);
    }
    return colour;
}
