#pragma once

#include <QRgb>

#include <array>

/// The one palette of every GIF that is written, whatever the picture: a cube of 6 x 6 x 6
/// colours, and 40 greys between the six greys of the cube.
namespace fixedPalette {

constexpr int Size = 256;

/// The colours; all differ.
const std::array<QRgb, Size>& colours();

/// Index of the colour nearest to `colour` (by the sum of the squared differences of red, green
/// and blue; its alpha does not count). Of several that are equally near, always the same one.
quint8 nearest(QRgb colour);

} // namespace fixedPalette
