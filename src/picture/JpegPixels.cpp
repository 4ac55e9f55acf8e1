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
    JpegDecompression();
    ~JpegDecompression() { jpeg_destroy_decompress(&m_info); }
    Q_DISABLE_COPY_MOVE(JpegDecompression)

    /// False where the decoder fails.
    bool readHeader(QByteArrayView bytes);
    bool hasThreeColours() const;
    QSize wholeSize() const { return {int(m_info.image_width), int(m_info.image_height)}; }

    /// Begins to decode, one pixel out of `shrink` in each direction. False where that fails.
    bool start(unsigned int shrink);
    QSize outputSize() const { return {int(m_info.output_width), int(m_info.output_height)}; }

    /// Fills `lines`, which point to as many rows of four bytes a pixel as the output has. False
    /// where the decoder fails.
    bool read(JSAMPARRAY lines);

private:
    struct Errors : jpeg_error_mgr
    {
        std::jmp_buf leave;
    };

    Errors m_errors{};
    jpeg_decompress_struct m_info{};
};

JpegDecompression::JpegDecompression()
{
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

std::optional<QImage> jpegPixels(QByteArrayView bytes, QSize size)
{
    JpegDecompression decompression;
    if (!decompression.readHeader(bytes))
        return QImage();
    const int shrink = shrinkFor(decompression.wholeSize(), size);
    if (shrink == 0 || !decompression.hasThreeColours())
        return std::nullopt;
    if (!decompression.start(static_cast<unsigned int>(shrink)))
        return QImage();

    QImage image(decompression.outputSize(), QImage::Format_RGB32);
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
