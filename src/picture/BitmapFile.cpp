#include "picture/BitmapFile.h"

#include "picture/FlattenedOnWhite.h"

#include <QtEndian>

#include <cstring>
#include <utility>

namespace {

constexpr int BitmapHeaderBytes = 54;

template<typename T>
void appendLittle(QByteArray& bytes, T value)
{
    value = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

/// BITMAPFILEHEADER and BITMAPINFOHEADER.
QByteArray bitmapHeader(const QImage& image, qint64 pixelBytes)
{
    constexpr qint32 infoBytes = 40;
    constexpr qint16 planes = 1;
    constexpr qint16 bits = 24;
    constexpr qint32 none = 0;
    QByteArray header("BM");
    appendLittle(header, quint32(BitmapHeaderBytes + pixelBytes));
    appendLittle(header, none);
    appendLittle(header, qint32(BitmapHeaderBytes));
    appendLittle(header, infoBytes);
    appendLittle(header, qint32(image.width()));
    appendLittle(header, qint32(image.height()));
    appendLittle(header, planes);
    appendLittle(header, bits);
    appendLittle(header, none); // Not compressed.
    appendLittle(header, quint32(pixelBytes));
    appendLittle(header, qint32(image.dotsPerMeterX()));
    appendLittle(header, qint32(image.dotsPerMeterY()));
    appendLittle(header, none); // No colour table.
    appendLittle(header, none);
    return header;
}

/// Rows of three bytes a pixel, filled up to a multiple of four, in place of those of four.
void packRows(QImage& image, qsizetype lineBytes)
{
    uchar* pixels = image.bits();
    for (int y = 0; y < image.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(pixels + y * image.bytesPerLine());
        uchar* to = pixels + y * lineBytes;
        uchar* const end = to + lineBytes;
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = from[x];
            *to++ = uchar(qBlue(pixel));
            *to++ = uchar(qGreen(pixel));
            *to++ = uchar(qRed(pixel));
        }
        std::memset(to, 0, size_t(end - to));
    }
}

} // namespace

BitmapFile::BitmapFile(QImage image)
    : m_pixels(flattenedOnWhite(std::move(image)))
{
    if (m_pixels.isNull())
        return;
    m_pixels.mirror(); // A bitmap begins with its lowest row.
    const qsizetype lineBytes = (qsizetype(m_pixels.width()) * 3 + 3) / 4 * 4;
    const qsizetype pixelBytes = lineBytes * m_pixels.height();
    const QByteArray header = bitmapHeader(m_pixels, pixelBytes);
    packRows(m_pixels, lineBytes);
    auto* memory = reinterpret_cast<char*>(m_pixels.bits());
    if (m_pixels.sizeInBytes() < header.size() + pixelBytes) {
        // A few pixels, or a few in each row.
        m_bytes = header + QByteArray::fromRawData(memory, pixelBytes);
        return;
    }
    std::memmove(memory + header.size(), memory, size_t(pixelBytes));
    std::memcpy(memory, header.constData(), size_t(header.size()));
    m_bytes = QByteArray::fromRawData(memory, header.size() + pixelBytes);
}
