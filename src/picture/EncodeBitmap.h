#pragma once

#include <QByteArray>
#include <QImage>

/// `image` as a Windows bitmap file of 24 bits a pixel, transparent parts over white. Empty for a
/// null image, or where the encoder fails.
QByteArray encodeBitmap(const QImage& image);
