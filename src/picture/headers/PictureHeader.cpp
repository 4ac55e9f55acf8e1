#include "picture/headers/PictureHeader.h"

#include "picture/headers/PngChunks.h"

#include <algorithm>
#include <limits>

std::optional<PictureHeader> PictureHeader::read(QByteArrayView bytes)
{
    if (bytes.startsWith("BM"))
        return readBitmap(bytes);
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a"))
        return readGif(bytes);
    if (bytes.startsWith("\xFF\xD8\xFF"))
        return readJpeg(bytes);
    if (bytes.startsWith(PngChunks::Signature))
        return readPng(bytes);
    if (bytes.startsWith("RIFF"))
        return readWebp(bytes);
    return {};
}

std::optional<PictureHeader> PictureHeader::sized(PictureHeader header, qint64 width, qint64 height)
{
    constexpr qint64 most = std::numeric_limits<int>::max();
    if (width < 1 || height < 1 || width > most || height > most)
        return {};
    header.size = QSize(int(width), int(height));
    header.pixels = std::max(header.pixels, width * height);
    return header;
}
