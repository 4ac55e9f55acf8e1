#include "picture/headers/PictureHeader.h"

#include "picture/headers/HeaderCursor.h"

#include <algorithm>

namespace {

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

std::optional<JpegFrame> readFrame(HeaderCursor cursor, int marker)
{
    JpegFrame frame;
    frame.progressive = marker == 0xC2 || marker == 0xC6 || marker == 0xCA || marker == 0xCE;
    cursor.skip(1); // Bits of a sample.
    frame.height = cursor.big<quint16>();
    frame.width = cursor.big<quint16>();
    frame.components = cursor.byte();
    if (!cursor.holds(3 * qsizetype(frame.components)))
        return {};

    HeaderCursor again = cursor;
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

} // namespace

/// Follows the markers as a decoder does. Between segments it looks for the next 0xFF with
/// something but 0x00 behind it, which is right for the coded data of a scan as well. Below 0xC0
/// no marker has a segment: where a decoder goes on at all, it goes on behind these two bytes.
std::optional<PictureHeader> PictureHeader::readJpeg(QByteArrayView bytes)
{
    constexpr qsizetype startOfImage = 2;
    constexpr int firstOfSegments = 0xC0;
    constexpr int firstRestart = 0xD0;
    constexpr int secondImage = 0xD8;
    constexpr int endOfImage = 0xD9;
    constexpr int startOfScan = 0xDA;

    PictureHeader header;
    header.format = PictureHeader::Format::Jpeg;
    header.usedBytes = bytes.size();
    header.fileBytes = bytes.size();
    std::optional<JpegFrame> frame;
    HeaderCursor cursor(bytes, startOfImage);
    while (cursor.find(0xFF)) {
        const qsizetype begin = cursor.position();
        int marker = 0xFF;
        while (marker == 0xFF && !cursor.atEnd())
            marker = cursor.byte();
        if (marker == 0xFF)
            break;
        if (marker < firstOfSegments || (marker >= firstRestart && marker <= secondImage))
            continue;
        if (marker == endOfImage) {
            header.usedBytes = cursor.position();
            header.fileBytes = cursor.position();
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
            const int components = HeaderCursor(cursor).byte();
            if (++header.scans == 1 && (frame->progressive || components < frame->components))
                header.coefficientBytes = frame->coefficientBytes;
        } else if (!frame && isFrameMarker(marker)) {
            frame = readFrame(cursor, marker);
            if (!frame)
                return {};
            header.arithmetic = marker > reservedFrame;
            header.ink = frame->components > 3;
        }
        cursor.skip(length);
    }
    if (header.scans == 0)
        return {};
    return sized(header, frame->width, frame->height);
}
