#include "picture/Still.h"

#include "picture/JpegPixels.h"
#include "picture/PictureHeader.h"
#include "picture/SmoothScale.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>

struct Still::Data
{
    QByteArray bytes;
    PictureHeader header; ///< Of `bytes`.
    QImage pixels;        ///< In place of `bytes` where there never were any.
};

namespace {

constexpr int BytesPerPixel = 4;

/// What a decoder may need beside the encoded bytes: the coefficients of a JPEG in several scans
/// and the whole picture. 40 megapixels whose colours are not subsampled reach it.
constexpr qint64 MaxDecoderBytes = 400'000'000;

/// Each scan of a JPEG visits all of its pixels, whether or not it brings any data. This is the
/// largest picture in ten scans, the usual number.
constexpr qint64 MaxScannedPixels = 500'000'000;

/// Arithmetic codes need no bits for what they expect, so each pixel of each scan, also past the
/// end of the data, may take a hundred steps.
constexpr qint64 MaxArithmeticPixels = 8'000'000;

/// The JPEG library appends each comment to a list that it walks from its start.
constexpr int MaxJpegSegments = 10'000;

bool isWithinBounds(const PictureHeader& header)
{
    if (header.pixels > Still::MaxPixels)
        return false;
    if (header.format != PictureHeader::Format::Jpeg)
        return true;
    return header.scans <= Still::MaxJpegScans && header.segments <= MaxJpegSegments &&
           header.pixels * header.scans <=
               (header.arithmetic ? MaxArithmeticPixels : MaxScannedPixels) &&
           header.coefficientBytes + header.pixels * BytesPerPixel <= MaxDecoderBytes;
}

QByteArray formatName(PictureHeader::Format format)
{
    switch (format) {
    case PictureHeader::Format::Bmp:
        return "bmp";
    case PictureHeader::Format::Gif:
        return "gif";
    case PictureHeader::Format::Jpeg:
        break;
    }
    return "jpeg";
}

/// Refuses to go past its end without a warning: a bitmap may well ask for that.
class QuietBuffer : public QBuffer
{
public:
    using QBuffer::QBuffer;
    bool seek(qint64 position) override { return position <= size() && QBuffer::seek(position); }
};

/// The whole picture, or a JPEG at `wanted`, as the decoder leaves it.
QImage read(const QByteArray& bytes, const PictureHeader& header, QSize wanted)
{
    // The limit is the whole process's, and at first too low for the largest picture.
    constexpr int bytesPerMiB = 1024 * 1024;
    QImageReader::setAllocationLimit(int(Still::MaxPixels * BytesPerPixel / bytesPerMiB) + 1);

    QByteArray used = QByteArray::fromRawData(bytes.constData(), header.usedBytes);
    QuietBuffer buffer(&used);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, formatName(header.format));
    reader.setAutoDetectImageFormat(false);
    reader.setDecideFormatFromContent(false);
    reader.setAutoTransform(false);

    QImage image;
    if (header.format == PictureHeader::Format::Jpeg) {
        if (wanted != header.size)
            reader.setScaledSize(wanted);
    } else if (header.format == PictureHeader::Format::Bmp) {
        // The decoder fills an image that fits already. Where a bitmap ends early or skips
        // pixels, they are then 0 and not what the memory held before.
        image = QImage(header.size, reader.imageFormat());
        image.fill(0);
    }
    return reader.read(&image) ? image : QImage();
}

/// The picture at `wanted`; null where the decoder fails or gives another size.
QImage decode(const QByteArray& bytes, const PictureHeader& header, QSize wanted)
{
    QImage image = read(bytes, header, wanted);
    if (header.format == PictureHeader::Format::Jpeg)
        return image.size() == wanted ? image : QImage();
    if (image.size() != header.size)
        return {};
    // In place where possible, so that no third copy is needed. A pixel may name a colour that
    // the table has not: the conversion minds that, painting does not.
    if (image.pixelFormat().colorModel() == QPixelFormat::Indexed)
        image.convertTo(QImage::Format_RGB32);
    else if (wanted != header.size && image.hasAlphaChannel())
        image.convertTo(QImage::Format_ARGB32_Premultiplied);
    return smoothlyScaled(image, wanted);
}

/// The picture no smaller than `needed`, for a view; null where the decoder fails.
QImage decodeForView(const QByteArray& bytes, const PictureHeader& header, QSize needed)
{
    const QSize wanted = Still::halvedSize(header.size, needed);
    if (header.format == PictureHeader::Format::Jpeg && !needed.isEmpty()) {
        // An eighth of a refresh's time less than by Qt's reader.
        const auto used = QByteArrayView(bytes).first(header.usedBytes);
        if (const auto image = jpegPixels(used, wanted))
            return *image;
    }
    return decode(bytes, header, wanted);
}

} // namespace

Still Still::fromBytes(const QByteArray& bytes, QSize needed, QImage* decoded)
{
    if (bytes.size() > MaxEncodedBytes)
        return {};
    const auto header = PictureHeader::read(bytes);
    if (!header || !isWithinBounds(*header))
        return {};
    const QImage image = decodeForView(bytes, *header, needed);
    if (image.isNull())
        return {};
    if (decoded)
        *decoded = image;
    Still still;
    still.m_data = std::make_shared<const Data>(Data{bytes, *header, {}});
    return still;
}

Still Still::fromImage(const QImage& image)
{
    Still still;
    if (!image.isNull())
        still.m_data = std::make_shared<const Data>(Data{{}, {}, image});
    return still;
}

QSize Still::size() const
{
    if (!m_data)
        return {0, 0};
    return m_data->pixels.isNull() ? m_data->header.size : m_data->pixels.size();
}

QByteArray Still::bytes() const
{
    return m_data ? m_data->bytes : QByteArray();
}

QImage Still::image() const
{
    return imageNoSmallerThan({});
}

QImage Still::imageNoSmallerThan(QSize needed) const
{
    if (!m_data)
        return {};
    return m_data->pixels.isNull() ? decodeForView(m_data->bytes, m_data->header, needed)
                                   : smoothlyScaled(m_data->pixels, halvedSize(size(), needed));
}

QSize Still::halvedSize(QSize size, QSize needed)
{
    constexpr int mostHalvings = 3;
    if (size.isEmpty() || needed.isEmpty())
        return size;
    QSize halved = size;
    for (int i = 1; i <= mostHalvings; ++i) {
        const QSize next(std::max(size.width() >> i, 1), std::max(size.height() >> i, 1));
        if (next.width() < needed.width() || next.height() < needed.height())
            break;
        halved = next;
    }
    return halved;
}
