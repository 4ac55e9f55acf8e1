#include "picture/FlattenedOnWhite.h"

// Not drawn with QPainter: that reaches only so far as 32767 pixels.
QImage flattenedOnWhite(const QImage& image)
{
    if (!image.hasAlphaChannel())
        return image.convertToFormat(QImage::Format_RGB32);
    QImage opaque = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < opaque.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(opaque.scanLine(y));
        for (QRgb* pixel = line; pixel != line + opaque.width(); ++pixel) {
            // A premultiplied channel is no more than its alpha.
            const int white = 255 - qAlpha(*pixel);
            *pixel = qRgb(qRed(*pixel) + white, qGreen(*pixel) + white, qBlue(*pixel) + white);
        }
    }
    opaque.reinterpretAsFormat(QImage::Format_RGB32);
    return opaque;
}
