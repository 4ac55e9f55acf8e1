#include "picture/headers/PictureHeader.h"

#include "picture/headers/HeaderCursor.h"
#include "picture/headers/PngChunks.h"

#include <algorithm>

namespace {

/// Whether a decoder knows samples of that many bits of that colour type.
bool isKnown(int colourType, int bits)
{
    constexpr int grey = 0;
    constexpr int palette = 3;
    switch (bits) {
    case 1:
    case 2:
    case 4:
        return colourType == grey || colourType == palette;
    case 8:
        return colourType <= 6 && colourType != 1 && colourType != 5;
    case 16:
        return colourType == grey || colourType == 2 || colourType == 4 || colourType == 6;
    default:
        return false;
    }
}

bool isType(QByteArrayView type)
{
    return std::all_of(type.begin(), type.end(), [](char letter) {
        return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
    });
}

} // namespace

/// The first chunk alone says the size, and what its pixels are. What is no chunk ends the file.
std::optional<PictureHeader> PictureHeader::readPng(QByteArrayView bytes)
{
    PngChunks chunks(bytes);
    const auto first = chunks.next();
    if (!first || !first->isOf("IHDR") || first->length != 13 || first->isCut())
        return {};
    PictureHeader header;
    header.format = PictureHeader::Format::Png;
    HeaderCursor cursor(first->data);
    const auto width = cursor.big<qint32>();
    const auto height = cursor.big<qint32>();
    const int bits = cursor.byte();
    if (!isKnown(cursor.byte(), bits))
        return {};
    header.deep = bits == 16;

    bool hasPixels = false;
    header.fileBytes = bytes.size();
    while (const auto chunk = chunks.next()) {
        const qsizetype begin = chunk->all.data() - bytes.data();
        if (!isType(chunk->type)) {
            header.fileBytes = begin;
            break;
        }
        hasPixels = hasPixels || (chunk->isOf("IDAT") && !chunk->data.isEmpty());
        if (chunk->isOf("IEND")) {
            header.fileBytes = begin + chunk->all.size();
            break;
        }
    }
    header.usedBytes = header.fileBytes;
    return hasPixels ? sized(header, width, height) : std::nullopt;
}
