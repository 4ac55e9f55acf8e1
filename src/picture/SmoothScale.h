#pragma once

#include <QImage>

/// `image` at `size`, smoothly in both directions: means where it shrinks, blends where it grows.
/// Where it shrinks to less than a sixteenth, only sixteen samples count for each of its pixels,
/// so that a picture of a million lines costs no more than one of ten thousand.
/// Any sizes may be asked for. Null for a null image, and where memory runs out.
QImage smoothlyScaled(const QImage& image, QSize size);
