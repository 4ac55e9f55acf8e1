#pragma once

#include <QByteArray>
#include <QtEndian>

#include <initializer_list>

/// What the builders of odd pictures write with.
namespace odd {

template<typename T>
QByteArray little(T value)
{
    value = qToLittleEndian(value);
    return QByteArray(reinterpret_cast<const char*>(&value), sizeof(T));
}

template<typename T>
QByteArray big(T value)
{
    value = qToBigEndian(value);
    return QByteArray(reinterpret_cast<const char*>(&value), sizeof(T));
}

inline QByteArray bytes(std::initializer_list<int> values)
{
    QByteArray result;
    for (const int value : values)
        result += char(value);
    return result;
}

/// Codes of varying length, the first in the lowest bits.
class CodeWriter
{
public:
    /// `bits` is 24 at most.
    void write(int code, int bits)
    {
        m_bits |= quint32(code) << m_count;
        m_count += bits;
        for (; m_count >= 8; m_count -= 8, m_bits >>= 8)
            m_bytes += char(m_bits & 0xFF);
    }

    QByteArray finished() { return m_count > 0 ? m_bytes + char(m_bits & 0xFF) : m_bytes; }
    qsizetype size() const { return m_bytes.size(); }

private:
    QByteArray m_bytes;
    quint32 m_bits = 0;
    int m_count = 0;
};

} // namespace odd
