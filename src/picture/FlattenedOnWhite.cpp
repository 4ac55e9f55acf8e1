#include "picture/FlattenedOnWhite.h"

// Not drawn with QPainter: that reaches only so far as 32767 pixels.
QImage flattenedOnWhite(QImage image)
{
    if (!image.hasAlphaChannel()) {
        image.convertTo(QImage::Format_RGB32);
        return image;
    }
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (QRgb* pixel = line; pixel != line + image.width(); ++pixel) {
            // A premultiplied channel is no more than its alpha.
            const int white = 255 - qAlpha(*pixel);
            *pixel = qRgb(qRed(*pixel) + white, qGreen(*pixel) + white, qBlue(*pixel) + white);
        }
    }
    image.reinterpretAsFormat(QImage::Format_RGB32);
    return image;
}
