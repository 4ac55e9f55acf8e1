#include "picture/headers/PictureHeader.h"

#include "picture/headers/HeaderCursor.h"

#include <algorithm>
#include <array>

namespace {

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

void skipBlocks(HeaderCursor& cursor)
{
    while (const int count = cursor.byte())
        cursor.skip(count);
}

/// Moves past the code that gives the last of `pixels`, or past the end of the frame's data.
void skipFrameData(HeaderCursor& cursor, qint64 pixels)
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

/// Where the file ends whose (first) frame's data begin at `cursor`: behind its trailer, or where
/// something else than a frame or an extension stands.
qsizetype endOfFile(HeaderCursor cursor)
{
    constexpr int frameHeader = 8;
    int introducer = ',';
    while (introducer == ',' || introducer == '!') {
        cursor.skip(1); // How the codes begin, or what the extension is.
        skipBlocks(cursor);
        if (cursor.atEnd())
            return cursor.position();
        introducer = cursor.byte();
        if (introducer == ',') {
            cursor.skip(frameHeader);
            cursor.skip(colourTableBytes(cursor.byte()));
        }
    }
    return introducer == ';' ? cursor.position() : cursor.position() - 1;
}

} // namespace

std::optional<PictureHeader> PictureHeader::readGif(QByteArrayView bytes)
{
    constexpr qsizetype signature = 6;
    PictureHeader header;
    header.format = PictureHeader::Format::Gif;
    HeaderCursor cursor(bytes, signature);
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
    header.fileBytes = endOfFile(cursor);
    skipFrameData(cursor, header.pixels);
    header.usedBytes = cursor.position();
    return sized(header, width, height);
}
