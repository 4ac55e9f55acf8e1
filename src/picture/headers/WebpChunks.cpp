#include "picture/headers/WebpChunks.h"

#include "picture/headers/HeaderCursor.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace {

constexpr qsizetype RiffHeader = 12;
constexpr qsizetype ChunkHeader = 8;
constexpr qsizetype FrameHeader = 16;

struct Chunk
{
    QByteArrayView all; ///< With its header, and a byte that makes its length even.
    QByteArrayView data;

    bool isOf(const char* name) const { return std::memcmp(all.data(), name, 4) == 0; }
};

/// The chunk at the start of `bytes`; nothing where it is not whole.
std::optional<Chunk> firstChunk(QByteArrayView bytes)
{
    if (bytes.size() < ChunkHeader)
        return {};
    const qsizetype length = qFromLittleEndian<quint32>(bytes.data() + 4);
    const qsizetype all = ChunkHeader + length + length % 2;
    if (all > bytes.size())
        return {};
    return Chunk{bytes.first(all), bytes.sliced(ChunkHeader, length)};
}

int little24(HeaderCursor& cursor)
{
    const int low = cursor.little<quint16>();
    return low | cursor.byte() << 16;
}

QSize sizeOfLossy(QByteArrayView data)
{
    HeaderCursor cursor(data, std::min<qsizetype>(3, data.size()));
    const bool isKeyFrame = cursor.byte() == 0x9D && cursor.byte() == 0x01 && cursor.byte() == 0x2A;
    const int width = cursor.little<quint16>() & 0x3FFF;
    const int height = cursor.little<quint16>() & 0x3FFF;
    return isKeyFrame ? QSize(width, height) : QSize();
}

QSize sizeOfLossless(QByteArrayView data)
{
    HeaderCursor cursor(data);
    const bool isLossless = cursor.byte() == 0x2F;
    if (!isLossless || !cursor.holds(4))
        return {};
    const auto bits = cursor.little<quint32>();
    return QSize(int(bits & 0x3FFF) + 1, int(bits >> 14 & 0x3FFF) + 1);
}

/// Looks for transparency and pixels, which come in this order; others may stand between.
bool readImage(QByteArrayView bytes, WebpParts& parts)
{
    while (const auto chunk = firstChunk(bytes)) {
        const bool isLossless = chunk->isOf("VP8L");
        if (isLossless || chunk->isOf("VP8 ")) {
            if (isLossless) // It brings its own.
                parts.alpha = {};
            parts.pixels = chunk->all;
            parts.frame = isLossless ? sizeOfLossless(chunk->data) : sizeOfLossy(chunk->data);
            return !parts.frame.isEmpty();
        }
        if (chunk->isOf("ALPH") && parts.alpha.isEmpty())
            parts.alpha = chunk->all;
        bytes = bytes.sliced(chunk->all.size());
    }
    return false;
}

bool readFirstFrame(QByteArrayView bytes, WebpParts& parts)
{
    while (const auto chunk = firstChunk(bytes)) {
        if (chunk->isOf("ANIM") && parts.anim.isEmpty())
            parts.anim = chunk->all;
        if (chunk->isOf("ANMF")) {
            parts.anmf = chunk->all;
            return !parts.anim.isEmpty() && chunk->data.size() >= FrameHeader &&
                   readImage(chunk->data.sliced(FrameHeader), parts);
        }
        bytes = bytes.sliced(chunk->all.size());
    }
    return false;
}

void appendLength(QByteArray& bytes, qsizetype length)
{
    const quint32 value = qToLittleEndian(quint32(length));
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

} // namespace

std::optional<WebpParts> WebpParts::read(QByteArrayView bytes)
{
    if (bytes.size() < RiffHeader || !bytes.startsWith("RIFF") ||
        !bytes.sliced(8).startsWith("WEBP"))
        return {};
    const qsizetype announced = qsizetype(qFromLittleEndian<quint32>(bytes.data() + 4)) + 8;
    QByteArrayView rest = bytes.first(std::clamp(announced, RiffHeader, bytes.size()));
    WebpParts parts;
    parts.fileBytes = rest.size();
    rest = rest.sliced(RiffHeader);
    const auto first = firstChunk(rest);
    if (!first)
        return {};
    if (!first->isOf("VP8X")) {
        if (!first->isOf("VP8 ") && !first->isOf("VP8L"))
            return {};
        return readImage(first->all, parts) ? std::optional(parts) : std::nullopt;
    }
    HeaderCursor cursor(first->data);
    parts.features = cursor.byte();
    cursor.skip(3);
    if (!cursor.holds(6))
        return {};
    const int width = little24(cursor) + 1;
    parts.canvas = QSize(width, little24(cursor) + 1);
    rest = rest.sliced(first->all.size());
    const bool found = parts.isAnimated() ? readFirstFrame(rest, parts) : readImage(rest, parts);
    return found ? std::optional(parts) : std::nullopt;
}

QByteArray bareWebp(QByteArrayView bytes)
{
    const auto parts = WebpParts::read(bytes);
    if (!parts)
        return {};
    QByteArray body("WEBP");
    if (!parts->canvas.isEmpty()) {
        const auto extended = bytes.sliced(RiffHeader, ChunkHeader + 10);
        body.append(extended);
        body[4 + ChunkHeader] =
            char(parts->features & (WebpParts::Animated | WebpParts::SeeThrough));
        const qint32 length = qToLittleEndian(10);
        std::memcpy(body.data() + 8, &length, sizeof length);
    }
    if (parts->isAnimated())
        body.append(parts->anim).append(parts->anmf);
    else
        body.append(parts->alpha).append(parts->pixels);
    QByteArray bare("RIFF");
    appendLength(bare, body.size());
    return bare.append(body);
}
