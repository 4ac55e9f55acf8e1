#include "viewer/movie/MovieFile.h"

#include <QByteArrayMatcher>

#include <algorithm>

void appendMovieFrame(QByteArray& movie, const QByteArray& frame)
{
    if (!movie.isEmpty())
        movie += MovieSeparator;
    movie += frame;
}

MovieScan::MovieScan(qint64 size, qint64 chunkBytes)
    : m_size(size)
    , m_chunkBytes(chunkBytes)
    , m_done(size == 0)
{
    Q_ASSERT(chunkBytes > MovieSeparator.size());
}

qint64 MovieScan::count() const
{
    return std::min(m_chunkBytes, m_size - m_searched);
}

void MovieScan::take(QByteArrayView chunk)
{
    static const QByteArrayMatcher separator(MovieSeparator.toByteArray());
    const qint64 chunkBegin = m_searched;
    const qint64 chunkEnd = chunkBegin + chunk.size();
    qsizetype from = 0;
    while (!m_done) {
        const qsizetype found = separator.indexIn(chunk.data(), chunk.size(), from);
        if (found < 0)
            break;
        endPart(chunkBegin + found);
        from = found + MovieSeparator.size();
        m_partBegin = chunkBegin + from;
    }
    if (m_done)
        return;
    if (chunkEnd == m_size) {
        endPart(m_size);
        m_done = true;
        return;
    }
    // The chunk's last bytes may be the beginning of a separator.
    m_searched = std::max(chunkEnd - (MovieSeparator.size() - 1), m_partBegin);
    if (m_searched - m_partBegin > Still::MaxEncodedBytes)
        endPart(m_searched);
}

/// A part that cannot be a picture is the last one.
void MovieScan::endPart(qint64 end)
{
    m_parts.push_back({m_partBegin, end - m_partBegin});
    m_done = !m_parts.back().mayBePicture();
}
