#include "support/OddPictures.h"

#include "support/OddBytes.h"

#include <QBuffer>
#include <QImageWriter>

#include <algorithm>

namespace odd {

namespace {

constexpr int GifBits = 8;
constexpr int GifClear = 1 << GifBits;
constexpr int GifEnd = GifClear + 1;

int gifPatternIndex(int x, int y)
{
    return (x * 3 + y * 5) % 256;
}

} // namespace

QImage scenery(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const int detail = (x * 7 + y * 13) % 32;
            row[x] = qRgb(x * 220 / size.width() + detail, y * 220 / size.height() + detail,
                          (x + y) / 4 % 224 + detail);
        }
    }
    return image;
}

QByteArray encoded(const QImage& image, const char* format, bool progressive)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setProgressiveScanWrite(progressive);
    if (!writer.write(image))
        qFatal("no writer for %s", format);
    return buffer.data();
}

QByteArray jpegStart()
{
    return bytes({0xFF, 0xD8});
}

QByteArray jpegSegment(int marker, const QByteArray& payload)
{
    return bytes({0xFF, marker}) + big(quint16(payload.size() + 2)) + payload;
}

QByteArray jpegFrame(const JpegFrame& frame)
{
    QByteArray payload = bytes({frame.bits}) + big(quint16(frame.size.height())) +
                         big(quint16(frame.size.width())) + char(frame.sampling.size());
    for (int i = 0; i < frame.sampling.size(); ++i)
        payload += bytes({i + 1, frame.sampling[i], 0});
    return jpegSegment(frame.marker, payload);
}

QByteArray jpegTables(bool endOfBandRuns)
{
    const QByteArray oneCode = bytes({1}) + QByteArray(15, 0);
    return jpegSegment(0xDB, bytes({0}) + QByteArray(64, 1)) +
           jpegSegment(0xC4, bytes({0x00}) + oneCode + bytes({0x00})) +
           jpegSegment(0xC4, bytes({0x10}) + oneCode + bytes({endOfBandRuns ? 0xE0 : 0x00}));
}

QByteArray jpegScan(int first, int last, const QByteArray& data, int from, int to,
                    int approximation)
{
    QByteArray payload = bytes({last - first + 1});
    for (int i = first; i <= last; ++i)
        payload += bytes({i, 0});
    return jpegSegment(0xDA, payload + bytes({from, to, approximation})) + data;
}

QByteArray jpegEnd()
{
    return bytes({0xFF, 0xD9});
}

QByteArray jpeg(const JpegFrame& frame, const QByteArray& data)
{
    return jpegStart() + jpegTables() + jpegFrame(frame) +
           jpegScan(1, int(frame.sampling.size()), data) + jpegEnd();
}

QByteArray jpegInScans(const JpegFrame& frame, int scans, const QByteArray& dataOfEach)
{
    const bool progressive = frame.marker == 0xC2;
    const int components = int(frame.sampling.size());
    QByteArray result = jpegStart() + jpegTables(progressive) + jpegFrame(frame);
    for (int i = 0; i < scans; ++i) {
        const int one = 1 + i % components;
        if (!progressive)
            result += jpegScan(one, one, dataOfEach);
        else if (i == 0)
            result += jpegScan(1, components, dataOfEach, 0, 0);
        else
            result += jpegScan(one, one, dataOfEach, 1, WholeBlock, i > components ? 0x10 : 0x01);
    }
    return result + jpegEnd();
}

QByteArray gifCodes(const QByteArray& indices)
{
    CodeWriter writer;
    int sinceClear = 0;
    for (const char index : indices) {
        // The codes would grow to ten bits after 255 entries of the table.
        if (sinceClear++ % 250 == 0)
            writer.write(GifClear, GifBits + 1);
        writer.write(uchar(index), GifBits + 1);
    }
    writer.write(GifEnd, GifBits + 1);
    return writer.finished();
}

QByteArray gifRuns(qsizetype count)
{
    constexpr int mostCodes = 4096;
    CodeWriter writer;
    int next = GifEnd + 1;
    int bits = GifBits + 1;
    writer.write(GifClear, bits);
    writer.write(0, bits);
    while (writer.size() < count) {
        writer.write(std::min(next, mostCodes - 1), bits);
        if (next < mostCodes && ++next == 1 << bits && bits < 12)
            ++bits;
    }
    return writer.finished();
}

QRgb gifColour(int index)
{
    return qRgb(index, 255 - index, index / 2);
}

QByteArray gif(QSize screen, QRect frame, const QByteArray& codes, bool interlaced,
               const QByteArray& extensions)
{
    QByteArray result = "GIF89a" + little(quint16(screen.width())) +
                        little(quint16(screen.height())) + bytes({0xF7, 0, 0});
    for (int i = 0; i < 256; ++i)
        result += bytes({qRed(gifColour(i)), qGreen(gifColour(i)), qBlue(gifColour(i))});
    result += extensions + "," + little(quint16(frame.x())) + little(quint16(frame.y())) +
              little(quint16(frame.width())) + little(quint16(frame.height())) +
              bytes({interlaced ? 0x40 : 0, GifBits});
    for (qsizetype i = 0; i < codes.size(); i += 255) {
        const QByteArray block = codes.mid(i, 255);
        result += char(block.size());
        result += block;
    }
    return result + bytes({0, ';'});
}

QByteArray gifPattern(QSize size)
{
    QByteArray indices;
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            indices += char(gifPatternIndex(x, y));
    return gif(size, QRect({}, size), gifCodes(indices));
}

QImage gifPatternPixels(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, gifColour(gifPatternIndex(x, y)));
    return image;
}

QByteArray bitmapRuns()
{
    return bitmap({.width = 8, .height = 4, .bits = 4, .compression = 2},
                  QByteArray::fromHex("0812"
                                      "0000"
                                      "00020201"
                                      "0433"
                                      "0001"));
}

QByteArray bitmap(const Bitmap& header, const QByteArray& data)
{
    constexpr int fileHeader = 14;
    QByteArray info = little(qint32(header.headerSize));
    if (header.headerSize == 12)
        info += little(qint16(header.width)) + little(qint16(header.height));
    else
        info += little(qint32(header.width)) + little(qint32(header.height));
    info += little(qint16(1)) + little(qint16(header.bits));
    if (header.headerSize > 12)
        info += little(qint32(header.compression)) + little(qint32(data.size())) +
                little(qint32(0)) + little(qint32(0)) + little(header.colours) + little(qint32(0));
    info += QByteArray(std::max<qsizetype>(header.headerSize - info.size(), 0), 0);

    int colours = int(std::min<quint32>(header.colours, 256));
    if (colours == 0 && header.bits <= 8)
        colours = 1 << header.bits;
    QByteArray table;
    for (int i = 0; i < colours; ++i)
        table += bytes({128, 255 - i, i}) + (header.headerSize == 12 ? "" : bytes({0}));
    const auto offset = qint32(fileHeader + info.size() + table.size());
    return "BM" + little(qint32(offset + data.size())) + little(qint32(0)) + little(offset) + info +
           table + data;
}

} // namespace odd
