#include "support/Pictures.h"

#include <QBuffer>
#include <QRandomGenerator>

QImage plainImage(QSize size, const QColor& colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

QByteArray encodedImage(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format))
        qFatal("cannot write %s", format);
    return bytes;
}

QByteArray encodedPicture(QSize size, const QColor& colour, const char* format)
{
    return encodedImage(plainImage(size, colour), format);
}

QByteArray smallGif()
{
    return QByteArray::fromHex("47494638396102000200800000ffffff00000021f90400000000002c00000000"
                               "020002000002028451003b");
}

QByteArray largePicture(int bytes)
{
    QRandomGenerator random(1);
    for (int side = 64;; side *= 2) {
        QImage image(side, side, QImage::Format_RGB32);
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x)
                image.setPixel(x, y, random.generate());
        }
        const QByteArray encoded = encodedImage(image);
        if (encoded.size() >= bytes)
            return encoded;
    }
}
