#pragma once

#include "picture/Still.h"
#include "viewer/movie/MovieFile.h"
#include "viewer/movie/MovieJob.h"

#include <QFile>
#include <QString>

#include <optional>

/// Reads a movie file: first looks for its parts, some megabytes a step, then reads and decodes
/// them (once, at an eighth of their size), one part a step. Beyond the frames that it gave away
/// it holds one chunk or one part at a time. Each part also lies as "tt.jpg" in the application
/// folder meanwhile.
///
/// A frame may be any picture (see picture/Still.h). It fails at whatever is no movie: a missing
/// file, one that cannot be read, what is no ordinary file (a folder, a pipe, a device: none is
/// waited for), an empty file, a part that is no picture or is longer than Still::MaxEncodedBytes,
/// a file that becomes shorter meanwhile. The frames before that have been given.
///
/// The order: Began, which empties the history; caption "Loading Movie..." within begin(); the
/// maximum, which is the number of parts; for each part the value and then FrameRead; caption
/// "Done!"; Loaded; Finished. Where it is stopped, Loaded and Finished follow, or Finished alone
/// before the first frame.
class MovieReader : public MovieJob
{
    Q_OBJECT

public:
    MovieReader(const QString& path, const QString& applicationFolder);

signals:
    /// The next frame. Never a null one.
    void FrameRead(const Still& frame);

    /// There are no more frames, and there was one at least.
    void Loaded();

protected:
    void prepare() override;
    Outcome step() override;
    void conclude() override;

private:
    bool open();
    bool scanChunk();
    bool readPart();
    std::optional<QByteArray> bytesAt(qint64 position, qint64 count);

    QFile m_file;
    QString m_frameFile;
    MovieScan m_scan{0};
    std::size_t m_partsRead = 0;
    bool m_anyFrame = false;
};
