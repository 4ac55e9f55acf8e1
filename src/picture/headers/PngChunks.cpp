#include "picture/headers/PngChunks.h"

#include <QtEndian>

#include <array>

namespace {

constexpr std::array<quint32, 256> checkSumTable()
{
    constexpr quint32 polynomial = 0xEDB88320;
    std::array<quint32, 256> table{};
    for (quint32 i = 0; i < table.size(); ++i) {
        quint32 value = i;
        for (int bit = 0; bit < 8; ++bit)
            value = value & 1 ? polynomial ^ (value >> 1) : value >> 1;
        table[i] = value;
    }
    return table;
}

/// CRC-32, as each chunk ends with it.
quint32 checkSum(QByteArrayView bytes)
{
    static constexpr auto table = checkSumTable();
    quint32 sum = 0xFFFFFFFF;
    for (const char byte : bytes)
        sum = table[(sum ^ uchar(byte)) & 0xFF] ^ (sum >> 8);
    return ~sum;
}

void appendBig(QByteArray& bytes, quint32 value)
{
    value = qToBigEndian(value);
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void appendClosed(QByteArray& bytes, const PngChunk& chunk)
{
    appendBig(bytes, quint32(chunk.data.size()));
    const qsizetype begin = bytes.size();
    bytes.append(chunk.type).append(chunk.data);
    appendBig(bytes, checkSum(QByteArrayView(bytes).sliced(begin)));
}

} // namespace

QByteArray barePng(QByteArrayView bytes)
{
    QByteArray bare;
    bare.reserve(bytes.size() + 12);
    bare.append(bytes.first(PngChunks::SignatureBytes));
    bool seeThrough = false;
    PngChunks chunks(bytes);
    while (const auto chunk = chunks.next()) {
        // A decoder reports each further transparency, tens of thousands of them.
        const bool isTransparency = chunk->isOf("tRNS") && !seeThrough;
        seeThrough = seeThrough || isTransparency;
        if (!chunk->isCritical() && !isTransparency)
            continue;
        if (chunk->isCut() && chunk->isOf("IDAT"))
            appendClosed(bare, *chunk);
        else
            bare.append(chunk->all);
        if (chunk->isOf("IEND"))
            break;
    }
    return bare;
}
