#pragma once

#include <QByteArray>
#include <QSize>

/// Builders of PNG files, chunk by chunk, whole and odd ones.
namespace odd {

struct Png
{
    QSize size;
    int bits = 8;
    int colourType = 2; ///< Colours; 0 grey, 3 palette, 4 and 6 with transparency.
    bool interlaced = false;
};

/// With its length before and its right check sum behind.
QByteArray pngChunk(const QByteArray& type, const QByteArray& data);
/// The signature and the header chunk.
QByteArray pngStart(const Png& header);
QByteArray pngEnd();

/// So many bytes of one value, compressed to a thousandth: the value is also the filter of each row
/// (0: none, 4: the costliest).
QByteArray deflatedRun(int value, qint64 count);

/// A picture all of whose bytes are `value`, and where there is a palette one of four colours.
QByteArray pngOf(const Png& header, int value, const QByteArray& before = {});

/// What pngOf() gave, with so many bytes of blocks that inflate to nothing before its pixels.
QByteArray withEmptyBlocks(const QByteArray& png, qsizetype bytes);

} // namespace odd
