#include "support/OddWebp.h"

#include "support/OddBytes.h"
#include "support/OddPictures.h"

#include <QBuffer>
#include <QImageWriter>

#include <algorithm>

namespace odd {

namespace {

constexpr int ByteSymbols = 256;

QByteArray little24(int value)
{
    return little(quint32(value)).left(3);
}

int reversed(int value, int bits)
{
    int result = 0;
    for (; bits > 0; --bits, value >>= 1)
        result = result << 1 | (value & 1);
    return result;
}

/// A code of one symbol, which then takes no bits.
void writeConstant(CodeWriter& writer, int symbol)
{
    writer.write(1, 1);
    writer.write(0, 1);
    writer.write(1, 1);
    writer.write(symbol, 8);
}

/// The shortest of them, for symbol 0.
void writeZero(CodeWriter& writer)
{
    writer.write(0b0001, 4);
}

/// Five codes, of which the first (of green) is that constant.
void writeConstants(CodeWriter& writer, int green)
{
    writeConstant(writer, green);
    for (int i = 0; i < 4; ++i)
        writeZero(writer);
}

/// The lengths of the lengths' own codes, all `bits` long, from `least` on; then that the lengths
/// of `count` symbols follow.
void writeLengthCodes(CodeWriter& writer, const QList<int>& used, int bits, int count)
{
    writer.write(0, 1);
    writer.write(19 - 4, 4);
    for (const int symbol : {17, 18, 0, 1, 2, 3, 4, 5, 16, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15})
        writer.write(used.contains(symbol) ? bits : 0, 3);
    writer.write(1, 1);
    writer.write(3, 3);
    writer.write(count - 2, 8);
}

/// Codes of 8 bits for the symbols up to 255.
void writeBytes(CodeWriter& writer)
{
    writeLengthCodes(writer, {8}, 1, ByteSymbols);
}

/// Codes of 1, 2 ... 14, 15 and 15 bits for the first 16 symbols.
void writeDeep(CodeWriter& writer)
{
    writeLengthCodes(writer, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}, 4, 16);
    for (int length = 1; length <= 16; ++length)
        writer.write(reversed(std::min(length, 15) - 1, 4), 4);
}

/// What a transform is about: one constant for all blocks of 4 x 4 pixels.
void writeTransform(CodeWriter& writer, int type, int constant)
{
    constexpr int subtractGreen = 2;
    writer.write(1, 1);
    writer.write(type, 2);
    if (type == subtractGreen)
        return;
    writer.write(0, 3);
    writer.write(0, 1);
    writeConstants(writer, constant);
}

void writePixels(CodeWriter& writer, const Lossless& picture)
{
    if (picture.transforms) {
        constexpr int clampedHalf = 13;
        writeTransform(writer, 0, clampedHalf);
        writeTransform(writer, 1, 77);
        writeTransform(writer, 2, 0);
    }
    writer.write(0, 1);
    writer.write(picture.cache ? 1 : 0, 1);
    if (picture.cache)
        writer.write(11, 4);
    writer.write(picture.blockBits ? 1 : 0, 1);
    if (picture.blockBits == 0) {
        writeConstants(writer, 0);
        return;
    }
    writer.write(picture.blockBits - 2, 3);
    writer.write(0, 1);
    writeBytes(writer);
    writeBytes(writer);
    for (int i = 0; i < 3; ++i)
        writeZero(writer);
    const auto blocks = [&](int side) {
        return (side + (1 << picture.blockBits) - 1) >> picture.blockBits;
    };
    const int all = blocks(picture.size.width()) * blocks(picture.size.height());
    for (int i = 0; i < all; ++i) {
        const int code = std::min(i, picture.codes - 1);
        writer.write(reversed(code & 0xFF, 8), 8);
        writer.write(reversed(code >> 8, 8), 8);
    }
    for (int i = 0; i < std::min(all, picture.codes); ++i) {
        for (int j = 0; j < 4; ++j)
            writeZero(writer);
        if (picture.deepCodes)
            writeDeep(writer);
        else
            writeZero(writer);
    }
}

} // namespace

QByteArray webpChunk(const QByteArray& type, const QByteArray& data)
{
    return type + little(quint32(data.size())) + data + QByteArray(data.size() % 2, 0);
}

QByteArray webp(const QByteArray& chunks)
{
    return "RIFF" + little(quint32(chunks.size() + 4)) + "WEBP" + chunks;
}

QByteArray webpChunks(const QByteArray& file)
{
    return file.mid(12);
}

QByteArray webpCanvas(QSize canvas, int features)
{
    return webpChunk("VP8X", bytes({features, 0, 0, 0}) + little24(canvas.width() - 1) +
                                 little24(canvas.height() - 1));
}

QByteArray webpFrame(QPoint place, QSize size, const QByteArray& chunks)
{
    return webpChunk("ANMF", little24(place.x() / 2) + little24(place.y() / 2) +
                                 little24(size.width() - 1) + little24(size.height() - 1) +
                                 little24(100) + bytes({0}) + chunks);
}

QByteArray webpAnimation(QSize canvas, const QByteArray& frames)
{
    return webp(webpCanvas(canvas, WebpAnimated | WebpSeeThrough) +
                webpChunk("ANIM", QByteArray(6, 0)) + frames);
}

QByteArray encodedWebp(const QImage& image, int quality)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "webp");
    writer.setQuality(quality);
    if (!writer.write(image))
        qFatal("no writer for webp");
    return buffer.data();
}

QByteArray lossyWebp(QSize size, qsizetype count)
{
    constexpr int lowest = 1;
    constexpr qsizetype chunkHeader = 8;
    const QByteArray small = webpChunks(encodedWebp(scenery({512, 512}), lowest)).mid(chunkHeader);
    QByteArray data = small + QByteArray(count - small.size(), 0);
    // Half of it is the first part, with what is said of each block of 16 x 16 pixels.
    const quint32 tag = (uchar(data[0]) & 0x1Fu) | quint32(count / 2) << 5;
    data.replace(0, 3, little(tag).left(3));
    data.replace(6, 4, little(quint16(size.width())) + little(quint16(size.height())));
    return webpChunk("VP8 ", data);
}

QByteArray losslessWebp(const Lossless& picture)
{
    CodeWriter writer;
    writer.write(0x2F, 8);
    writer.write(picture.size.width() - 1, 14);
    writer.write(picture.size.height() - 1, 14);
    writer.write(1, 1);
    writer.write(0, 3);
    writePixels(writer, picture);
    return writer.finished();
}

QByteArray webpAlpha(const Lossless& picture)
{
    constexpr int lossless = 1;
    CodeWriter writer;
    writePixels(writer, picture);
    return bytes({lossless}) + writer.finished();
}

} // namespace odd
