#pragma once

#include "shared/Still.h"

#include <QByteArray>
#include <QString>

/// `image` as a JPEG file (JFIF) of 24 bits a pixel and quality 75. Empty for a null image, or
/// where the encoder fails.
QByteArray encodeJpeg(const QImage& image);
