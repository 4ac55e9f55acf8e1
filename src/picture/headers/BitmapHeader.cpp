#include "picture/headers/PictureHeader.h"

#include "picture/headers/HeaderCursor.h"

#include <algorithm>

std::optional<PictureHeader> PictureHeader::readBitmap(QByteArrayView bytes)
{
    constexpr qsizetype fileHeader = 14;
    PictureHeader header;
    header.format = PictureHeader::Format::Bmp;
    header.usedBytes = bytes.size();
    HeaderCursor cursor(bytes, std::min(fileHeader, bytes.size()));
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
