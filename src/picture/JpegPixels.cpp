#include "picture/JpegPixels.h"

#include <QLoggingCategory>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio> // jpeglib.h needs it before itself
#include <vector>

#include <jpeglib.h>

namespace {

/// The category of Qt's own reader, so that one rule speaks for both.
Q_LOGGING_CATEGORY(lcJpeg, "qt.gui.imageio.jpeg")

/// One decompression. The library leaves by longjmp where it gives up: nothing that needs to be
/// destroyed lives in the functions that call it.
class JpegDecompression
{
public:
    explicit JpegDecompression(int mostScans);
    ~JpegDecompression() { jpeg_destroy_decompress(&m_info); }
    Q_DISABLE_COPY_MOVE(JpegDecompression)

    /// False where the decoder fails.
    bool readHeader(QByteArrayView bytes);
    bool hasThreeColours() const;
    bool isGrey() const { return m_info.jpeg_color_space == JCS_GRAYSCALE; }
    QSize wholeSize() const { return {int(m_info.image_width), int(m_info.image_height)}; }

    /// Begins to decode, one pixel out of `shrink` in each direction. False where that fails.
    bool start(unsigned int shrink);
    QSize outputSize() const { return {int(m_info.output_width), int(m_info.output_height)}; }

    /// Fills `lines`, which point to as many rows as the output has, of four bytes a pixel, or of
    /// one where it is grey. False where the decoder fails.
    bool read(JSAMPARRAY lines);

    /// Goes through all scans, in place of start and read. False where there are too many, or the
    /// decoder fails.
    bool readScans();

private:
    struct Errors : jpeg_error_mgr
    {
        std::jmp_buf leave;
    };

    /// Told of each row of blocks that is read. Nothing but a count of scans is of interest: the
    /// library has none of its own.
    struct Progress : jpeg_progress_mgr
    {
        int mostScans = 0;
    };

    static void leaveAtTooManyScans(j_common_ptr info);

    Errors m_errors{};
    Progress m_progress{};
    jpeg_decompress_struct m_info{};
};

JpegDecompression::JpegDecompression(int mostScans)
{
    m_progress.mostScans = mostScans;
    m_progress.progress_monitor = leaveAtTooManyScans;
    m_info.err = jpeg_std_error(&m_errors);
    m_errors.error_exit = [](j_common_ptr info) {
        info->err->output_message(info);
        std::longjmp(static_cast<Errors*>(info->err)->leave, 1);
    };
    m_errors.output_message = [](j_common_ptr info) {
        std::array<char, JMSG_LENGTH_MAX> text{};
        info->err->format_message(info, text.data());
        qCWarning(lcJpeg, "%s", text.data());
    };
    if (!setjmp(m_errors.leave))
        jpeg_create_decompress(&m_info);
    m_info.progress = &m_progress;
}

void JpegDecompression::leaveAtTooManyScans(j_common_ptr info)
{
    const auto* decompression = reinterpret_cast<j_decompress_ptr>(info);
    if (decompression->input_scan_number <= static_cast<Progress*>(info->progress)->mostScans)
        return;
    qCWarning(lcJpeg, "More scans than the markers tell");
    std::longjmp(static_cast<Errors*>(info->err)->leave, 1);
}

bool JpegDecompression::readHeader(QByteArrayView bytes)
{
    if (setjmp(m_errors.leave))
        return false;
    jpeg_mem_src(&m_info, reinterpret_cast<const unsigned char*>(bytes.data()),
                 static_cast<unsigned long>(bytes.size()));
    return jpeg_read_header(&m_info, TRUE) == JPEG_HEADER_OK;
}

bool JpegDecompression::hasThreeColours() const
{
    return m_info.num_components == 3 &&
           (m_info.jpeg_color_space == JCS_YCbCr || m_info.jpeg_color_space == JCS_RGB);
}

bool JpegDecompression::start(unsigned int shrink)
{
    if (setjmp(m_errors.leave))
        return false;
    m_info.scale_num = 1;
    m_info.scale_denom = shrink;
    if (!isGrey())
        m_info.out_color_space = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRA : JCS_EXT_ARGB;
    return jpeg_start_decompress(&m_info);
}

bool JpegDecompression::read(JSAMPARRAY lines)
{
    if (setjmp(m_errors.leave))
        return false;
    while (m_info.output_scanline < m_info.output_height) {
        jpeg_read_scanlines(&m_info, lines + m_info.output_scanline,
                            m_info.output_height - m_info.output_scanline);
    }
    return jpeg_finish_decompress(&m_info);
}

bool JpegDecompression::readScans()
{
    if (setjmp(m_errors.leave))
        return false;
    if (!jpeg_has_multiple_scans(&m_info))
        return true;
    m_info.buffered_image = TRUE;
    jpeg_start_decompress(&m_info);
    while (jpeg_consume_input(&m_info) != JPEG_REACHED_EOI)
        leaveAtTooManyScans(reinterpret_cast<j_common_ptr>(&m_info));
    return true;
}

/// By what a picture of size `whole` shrinks to `size`; 0 where the library has no such step.
int shrinkFor(QSize whole, QSize size)
{
    for (const int by : {1, 2, 4, 8}) {
        if (size == QSize(std::max(whole.width() / by, 1), std::max(whole.height() / by, 1)))
            return by;
    }
    return 0;
}

} // namespace

std::optional<QImage> jpegPixels(QByteArrayView bytes, QSize size, int mostScans)
{
    JpegDecompression decompression(mostScans);
    if (!decompression.readHeader(bytes))
        return QImage();
    const int shrink = shrinkFor(decompression.wholeSize(), size);
    const bool isGrey = decompression.isGrey();
    if (shrink == 0 || !(isGrey || decompression.hasThreeColours()))
        return decompression.readScans() ? std::nullopt : std::optional(QImage());
    if (!decompression.start(static_cast<unsigned int>(shrink)))
        return QImage();

    QImage image(decompression.outputSize(),
                 isGrey ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
    std::vector<JSAMPROW> lines;
    for (int y = 0; y < image.height(); ++y)
        lines.push_back(image.scanLine(y));
    if (image.isNull() || !decompression.read(lines.data()))
        return QImage();
    // The library rounds up.
    if (image.size() != size)
        return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image;
}
