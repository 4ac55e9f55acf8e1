#include "support/Pictures.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QWidget>

QImage plainImage(QSize size, const QColor& colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

QImage checkerboard(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, (x + y) % 2 ? 0xffffffff : 0xff000000);
    }
    return image;
}

QImage devicePixels(QWidget& widget)
{
    QImage image = widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
    image.setDevicePixelRatio(1);
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

QByteArray stripedPicture(const QColor& colour)
{
    QImage image = plainImage({160, 120}, colour);
    for (int x = 0; x < image.width(); ++x)
        image.setPixelColor(x, x % 7, x % 2 ? Qt::black : Qt::white);
    return encodedImage(image);
}

QByteArray smallGif()
{
    return QByteArray::fromHex("47494638396102000200800000ffffff00000021f90400000000002c00000000"
                               "020002000002028451003b");
}

QByteArray plainMovie(int frames)
{
    QByteArrayList parts;
    for (int i = 0; i < frames; ++i)
        parts << encodedPicture({160, 120}, QColor::fromHsv(i * 37 % 360, 255, 255));
    return parts.join("&IMAGE&");
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
