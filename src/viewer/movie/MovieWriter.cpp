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
    m_maximum = m_images.Count() + StepsAtTheEnd;
    emit MaximumChanged(m_maximum);
    emit ValueChanged(0);
}

MovieJob::Outcome MovieWriter::step()
{
    if (m_stage == Stage::Writing)
        return write() ? Outcome::Done : Outcome::Failed;
    if (m_saved < m_images.Count())
        return addFrame() ? Outcome::GoOn : Outcome::Failed;
    // The caption is painted before the disk is waited for.
    m_stage = Stage::Writing;
    setValue(m_saved + 1);
    emit CaptionChanged(u"Saving Movie..."_s);
    return Outcome::GoOn;
}

bool MovieWriter::addFrame()
{
    const QByteArray frame = encodeJpeg(m_images.Picture(m_saved + 1).image());
    if (frame.isEmpty())
        return false;
    tempFiles::write(m_frameFile, frame, tempFiles::OldEnd::Cut);
    appendMovieFrame(m_movie, frame);
    ++m_saved;
    setValue(m_saved);
    emit CaptionChanged(u"Saving Image %1"_s.arg(m_saved));
    return true;
}

bool MovieWriter::write()
{
    if (!replaceFile(m_path, m_movie))
        return false;
    setValue(m_maximum);
    emit CaptionChanged(u"Done!"_s);
    return true;
}

/// Entries that came meanwhile are more than the progress counts with.
void MovieWriter::setValue(int value)
{
    emit ValueChanged(std::min(value, m_maximum));
}
