#include "picture/headers/PictureHeader.h"

#include "picture/headers/HeaderCursor.h"

#include <algorithm>

namespace {

constexpr qsizetype FileHeader = 14;
constexpr int OldestHeader = 12;
constexpr int NewestHeader = 124;

/// What says where the pixels are and how many bytes they have.
struct BitmapLayout
{
    qint64 width = 0;
    qint64 height = 0;
    int bits = 0;
    quint32 compression = 0;
    qint64 pixelBegin = 0;

    static constexpr quint32 Plain = 0;
    static constexpr quint32 Runs8 = 1;
    static constexpr quint32 Runs4 = 2;
    static constexpr quint32 Masked = 3;

    bool isInRuns() const { return compression == Runs8 || compression == Runs4; }
    bool isKnown() const { return bits >= 1 && bits <= 32 && compression <= Masked; }
};

/// Where the colour table ends, the pixels begin, unless the file header says a later place.
BitmapLayout layoutOf(QByteArrayView bytes, quint32 headerSize, qint64 width, qint64 height)
{
    constexpr qsizetype placeOfBegin = 10;
    constexpr qsizetype placeOfBits = 28;
    constexpr qsizetype placeOfOldestBits = 24;
    constexpr qsizetype placeOfColours = 46;
    constexpr quint32 mostColours = 256;
    constexpr quint32 plainHeader = 40;
    constexpr qint64 masks = 12;
    const auto at = [&](qsizetype place) {
        return HeaderCursor(bytes, std::min(place, bytes.size()));
    };
    const bool isOldest = headerSize == OldestHeader;
    BitmapLayout layout{.width = width, .height = height};
    HeaderCursor cursor = at(isOldest ? placeOfOldestBits : placeOfBits);
    layout.bits = cursor.little<quint16>();
    layout.compression = isOldest ? BitmapLayout::Plain : cursor.little<quint32>();
    quint32 colours = isOldest ? 0 : at(placeOfColours).little<quint32>();
    if (layout.bits > 8)
        colours = 0;
    else if (colours == 0)
        colours = 1u << layout.bits;
    qint64 tables = qint64(std::min(colours, mostColours)) * (isOldest ? 3 : 4);
    if (layout.compression == BitmapLayout::Masked && headerSize == plainHeader)
        tables += masks;
    layout.pixelBegin = std::max(FileHeader + qint64(headerSize) + tables,
                                 qint64(at(placeOfBegin).little<quint32>()));
    return layout;
}

/// Past the code that ends the picture, or past the end of a row that it does not have.
qsizetype endOfRuns(HeaderCursor cursor, const BitmapLayout& layout)
{
    enum { EndOfRow, EndOfPicture, Jump };
    qint64 rows = 0;
    while (!cursor.atEnd() && rows <= layout.height) {
        const int count = cursor.byte();
        const int value = cursor.byte();
        if (count > 0)
            continue;
        if (value == EndOfPicture)
            break;
        if (value == EndOfRow) {
            ++rows;
        } else if (value == Jump) {
            cursor.skip(1);
            rows += cursor.byte();
        } else {
            const int literals =
                layout.compression == BitmapLayout::Runs4 ? (value + 1) / 2 : value;
            cursor.skip(literals + literals % 2);
        }
    }
    return cursor.position();
}

/// `headerSize` as the file says it; of the newest kind, a profile may follow the pixels.
qsizetype endOfFile(QByteArrayView bytes, quint32 headerSize, const BitmapLayout& layout)
{
    if (!layout.isKnown() || layout.pixelBegin > bytes.size())
        return bytes.size();
    const auto begin = qsizetype(layout.pixelBegin);
    const qint64 room = bytes.size() - begin;
    const qint64 rowBytes = std::max<qint64>((layout.width * layout.bits + 31) / 32, 1) * 4;
    // Their product may be more than any number holds.
    qint64 end = layout.height > room / rowBytes ? bytes.size() : begin + rowBytes * layout.height;
    if (layout.isInRuns())
        end = endOfRuns(HeaderCursor(bytes, begin), layout);
    if (headerSize == NewestHeader)
        end = std::max(end, qint64(HeaderCursor(bytes, 2).little<quint32>()));
    return qsizetype(std::min(end, qint64(bytes.size())));
}

} // namespace

std::optional<PictureHeader> PictureHeader::readBitmap(QByteArrayView bytes)
{
    PictureHeader header;
    header.format = PictureHeader::Format::Bmp;
    HeaderCursor cursor(bytes, std::min(FileHeader, bytes.size()));
    const auto headerSize = cursor.little<quint32>();
    qint64 width = 0;
    qint64 height = 0;
    switch (headerSize) {
    case OldestHeader: // Sizes of 16 bits.
        width = cursor.little<qint16>();
        height = cursor.little<qint16>();
        break;
    case 40:
    case 64:
    case 108:
    case NewestHeader:
        width = cursor.little<qint32>();
        height = qAbs(qint64(cursor.little<qint32>())); // Negative: rows from the top.
        break;
    default:
        return {};
    }
    auto result = sized(header, width, height);
    if (result) {
        result->fileBytes =
            endOfFile(bytes, headerSize, layoutOf(bytes, headerSize, width, height));
        result->usedBytes = result->fileBytes;
    }
    return result;
}
