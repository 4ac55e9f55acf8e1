#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QRect>

/// Builders of encoded pictures, whole and odd ones. Those that take `data` write it as it is, so
/// that what a header announces and what follows need not agree.
namespace odd {

/// An opaque picture with smooth colours and fine detail, the same at each call.
QImage scenery(QSize size);

/// `image` in one of the formats that Qt writes ("jpg", "bmp", "png", ...).
QByteArray encoded(const QImage& image, const char* format, bool progressive = false);

/// --- JPEG: start, segments, scans, end, one after another.

struct JpegFrame
{
    QSize size;
    int marker = 0xC0;                        ///< Start of frame: baseline, progressive, ...
    QList<int> sampling = {0x11, 0x11, 0x11}; ///< Of each component, 0xHV.
    int bits = 8;
};

constexpr int WholeBlock = 63;

QByteArray jpegStart();
QByteArray jpegSegment(int marker, const QByteArray& payload);
QByteArray jpegFrame(const JpegFrame& frame);
/// Tables by which a bit 0 means "no difference" and "end of block", or with `endOfBandRuns` "end
/// of 16,384 blocks and as many more as the next 14 bits say".
QByteArray jpegTables(bool endOfBandRuns = false);
/// One scan of the components `first` to `last`, which count from 1.
QByteArray jpegScan(int first, int last, const QByteArray& data, int from = 0, int to = WholeBlock,
                    int approximation = 0);
QByteArray jpegEnd();

/// All of these: one scan of all components with that data.
QByteArray jpeg(const JpegFrame& frame, const QByteArray& data = {});
/// In several scans: the first of all components, the others of one component each in turn.
QByteArray jpegInScans(const JpegFrame& frame, int scans, const QByteArray& dataOfEach = {});

/// --- GIF

/// The data of a frame with one code for each index, in no more than 8 bits.
QByteArray gifCodes(const QByteArray& indices);
/// So many bytes of codes of which each stands for one pixel more than the one before, up to some
/// thousands.
QByteArray gifRuns(qsizetype bytes);
/// With a palette of 256 colours, of which index i is qRgb(i, 255 - i, i / 2).
QByteArray gif(QSize screen, QRect frame, const QByteArray& codes, bool interlaced = false,
               const QByteArray& extensions = {});
QRgb gifColour(int index);
/// A whole GIF of a pattern of all colours, and the same picture in pixels.
QByteArray gifPattern(QSize size);
QImage gifPatternPixels(QSize size);

/// --- Windows bitmap

struct Bitmap
{
    int width = 0;
    int height = 0;
    int bits = 24;
    int compression = 0;
    quint32 colours = 0; ///< As announced; at most 256 are written.
    int headerSize = 40;
};

/// Colour i is qRgb(i, 255 - i, 128). Where no number of colours is announced but the bits need a
/// table, it is written in full.
QByteArray bitmap(const Bitmap& header, const QByteArray& data);
/// 8 x 4 pixels of 16 colours, run-length encoded: the lowest row is 1 2 1 2 1 2 1 2, the third
/// from below 0 0 3 3 3 3 0 0 by a jump over the second, and nothing is said of the rest.
QByteArray bitmapRuns();

} // namespace odd
