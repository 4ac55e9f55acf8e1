#pragma once

#include <QByteArray>
#include <QImage>
#include <QPoint>
#include <QSize>

/// Builders of WebP files, chunk by chunk, whole and odd ones.
namespace odd {

constexpr int WebpAnimated = 0x02;
constexpr int WebpSeeThrough = 0x10;

/// With its length before, and a byte behind that makes it even.
QByteArray webpChunk(const QByteArray& type, const QByteArray& data);
/// The whole file of those chunks.
QByteArray webp(const QByteArray& chunks);
/// The chunks of what webp() gave.
QByteArray webpChunks(const QByteArray& file);

/// The VP8X chunk.
QByteArray webpCanvas(QSize canvas, int features);
/// The ANMF chunk of one frame, whose place has even numbers, with those chunks inside.
QByteArray webpFrame(QPoint place, QSize size, const QByteArray& chunks);
/// A whole animation with those frames.
QByteArray webpAnimation(QSize canvas, const QByteArray& frames);

/// A picture as Qt writes it; of quality 100 without losses.
QByteArray encodedWebp(const QImage& image, int quality);

/// A VP8 chunk of so many bytes, tens of thousands at least, that announces that size and then
/// holds hardly anything.
QByteArray lossyWebp(QSize size, qsizetype bytes);

struct Lossless
{
    QSize size;
    bool transforms = false; ///< Each pixel is predicted, its colours are mixed, green is added.
    bool cache = false;      ///< Each pixel joins a table of colours.
    int blockBits = 0;       ///< Blocks of 2^2 to 2^9 pixels have codes of their own; 0: none.
    int codes = 65'536;      ///< How many.
    bool deepCodes = false;  ///< That of distances is no constant, but of 1 to 15 bits.
};

/// The data of a VP8L chunk: one colour, which takes no bits.
QByteArray losslessWebp(const Lossless& picture);
/// The same pixels as the data of an ALPH chunk.
QByteArray webpAlpha(const Lossless& picture);

} // namespace odd
