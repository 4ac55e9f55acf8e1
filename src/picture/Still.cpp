#include "picture/Still.h"

#include "picture/JpegPixels.h"
#include "picture/SmoothScale.h"
#include "picture/headers/PictureHeader.h"
#include "picture/headers/PngChunks.h"
#include "picture/headers/WebpChunks.h"

#include <QBuffer>
#include <QColor>
#include <QImageReader>

#include <algorithm>
#include <utility>

struct Still::Data
{
    QByteArray bytes;
    PictureHeader header; ///< Of `bytes`.
    QImage pixels;        ///< In place of `bytes` where there never were any.
};

namespace {

constexpr int BytesPerPixel = 4;

/// The decoder of bitmaps reads and converts row by row, be it a row of one pixel: fifty million
/// rows cost as much as four such pictures of a usual shape. JPEG and GIF have no longer sides.
constexpr int MaxSide = 65'535;

/// The decoder of GIFs takes a step for each pixel, however few codes there are, and where what is
/// below a frame is to be kept, it holds the picture twice.
constexpr qint64 MaxGifPixels = 30'000'000;

/// A kilobyte inflates to a megabyte of rows, each of which a decoder filters, converts, and where
/// they are interlaced visits several times.
constexpr qint64 MaxPngPixels = 20'000'000;
/// Samples of 16 bits are twice as much to inflate, to hold and to convert.
constexpr int DeepCost = 2;

/// No pixel of a WebP without losses needs a bit, but each goes through all transforms, and a
/// decoder holds it three times.
constexpr qint64 MaxWebpPixels = 16'000'000;
/// The tables for the codes of one block cost a decoder as much as thousands of pixels, and need
/// three bytes. Encoders make some 2,600 blocks at most.
constexpr qint64 MaxWebpBlocks = 4'000;

/// What a decoder may need beside the encoded bytes: the coefficients of a JPEG in several scans
/// and the whole picture. 25 megapixels whose colours are not subsampled reach it.
constexpr qint64 MaxDecoderBytes = 250'000'000;

/// Each scan of a JPEG visits all of its pixels, whether or not it brings any data: a kilobyte of
/// empty scans would cost seconds. 25 megapixels in ten scans, the usual number, reach it.
constexpr qint64 MaxScannedPixels = 250'000'000;

/// Arithmetic codes need no bits for what they expect, so each pixel of each scan, also past the
/// end of the data, may take a hundred steps. A picture of 1920 x 1080 pixels has so many.
constexpr qint64 MaxArithmeticPixels = 2'100'000;

/// The JPEG library appends each comment to a list that it walks from its start: time by the
/// square of their number.
constexpr int MaxJpegSegments = 10'000;

/// A pixel of four inks costs its decoder as much as two others: it has one more component, and
/// its colours are computed one by one.
constexpr int InkCost = 2;

bool isWithinBounds(const PictureHeader& header)
{
    if (header.pixels > Still::MaxPixels ||
        std::max(header.size.width(), header.size.height()) > MaxSide)
        return false;
    switch (header.format) {
    case PictureHeader::Format::Bmp:
        return true;
    case PictureHeader::Format::Gif:
        return header.pixels <= MaxGifPixels;
    case PictureHeader::Format::Png:
        return header.pixels * (header.deep ? DeepCost : 1) <= MaxPngPixels;
    case PictureHeader::Format::Webp:
        return header.pixels <= MaxWebpPixels && header.blocks <= MaxWebpBlocks;
    case PictureHeader::Format::Jpeg:
        break;
    }
    const qint64 pixels = header.pixels * (header.ink ? InkCost : 1);
    return pixels <= Still::MaxPixels && header.scans <= Still::MaxJpegScans &&
           header.segments <= MaxJpegSegments &&
           pixels * header.scans <= (header.arithmetic ? MaxArithmeticPixels : MaxScannedPixels) &&
           header.coefficientBytes + pixels * BytesPerPixel <= MaxDecoderBytes;
}

QByteArray formatName(PictureHeader::Format format)
{
    switch (format) {
    case PictureHeader::Format::Bmp:
        return "bmp";
    case PictureHeader::Format::Gif:
        return "gif";
    case PictureHeader::Format::Png:
        return "png";
    case PictureHeader::Format::Webp:
        return "webp";
    case PictureHeader::Format::Jpeg:
        break;
    }
    return "jpeg";
}

/// What the decoder is given: nothing that the (first) picture does not need.
QByteArray usedBytes(const QByteArray& bytes, const PictureHeader& header)
{
    switch (header.format) {
    case PictureHeader::Format::Png:
        return barePng(bytes);
    case PictureHeader::Format::Webp:
        return bareWebp(bytes);
    default:
        return QByteArray::fromRawData(bytes.constData(), header.usedBytes);
    }
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

    QByteArray used = usedBytes(bytes, header);
    QuietBuffer buffer(&used);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, formatName(header.format));
    reader.setAutoDetectImageFormat(false);
    reader.setDecideFormatFromContent(false);
    reader.setAutoTransform(false);

    QImage image;
    const bool isPng = header.format == PictureHeader::Format::Png;
    if (header.format == PictureHeader::Format::Jpeg) {
        if (wanted != header.size)
            reader.setScaledSize(wanted);
    } else if (isPng || header.format == PictureHeader::Format::Bmp) {
        // The decoder fills an image that fits already. Where a bitmap ends early or skips
        // pixels, they are then 0 and not what the memory held before; what is missing of a PNG is
        // grey.
        image = QImage(header.size, reader.imageFormat());
        if (isPng)
            image.fill(QColor(128, 128, 128));
        else
            image.fill(0);
    }
    const uchar* const given = std::as_const(image).constBits();
    if (reader.read(&image))
        return image;
    // The rows of a PNG up to where its data end or err are there by then.
    return isPng && image.constBits() == given ? image : QImage();
}

bool isPainted(QImage::Format format)
{
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32 ||
           format == QImage::Format_Grayscale8;
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
    if (!isPainted(image.format()))
        image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (wanted != header.size && image.hasAlphaChannel())
        image.convertTo(QImage::Format_ARGB32_Premultiplied);
    return smoothlyScaled(image, wanted);
}

/// The picture no smaller than `needed`, for a view; null where the decoder fails.
QImage decodeForView(const QByteArray& bytes, const PictureHeader& header, QSize needed)
{
    const QSize wanted = Still::halvedSize(header.size, needed);
    if (header.format == PictureHeader::Format::Jpeg) {
        // An eighth of a refresh's time less than by Qt's reader. And should a decoder meet scans
        // that the header does not tell, it gives up: all bounds go by what that tells.
        const auto used = QByteArrayView(bytes).first(header.usedBytes);
        if (const auto image = jpegPixels(used, wanted, header.scans))
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
    // Whatever follows the picture would only take memory, for as long as it is kept.
    const QByteArray own = bytes.left(header->fileBytes);
    const QImage image = decodeForView(own, *header, needed);
    if (image.isNull())
        return {};
    if (decoded)
        *decoded = image;
    Still still;
    still.m_data = std::make_shared<const Data>(Data{own, *header, {}});
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

qint64 Still::heldBytes() const
{
    return m_data ? m_data->bytes.size() + m_data->pixels.sizeInBytes() : 0;
}

QImage Still::image() const
{
    return imageNoSmallerThan({});
}

QImage Still::imageNoSmallerThan(QSize needed) const
{
    if (!m_data)
        return {};
    if (!m_data->pixels.isNull())
        return smoothlyScaled(m_data->pixels, halvedSize(size(), needed));
    return needed.isEmpty() ? decode(m_data->bytes, m_data->header, size())
                            : decodeForView(m_data->bytes, m_data->header, needed);
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
