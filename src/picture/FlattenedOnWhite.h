#pragma once

#include <QImage>

/// `image` as an opaque picture of 32 bits a pixel (Format_RGB32): where it is transparent, white
/// shows through, as paper would. Views paint a picture over their own background, a matter of
/// the desktop's colours; what is saved is the same everywhere. An opaque picture keeps its
/// colours. An image of 32 bits that nobody else holds is changed in place. Null for a null image,
/// or where memory runs out.
QImage flattenedOnWhite(QImage image);
