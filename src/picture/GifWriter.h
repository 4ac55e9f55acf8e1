#pragma once

#include <QByteArray>
#include <QImage>

/// `image` as a GIF file of one frame and 8 bits a pixel, in the fixed palette: each pixel has
/// the nearest of its colours, without dithering. Transparent parts are put over white. Empty for
/// a null image, one of more than 65535 pixels in a direction (a GIF cannot tell its size), or
/// where the encoder fails.
QByteArray encodeGif(QImage image);
