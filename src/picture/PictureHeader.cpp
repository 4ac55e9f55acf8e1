#include "picture/PictureHeader.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace {

/// Reads on through bytes. Past the end everything is 0, and atEnd() tells.
class Cursor
{
public:
    explicit Cursor(QByteArrayView bytes, qsizetype position = 0)
        : m_bytes(bytes)
        , m_position(position)
    {
    }

    qsizetype position() const { return m_position; }
    bool atEnd() const { return m_position >= m_bytes.size(); }
    bool holds(qsizetype count) const { return count <= m_bytes.size() - m_position; }
    void skip(qsizetype count) { m_position += std::min(count, m_bytes.size() - m_position); }

    int byte() { return atEnd() ? 0 : uchar(m_bytes[m_position++]); }

    template<typename T>
    T little()
    {
        return holds(sizeof(T)) ? qFromLittleEndian<T>(take(sizeof(T))) : past<T>();
    }

    template<typename T>
    T big()
    {
        return holds(sizeof(T)) ? qFromBigEndian<T>(take(sizeof(T))) : past<T>();
    }

    /// Moves to the next byte of that value. False, and at the end, where there is none.
    bool find(uchar value)
    {
        const void* found = atEnd() ? nullptr
                                    : std::memchr(m_bytes.data() + m_position, value,
                                                  size_t(m_bytes.size() - m_position));
        m_position = found ? static_cast<const char*>(found) - m_bytes.data() : m_bytes.size();
        return found != nullptr;
    }

private:
    const void* take(qsizetype count)
    {
        m_position += count;
        return m_bytes.data() + m_position - count;
    }

    template<typename T>
    T past()
    {
        m_position = m_bytes.size();
        return 0;
    }

    QByteArrayView m_bytes;
    qsizetype m_position;
};

std::optional<PictureHeader> sized(PictureHeader header, qint64 width, qint64 height)
{
    constexpr qint64 most = std::numeric_limits<int>::max();
    if (width < 1 || height < 1 || width > most || height > most)
        return {};
    header.size = QSize(int(width), int(height));
    header.pixels = std::max(header.pixels, width * height);
    return header;
}

// ---------------------------------------------------------------------------- Windows bitmap

std::optional<PictureHeader> readBitmap(QByteArrayView bytes)
{
    constexpr qsizetype fileHeader = 14;
    PictureHeader header;
    header.format = PictureHeader::Format::Bmp;
    header.usedBytes = bytes.size();
    Cursor cursor(bytes, std::min(fileHeader, bytes.size()));
    switch (cursor.little<quint32>()) {
    case 12: { // The oldest header has sizes of 16 bits.
        const auto width = cursor.little<qint16>();
        return sized(header, width, cursor.little<qint16>());
    }
    case 40:
    case 64:
    case 108:
    case 124: {
        const auto width = cursor.little<qint32>();
        const auto height = cursor.little<qint32>();
        return sized(header, width, qAbs(qint64(height))); // Negative: rows from the top.
    }
    default:
        return {};
    }
}

// --------------------------------------------------------------------------------------- GIF

/// The lengths of the pixel runs that the codes of a GIF's LZW data stand for. Building no runs,
/// it is quick even where each code stands for thousands of pixels.
class LzwLengths
{
public:
    explicit LzwLengths(int minimumCodeSize)
        : m_minimum(minimumCodeSize)
        , m_clear(1 << minimumCodeSize)
    {
        std::fill_n(m_length.begin(), m_clear, quint16(1));
        clear();
    }

    /// Pixels that one more byte of the data completes.
    qint64 add(int byte)
    {
        qint64 pixels = 0;
        m_bits |= quint32(byte) << m_bitCount;
        m_bitCount += 8;
        while (m_bitCount >= m_codeSize && !m_ended) {
            const int code = int(m_bits & ((1u << m_codeSize) - 1));
            m_bits >>= m_codeSize;
            m_bitCount -= m_codeSize;
            pixels += take(code);
        }
        return pixels;
    }

    /// The data's own end has been read: what follows are no codes.
    bool ended() const { return m_ended; }

private:
    static constexpr int MostCodes = 1 << 12;

    void clear()
    {
        m_codeSize = m_minimum + 1;
        m_next = m_clear + 2;
        m_previous = -1;
    }

    qint64 take(int code)
    {
        if (code == m_clear) {
            clear();
            return 0;
        }
        if (code == m_clear + 1) {
            m_ended = true;
            return 0;
        }
        if (m_previous < 0) {
            m_previous = std::min(code, m_clear - 1);
            return 1;
        }
        // A code that is not there yet means the previous run and its first pixel once more.
        const int longer = m_length[size_t(m_previous)] + 1;
        const int length = code < m_next ? m_length[size_t(code)] : longer;
        if (m_next < MostCodes) {
            m_length[size_t(m_next++)] = quint16(longer);
            if (m_next >= 1 << m_codeSize && m_next < MostCodes)
                ++m_codeSize;
        }
        m_previous = std::min(code, m_next - 1);
        return length;
    }

    std::array<quint16, MostCodes + 2> m_length{};
    int m_minimum;
    int m_clear;
    int m_codeSize = 0;
    int m_next = 0;
    int m_previous = -1;
    quint32 m_bits = 0;
    int m_bitCount = 0;
    bool m_ended = false;
};

int colourTableBytes(int flags)
{
    return flags & 0x80 ? 3 * (2 << (flags & 0x07)) : 0;
}

void skipBlocks(Cursor& cursor)
{
    while (const int count = cursor.byte())
        cursor.skip(count);
}

/// Moves past the code that gives the last of `pixels`, or past the end of the frame's data.
void skipFrameData(Cursor& cursor, qint64 pixels)
{
    constexpr int mostBits = 12;
    const int minimumCodeSize = cursor.byte();
    if (minimumCodeSize > mostBits)
        return;
    LzwLengths lengths(minimumCodeSize);
    while (const int count = cursor.byte()) {
        for (int i = 0; i < count && !cursor.atEnd(); ++i) {
            const int byte = cursor.byte();
            if (!lengths.ended())
                pixels -= lengths.add(byte);
            if (pixels <= 0)
                return;
        }
    }
}

std::optional<PictureHeader> readGif(QByteArrayView bytes)
{
    constexpr qsizetype signature = 6;
    PictureHeader header;
    header.format = PictureHeader::Format::Gif;
    Cursor cursor(bytes, signature);
    int width = cursor.little<quint16>();
    int height = cursor.little<quint16>();
    const int flags = cursor.byte();
    cursor.skip(2 + colourTableBytes(flags));

    int introducer = cursor.byte();
    while (introducer == '!') {
        constexpr int graphicControl = 0xF9;
        constexpr int application = 0xFF;
        const int label = cursor.byte();
        // The first block of these has a meaning, and is there even when it is empty.
        if (label == graphicControl || label == application)
            cursor.skip(cursor.byte());
        skipBlocks(cursor);
        introducer = cursor.byte();
    }
    if (introducer != ',')
        return {};
    const int left = cursor.little<quint16>();
    const int top = cursor.little<quint16>();
    const int frameWidth = cursor.little<quint16>();
    const int frameHeight = cursor.little<quint16>();
    cursor.skip(colourTableBytes(cursor.byte()));
    if (width == 0)
        width = left + frameWidth;
    if (height == 0)
        height = top + frameHeight;

    header.pixels = qint64(frameWidth) * frameHeight;
    skipFrameData(cursor, header.pixels);
    header.usedBytes = cursor.position();
    return sized(header, width, height);
}

// -------------------------------------------------------------------------------------- JPEG

constexpr qint64 roundedUp(qint64 value, qint64 step)
{
    return (value + step - 1) / step * step;
}

/// What the frame header (SOF) says.
struct JpegFrame
{
    int width = 0;
    int height = 0;
    int components = 0;
    bool progressive = false;
    qint64 coefficientBytes = 0;
};

/// Huffman coded frames have markers below it, arithmetically coded ones above.
constexpr int reservedFrame = 0xC8;

bool isFrameMarker(int marker)
{
    constexpr int huffmanTables = 0xC4;
    constexpr int arithmeticConditioning = 0xCC;
    return marker >= 0xC0 && marker <= 0xCF && marker != huffmanTables && marker != reservedFrame &&
           marker != arithmeticConditioning;
}

std::optional<JpegFrame> readFrame(Cursor cursor, int marker)
{
    JpegFrame frame;
    frame.progressive = marker == 0xC2 || marker == 0xC6 || marker == 0xCA || marker == 0xCE;
    cursor.skip(1); // Bits of a sample.
    frame.height = cursor.big<quint16>();
    frame.width = cursor.big<quint16>();
    frame.components = cursor.byte();
    if (!cursor.holds(3 * qsizetype(frame.components)))
        return {};

    Cursor again = cursor;
    int mostAcross = 1;
    int mostDown = 1;
    for (int i = 0; i < frame.components; ++i) {
        cursor.skip(1);
        const int sampling = cursor.byte();
        cursor.skip(1);
        const int across = sampling >> 4;
        const int down = sampling & 0x0F;
        if (across < 1 || across > 4 || down < 1 || down > 4)
            return {};
        mostAcross = std::max(mostAcross, across);
        mostDown = std::max(mostDown, down);
    }
    // Blocks of 8 x 8 coefficients of 16 bits each, as many as fill whole units of the scan.
    const qint64 unitsAcross = roundedUp(frame.width, 8 * mostAcross) / (8 * mostAcross);
    const qint64 unitsDown = roundedUp(frame.height, 8 * mostDown) / (8 * mostDown);
    for (int i = 0; i < frame.components; ++i) {
        again.skip(1);
        const int sampling = again.byte();
        again.skip(1);
        frame.coefficientBytes +=
            unitsAcross * (sampling >> 4) * unitsDown * (sampling & 0x0F) * 64 * 2;
    }
    return frame;
}

/// Follows the markers as a decoder does. Between segments it looks for the next 0xFF with
/// something but 0x00 behind it, which is right for the coded data of a scan as well.
std::optional<PictureHeader> readJpeg(QByteArrayView bytes)
{
    constexpr qsizetype startOfImage = 2;
    constexpr int stuffed = 0x00;
    constexpr int temporary = 0x01;
    constexpr int firstRestart = 0xD0;
    constexpr int secondImage = 0xD8;
    constexpr int endOfImage = 0xD9;
    constexpr int startOfScan = 0xDA;

    PictureHeader header;
    header.format = PictureHeader::Format::Jpeg;
    header.usedBytes = bytes.size();
    std::optional<JpegFrame> frame;
    Cursor cursor(bytes, startOfImage);
    while (cursor.find(0xFF)) {
        const qsizetype begin = cursor.position();
        int marker = 0xFF;
        while (marker == 0xFF && !cursor.atEnd())
            marker = cursor.byte();
        if (marker == 0xFF)
            break;
        if (marker == stuffed || marker == temporary ||
            (marker >= firstRestart && marker <= secondImage))
            continue;
        if (marker == endOfImage) {
            header.usedBytes = cursor.position();
            break;
        }
        if (!cursor.holds(2)) {
            header.usedBytes = begin;
            break;
        }
        const qsizetype length = std::max<qsizetype>(cursor.big<quint16>(), 2) - 2;
        if (!cursor.holds(length)) {
            header.usedBytes = begin;
            break;
        }
        ++header.segments;
        if (marker == startOfScan) {
            if (!frame)
                return {};
            const int components = Cursor(cursor).byte();
            if (++header.scans == 1 && (frame->progressive || components < frame->components))
                header.coefficientBytes = frame->coefficientBytes;
        } else if (!frame && isFrameMarker(marker)) {
            frame = readFrame(cursor, marker);
            if (!frame)
                return {};
            header.arithmetic = marker > reservedFrame;
        }
        cursor.skip(length);
    }
    if (header.scans == 0)
        return {};
    return sized(header, frame->width, frame->height);
}

} // namespace

std::optional<PictureHeader> PictureHeader::read(QByteArrayView bytes)
{
    if (bytes.startsWith("BM"))
        return readBitmap(bytes);
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a"))
        return readGif(bytes);
    if (bytes.startsWith("\xFF\xD8\xFF"))
        return readJpeg(bytes);
    return {};
}
