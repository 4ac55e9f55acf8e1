#include "picture/headers/WebpLossless.h"

#include <algorithm>
#include <array>

namespace {

constexpr int LengthSymbols = 24;
constexpr int ByteSymbols = 256;
constexpr int DistanceSymbols = 40;
constexpr int MostCacheBits = 11;
constexpr int MostSymbols = ByteSymbols + LengthSymbols + (1 << MostCacheBits);
constexpr int MostCodeBits = 15;

/// The lowest bit of each byte comes first. Past the end all are 0, and hasErred() tells.
class BitReader
{
public:
    explicit BitReader(QByteArrayView bytes)
        : m_bytes(bytes)
    {
    }

    int bit()
    {
        const qsizetype byte = m_position / 8;
        if (byte >= m_bytes.size()) {
            m_hasErred = true;
            return 0;
        }
        return uchar(m_bytes[byte]) >> (m_position++ % 8) & 1;
    }

    int bits(int count)
    {
        int value = 0;
        for (int i = 0; i < count; ++i)
            value |= bit() << i;
        return value;
    }

    qint64 position() const { return m_position; }
    void fail() { m_hasErred = true; }
    bool hasErred() const { return m_hasErred; }

private:
    QByteArrayView m_bytes;
    qint64 m_position = 0;
    bool m_hasErred = false;
};

/// A canonical prefix code.
class PrefixCode
{
public:
    /// From the length of each symbol's code; 0: there is none. False where they are no code.
    bool setLengths(const quint8* lengths, int count)
    {
        m_count.fill(0);
        for (int symbol = 0; symbol < count; ++symbol)
            ++m_count[lengths[symbol]];
        const int used = count - m_count[0];
        m_count[0] = 0;
        std::array<int, MostCodeBits + 1> next{};
        int left = 1;
        for (size_t bits = 1; bits <= MostCodeBits; ++bits) {
            left = 2 * left - m_count[bits];
            if (left < 0)
                return false;
            next[bits] = next[bits - 1] + m_count[bits - 1];
        }
        for (int symbol = 0; symbol < count; ++symbol) {
            if (lengths[symbol] > 0)
                m_symbols[size_t(next[lengths[symbol]]++)] = quint16(symbol);
        }
        m_isConstant = used == 1;
        return m_isConstant || (used > 1 && left == 0);
    }

    /// The next one. Where the code has one alone, that takes no bits.
    int symbol(BitReader& reader) const
    {
        if (m_isConstant)
            return m_symbols[0];
        int code = 0;
        int first = 0;
        int index = 0;
        for (size_t bits = 1; bits <= MostCodeBits && !reader.hasErred(); ++bits) {
            code |= reader.bit();
            if (code - m_count[bits] < first)
                return m_symbols[size_t(index + code - first)];
            index += m_count[bits];
            first = 2 * (first + m_count[bits]);
            code *= 2;
        }
        return 0;
    }

private:
    std::array<int, MostCodeBits + 1> m_count{};
    std::array<quint16, MostSymbols> m_symbols{};
    bool m_isConstant = false;
};

class LosslessReader
{
public:
    LosslessReader(QByteArrayView data, QSize size)
        : m_reader(data)
        , m_size(size)
    {
    }

    std::optional<qint64> blocks()
    {
        skipTransforms();
        readCacheBits();
        qint64 result = 0;
        if (m_reader.bit()) {
            const QSize blocks = inBlocks(m_reader.bits(3) + 2);
            result = qint64(blocks.width()) * blocks.height();
        }
        return m_reader.hasErred() ? std::nullopt : std::optional(result);
    }

private:
    static int roundedUp(int side, int bits) { return (side + (1 << bits) - 1) >> bits; }
    QSize inBlocks(int bits) const
    {
        return QSize(roundedUp(m_size.width(), bits), roundedUp(m_size.height(), bits));
    }

    void skipTransforms()
    {
        enum { Predictor, Colours, Green, Palette };
        int seen = 0;
        while (m_reader.bit() && !m_reader.hasErred()) {
            const int type = m_reader.bits(2);
            if (seen & 1 << type)
                m_reader.fail();
            seen |= 1 << type;
            if (type == Palette) {
                const int colours = m_reader.bits(8) + 1;
                skipImage(QSize(colours, 1));
                // So few colours share the pixels of a row.
                const int shared = colours > 16 ? 0 : colours > 4 ? 1 : colours > 2 ? 2 : 3;
                m_size.setWidth(roundedUp(m_size.width(), shared));
            } else if (type != Green) {
                skipImage(inBlocks(m_reader.bits(3) + 2));
            }
        }
    }

    /// What is added to the symbols of green.
    int readCacheBits()
    {
        if (!m_reader.bit())
            return 0;
        const int bits = m_reader.bits(4);
        if (bits < 1 || bits > MostCacheBits)
            m_reader.fail();
        return 1 << std::min(bits, MostCacheBits);
    }

    void skipImage(QSize size)
    {
        const int cached = readCacheBits();
        readCode(m_green, ByteSymbols + LengthSymbols + cached);
        for (PrefixCode& code : m_others)
            readCode(code, ByteSymbols);
        readCode(m_distance, DistanceSymbols);
        qint64 left = qint64(size.width()) * size.height();
        while (left > 0 && !m_reader.hasErred()) {
            const qint64 before = m_reader.position();
            const int symbol = m_green.symbol(m_reader);
            if (symbol < ByteSymbols) {
                for (const PrefixCode& code : m_others)
                    code.symbol(m_reader);
                --left;
            } else if (symbol < ByteSymbols + LengthSymbols) {
                left -= readCount(symbol - ByteSymbols);
                readCount(m_distance.symbol(m_reader));
            } else {
                --left;
            }
            // Where nothing takes a bit, the rest is the same, be it millions.
            if (m_reader.position() == before)
                return;
        }
    }

    int readCount(int symbol)
    {
        if (symbol < 4)
            return symbol + 1;
        const int extra = (symbol - 2) >> 1;
        return ((2 + (symbol & 1)) << extra) + m_reader.bits(extra) + 1;
    }

    void readCode(PrefixCode& code, int symbols)
    {
        m_lengths.fill(0);
        if (m_reader.bit()) {
            const bool two = m_reader.bit();
            m_lengths[size_t(m_reader.bits(m_reader.bit() ? 8 : 1))] = 1;
            if (two)
                m_lengths[size_t(m_reader.bits(8))] = 1;
        } else {
            readLengths(symbols);
        }
        if (m_reader.hasErred() || !code.setLengths(m_lengths.data(), symbols))
            m_reader.fail();
    }

    void readLengths(int symbols)
    {
        constexpr std::array<quint8, 19> order{17, 18, 0, 1,  2,  3,  4,  5,  16, 6,
                                               7,  8,  9, 10, 11, 12, 13, 14, 15};
        std::array<quint8, 19> lengths{};
        const int count = m_reader.bits(4) + 4;
        for (int i = 0; i < count; ++i)
            lengths[order[size_t(i)]] = quint8(m_reader.bits(3));
        PrefixCode code;
        if (!code.setLengths(lengths.data(), int(lengths.size()))) {
            m_reader.fail();
            return;
        }
        int most = symbols;
        if (m_reader.bit()) {
            const int bits = 2 + 2 * m_reader.bits(3);
            most = 2 + m_reader.bits(bits);
            if (most > symbols)
                m_reader.fail();
        }
        quint8 before = 8;
        for (int symbol = 0; symbol < symbols && most > 0 && !m_reader.hasErred(); --most) {
            const int length = code.symbol(m_reader);
            int repeated = 1;
            quint8 value = quint8(length);
            if (length > MostCodeBits) {
                repeated = length == 16   ? 3 + m_reader.bits(2)
                           : length == 17 ? 3 + m_reader.bits(3)
                                          : 11 + m_reader.bits(7);
                value = length == 16 ? before : quint8(0);
            } else if (length > 0) {
                before = value;
            }
            if (repeated > symbols - symbol) {
                m_reader.fail();
                return;
            }
            std::fill_n(m_lengths.begin() + symbol, repeated, value);
            symbol += repeated;
        }
    }

    BitReader m_reader;
    QSize m_size; ///< In what is coded: several pixels of few colours are one.
    PrefixCode m_green;
    std::array<PrefixCode, 3> m_others;
    PrefixCode m_distance;
    std::array<quint8, MostSymbols> m_lengths{};
};

} // namespace

std::optional<qint64> losslessBlocks(QByteArrayView data, QSize size)
{
    return LosslessReader(data, size).blocks();
}
