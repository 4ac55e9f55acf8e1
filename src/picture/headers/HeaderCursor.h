#pragma once

#include <QByteArrayView>
#include <QtEndian>

#include <algorithm>
#include <cstring>

/// Reads on through the bytes of a picture. Past the end everything is 0, and atEnd() tells.
class HeaderCursor
{
public:
    explicit HeaderCursor(QByteArrayView bytes, qsizetype position = 0)
        : m_bytes(bytes)
        , m_position(position)
    {
    }

    qsizetype position() const { return m_position; }
    bool atEnd() const { return m_position >= m_bytes.size(); }
    bool holds(qsizetype count) const { return count <= m_bytes.size() - m_position; }
    void skip(qsizetype count) { m_position += std::min(count, m_bytes.size() - m_position); }

    int byte() { return atEnd() ? 0 : uchar(m_bytes[m_position++]); }

    template<typename T>
    T little()
    {
        return holds(sizeof(T)) ? qFromLittleEndian<T>(take(sizeof(T))) : past<T>();
    }

    template<typename T>
    T big()
    {
        return holds(sizeof(T)) ? qFromBigEndian<T>(take(sizeof(T))) : past<T>();
    }

    /// Moves to the next byte of that value. False, and at the end, where there is none.
    bool find(uchar value)
    {
        const void* found = atEnd() ? nullptr
                                    : std::memchr(m_bytes.data() + m_position, value,
                                                  size_t(m_bytes.size() - m_position));
        m_position = found ? static_cast<const char*>(found) - m_bytes.data() : m_bytes.size();
        return found != nullptr;
    }

private:
    const void* take(qsizetype count)
    {
        m_position += count;
        return m_bytes.data() + m_position - count;
    }

    template<typename T>
    T past()
    {
        m_position = m_bytes.size();
        return 0;
    }

    QByteArrayView m_bytes;
    qsizetype m_position;
};
