#pragma once

#include <QImage>

/// `image` shrunk to `size`: each pixel is the mean of the area that it covers, a part of a pixel
/// counted as that part. Within 2 of 255 of Qt's scaler, in a third of its time.
///
/// Null where it cannot: a side grows, `size` is empty, the format is none of four bytes a pixel
/// that is opaque or premultiplied, memory runs out, or the processor has no SSE2. Qt's scaler is
/// there for these.
QImage areaScaled(const QImage& image, QSize size);
