#include "viewer/movie/MovieWriter.h"

#include "picture/SaveImage.h"
#include "shared/ReplaceFile.h"
#include "shared/TempFiles.h"
#include "viewer/movie/MovieFile.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Beside the frames: putting the movie together, and writing it.
constexpr int StepsAtTheEnd = 2;

} // namespace

MovieWriter::MovieWriter(const QString& path, const QString& applicationFolder,
                         const ImageList& images)
    : m_path(path)
    , m_frameFile(tempFiles::ofSaving(applicationFolder))
    , m_images(images)
{
}

void MovieWriter::prepare()
{
    m_timesCleared = m_images.timesCleared();
    m_maximum = m_images.Count() + StepsAtTheEnd;
    emit MaximumChanged(m_maximum);
    emit ValueChanged(0);
}

MovieJob::Outcome MovieWriter::step()
{
    if (m_images.timesCleared() != m_timesCleared)
        return failed(tr("All images were deleted"));
    if (m_stage == Stage::Writing)
        return write();
    if (const int next = m_images.firstAfter(m_lastSerial); next > 0)
        return addFrame(next);
    // The caption is painted before the disk is waited for.
    m_stage = Stage::Writing;
    setValue(m_saved + 1);
    emit CaptionChanged(u"Saving Movie..."_s);
    return Outcome::GoOn;
}

MovieJob::Outcome MovieWriter::stopped()
{
    return failed(tr("Saving was stopped"));
}

void MovieWriter::conclude()
{
    emit Saved();
}

MovieJob::Outcome MovieWriter::addFrame(int n)
{
    const QByteArray frame = encodeJpeg(m_images.Picture(n).image());
    if (frame.isEmpty())
        return failed(tr("An image does not fit into a movie"));
    tempFiles::write(m_frameFile, frame, tempFiles::OldEnd::Cut);
    appendMovieFrame(m_movie, frame);
    m_lastSerial = m_images.Serial(n);
    ++m_saved;
    setValue(m_saved);
    emit CaptionChanged(u"Saving Image %1"_s.arg(m_saved));
    return Outcome::GoOn;
}

MovieJob::Outcome MovieWriter::write()
{
    QString reason;
    if (!replaceFile(m_path, m_movie, &reason, NewFile::Document))
        return failed(reason);
    setValue(m_maximum);
    emit CaptionChanged(u"Done!"_s);
    return Outcome::Done;
}

/// Entries that came meanwhile are more than the progress counts with.
void MovieWriter::setValue(int value)
{
    emit ValueChanged(std::min(value, m_maximum));
}
