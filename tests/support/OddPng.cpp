#include "support/OddPng.h"

#include "support/OddBytes.h"

#include <algorithm>

namespace odd {

namespace {

quint32 checkSum(const QByteArray& bytes)
{
    quint32 sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum & 1 ? 0xEDB88320 ^ (sum >> 1) : sum >> 1;
    }
    return ~sum;
}

/// How many bytes all rows have, their filters included; of an interlaced picture those of all of
/// its passes.
qint64 rawBytes(const Png& header)
{
    const int samples = header.colourType == 2   ? 3
                        : header.colourType == 4 ? 2
                        : header.colourType == 6 ? 4
                                                 : 1;
    const qint64 bits = qint64(samples) * header.bits;
    const auto rows = [&](int left, int top, int across, int down) -> qint64 {
        const qint64 width = (header.size.width() - left + across - 1) / across;
        const qint64 height = (header.size.height() - top + down - 1) / down;
        return width < 1 || height < 1 ? 0 : height * (1 + (width * bits + 7) / 8);
    };
    if (!header.interlaced)
        return rows(0, 0, 1, 1);
    return rows(0, 0, 8, 8) + rows(4, 0, 8, 8) + rows(0, 4, 4, 8) + rows(2, 0, 4, 4) +
           rows(0, 2, 2, 4) + rows(1, 0, 2, 2) + rows(0, 1, 1, 2);
}

/// So many bytes of blocks that inflate to nothing, each with codes of its own.
QByteArray deflatedNothing(qsizetype count)
{
    CodeWriter writer;
    const auto unused = [&](int codes) {
        constexpr int most = 138;
        for (; codes > 0; codes -= std::min(codes, most)) {
            writer.write(1, 1);
            writer.write(std::min(codes, most) - 11, 7);
        }
    };
    while (writer.size() < count) {
        writer.write(0, 1);
        writer.write(2, 2);
        writer.write(286 - 257, 5);
        writer.write(30 - 1, 5);
        writer.write(18 - 4, 4);
        for (const int symbol : {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1})
            writer.write(symbol == 1 || symbol == 18 ? 1 : 0, 3);
        unused(256);
        writer.write(0, 1); // The end,
        unused(28);
        writer.write(0, 1); // the longest repetition
        unused(29);
        writer.write(0, 1); // from farthest away.
        writer.write(0, 1); // The end it is.
    }
    // A block of no bytes ends at a whole one.
    writer.write(0, 3);
    return writer.finished() + QByteArray::fromHex("0000ffff");
}

} // namespace

QByteArray pngChunk(const QByteArray& type, const QByteArray& data)
{
    return big(quint32(data.size())) + type + data + big(checkSum(type + data));
}

QByteArray pngStart(const Png& header)
{
    return QByteArray::fromHex("89504e470d0a1a0a") +
           pngChunk("IHDR",
                    big(qint32(header.size.width())) + big(qint32(header.size.height())) +
                        bytes({header.bits, header.colourType, 0, 0, header.interlaced ? 1 : 0}));
}

QByteArray pngEnd()
{
    return pngChunk("IEND", {});
}

QByteArray deflatedRun(int value, qint64 count)
{
    // One block with codes of its own. They and the codes of their lengths are written in full
    // here, since a run of one value needs no more: first bits stand lowest.
    constexpr int ofZero = 0b00;
    constexpr int ofOne = 0b10;
    constexpr int ofTwo = 0b01;
    constexpr int ofZeros = 0b11;
    CodeWriter writer;
    writer.write(0x0178, 16);
    writer.write(1, 1); // The last block,
    writer.write(2, 2); // with its own codes:
    writer.write(286 - 257, 5);
    writer.write(1 - 1, 5);
    writer.write(18 - 4, 4);
    for (const int symbol : {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1})
        writer.write(symbol <= 2 || symbol == 18 ? 2 : 0, 3);
    const auto unused = [&](int codes) {
        constexpr int most = 138;
        for (; codes > 10; codes -= std::min(codes, most)) {
            writer.write(ofZeros, 2);
            writer.write(std::min(codes, most) - 11, 7);
        }
        for (; codes > 0; --codes)
            writer.write(ofZero, 2);
    };
    unused(value);
    writer.write(ofTwo, 2); // The byte,
    unused(255 - value);
    writer.write(ofTwo, 2); // the end,
    unused(28);
    writer.write(ofOne, 2); // the longest repetition
    writer.write(ofOne, 2); // of the byte before.

    constexpr int longest = 258;
    constexpr int byte = 0b01;
    constexpr int end = 0b11;
    writer.write(byte, 2);
    qint64 left = count - 1;
    for (; left >= longest; left -= longest)
        writer.write(0, 2);
    for (; left > 0; --left)
        writer.write(byte, 2);
    writer.write(end, 2);
    constexpr qint64 modulus = 65'521;
    const qint64 low = (1 + count * value) % modulus;
    const qint64 high = (count + value * (count * (count + 1) / 2)) % modulus;
    return writer.finished() + big(quint32(high << 16 | low));
}

QByteArray pngOf(const Png& header, int value, const QByteArray& before)
{
    QByteArray palette;
    if (header.colourType == 3)
        palette = pngChunk("PLTE", QByteArray::fromHex("102030405060708090a0b0c0"));
    return pngStart(header) + palette + before +
           pngChunk("IDAT", deflatedRun(value, rawBytes(header))) + pngEnd();
}

QByteArray withEmptyBlocks(const QByteArray& png, qsizetype count)
{
    constexpr qsizetype zlibHeader = 2;
    constexpr qsizetype sumAndEnd = 4 + 12;
    const qsizetype begin = png.indexOf("IDAT") + 4;
    const QByteArray data = png.mid(begin, png.size() - sumAndEnd - begin);
    return png.left(begin - 8) +
           pngChunk("IDAT", data.left(zlibHeader) + deflatedNothing(count) + data.mid(zlibHeader)) +
           pngEnd();
}

} // namespace odd
