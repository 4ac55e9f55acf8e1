#include "viewer/SaveImage.h"

#include <QBuffer>
#include <QImageWriter>

namespace {

constexpr int JpegQuality = 75;

} // namespace

QByteArray encodeJpeg(const QImage& image)
{
    if (image.isNull())
        return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(JpegQuality);
    return writer.write(image.convertToFormat(QImage::Format_RGB32)) ? bytes : QByteArray();
}
