#pragma once

#include "picture/Still.h"

#include <QByteArray>

#include <deque>

/// A movie file (".pvm") is its frames, each a complete JPEG file, with this between two of them.
/// There is nothing before the first frame and nothing after the last; one frame alone is a plain
/// JPEG file, and no frame is an empty file. A frame that contains these bytes falls apart there.
inline constexpr QByteArrayView MovieSeparator("&IMAGE&");

/// Adds `frame` to the frames that `movie` holds already. An empty frame is not told from none.
void appendMovieFrame(QByteArray& movie, const QByteArray& frame);

/// Where in the file one of its parts lies, in bytes.
struct MoviePart
{
    qint64 begin = 0;
    qint64 size = 0;

    /// Whether so many bytes may be a picture at all.
    bool mayBePicture() const { return size >= MinBytes && size <= Still::MaxEncodedBytes; }

    /// No picture is shorter.
    static constexpr qint64 MinBytes = 16;
};

/// Finds the parts of a movie file without holding the file: it asks for chunk after chunk, and
/// keeps offsets only, which need less memory than the file has bytes.
///
/// Loading ends at the first part that is no picture. Where the length alone tells that (see
/// MoviePart::mayBePicture), that part is the last one found, and nothing behind it is looked at.
///
///     MovieScan scan(file.size());
///     while (!scan.isDone())
///         scan.take(the bytes of the file from scan.position() on, scan.count() of them);
class MovieScan
{
public:
    static constexpr qint64 DefaultChunkBytes = 4 * 1024 * 1024;

    /// For a file of `size` bytes, 0 or more, in chunks of `chunkBytes`, which are more than the
    /// separator has.
    explicit MovieScan(qint64 size, qint64 chunkBytes = DefaultChunkBytes);

    /// The next chunk's place in the file and its length, both in bytes. Chunks overlap, so that
    /// a separator is found wherever it lies.
    qint64 position() const { return m_searched; }
    qint64 count() const;

    /// Takes the chunk that position() and count() ask for, exactly.
    void take(QByteArrayView chunk);

    /// Whether all parts are known. At once for an empty file, which has none.
    bool isDone() const { return m_done; }

    const std::deque<MoviePart>& parts() const { return m_parts; }

private:
    void endPart(qint64 end);

    qint64 m_size;
    qint64 m_chunkBytes;
    qint64 m_partBegin = 0;
    qint64 m_searched = 0; ///< No separator begins between the part's beginning and here.
    bool m_done;
    /// A vector would hold everything twice whenever it grows.
    std::deque<MoviePart> m_parts;
};
