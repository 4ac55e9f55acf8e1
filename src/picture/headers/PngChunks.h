#pragma once

#include "picture/headers/HeaderCursor.h"

#include <QByteArray>

#include <algorithm>
#include <cstring>
#include <optional>

/// One chunk of a PNG, as views of its bytes.
struct PngChunk
{
    qint64 length = 0;   ///< As announced.
    QByteArrayView type; ///< Four letters.
    QByteArrayView data; ///< What is there of it.
    QByteArrayView all;  ///< Length, type, data and check sum; what is there of it.

    bool isOf(const char* name) const { return std::memcmp(type.data(), name, 4) == 0; }
    /// A decoder cannot do without it: its first letter is a capital one.
    bool isCritical() const { return (type[0] & 0x20) == 0; }
    bool isCut() const { return all.size() < length + 12; }
};

/// Walks through the chunks of a PNG, whose bytes must outlive it.
class PngChunks
{
public:
    static constexpr char Signature[] = "\x89PNG\r\n\x1A\n";
    static constexpr qsizetype SignatureBytes = 8;

    explicit PngChunks(QByteArrayView bytes)
        : m_bytes(bytes)
        , m_position(SignatureBytes)
    {
    }

    /// The next one, be it cut by the end of the bytes; nothing where not even its type is there.
    std::optional<PngChunk> next()
    {
        HeaderCursor cursor(m_bytes, std::min(m_position, m_bytes.size()));
        const qsizetype begin = cursor.position();
        if (!cursor.holds(8))
            return {};
        PngChunk chunk;
        chunk.length = cursor.big<quint32>();
        chunk.type = m_bytes.sliced(begin + 4, 4);
        cursor.skip(4);
        const qint64 left = m_bytes.size() - cursor.position();
        chunk.data = m_bytes.sliced(cursor.position(), std::min(chunk.length, left));
        chunk.all = m_bytes.sliced(begin, std::min(chunk.length + 12, left + 8));
        m_position = begin + chunk.all.size();
        return chunk;
    }

private:
    QByteArrayView m_bytes;
    qsizetype m_position;
};

/// The PNG (one that PictureHeader reads) with nothing but what its pixels need: the critical
/// chunks and the transparency, up to the end chunk. Texts, profiles and what else a thousandth of
/// its size may hold compressed are left out: a megabyte of them would inflate to a gigabyte, and
/// a decoder would keep it. A data chunk that the end cuts is closed behind what came of it, so
/// that a decoder takes all of that.
QByteArray barePng(QByteArrayView bytes);
