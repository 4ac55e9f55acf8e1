#include "picture/EncodeBitmap.h"

#include "picture/FlattenedOnWhite.h"

#include <QBuffer>
#include <QImageWriter>

QByteArray encodeBitmap(const QImage& image)
{
    // The writer takes the bits of its bitmaps from the image's format.
    const QImage pixels = flattenedOnWhite(image).convertToFormat(QImage::Format_RGB888);
    if (pixels.isNull())
        return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return QImageWriter(&buffer, "bmp").write(pixels) ? bytes : QByteArray();
}
