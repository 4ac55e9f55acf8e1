#include "picture/headers/PictureHeader.h"

#include "picture/headers/WebpChunks.h"
#include "picture/headers/WebpLossless.h"

namespace {

/// Of pixels without losses, or of the transparency beside others. Nothing where these err.
std::optional<qint64> blocksOf(const WebpParts& parts)
{
    constexpr qsizetype losslessHeader = 5;
    constexpr qsizetype alphaHeader = 1;
    constexpr int chunkHeader = 8;
    const QByteArrayView pixels = parts.pixels.sliced(chunkHeader);
    if (parts.pixels.startsWith("VP8L"))
        return losslessBlocks(pixels.sliced(losslessHeader), parts.frame);
    if (parts.alpha.isEmpty())
        return 0;
    const QByteArrayView alpha = parts.alpha.sliced(chunkHeader);
    if (alpha.isEmpty())
        return {};
    const bool isCompressed = alpha.front() & 0x03;
    return isCompressed ? losslessBlocks(alpha.sliced(alphaHeader), parts.frame) : 0;
}

} // namespace

std::optional<PictureHeader> PictureHeader::readWebp(QByteArrayView bytes)
{
    const auto parts = WebpParts::read(bytes);
    const auto blocks = parts ? blocksOf(*parts) : std::nullopt;
    if (!blocks)
        return {};
    PictureHeader header;
    header.format = PictureHeader::Format::Webp;
    header.usedBytes = parts->fileBytes;
    header.fileBytes = parts->fileBytes;
    header.blocks = *blocks;
    const QSize size = parts->canvas.isEmpty() ? parts->frame : parts->canvas;
    header.pixels = qint64(parts->frame.width()) * parts->frame.height();
    // A frame is laid onto a canvas: a decoder holds both.
    if (parts->isAnimated())
        header.pixels += qint64(size.width()) * size.height();
    return sized(header, size.width(), size.height());
}
