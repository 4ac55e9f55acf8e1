#include "viewer/movie/MovieReader.h"

#include "shared/TempFiles.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Smaller than any view, for which a still decodes at its smallest.
constexpr QSize AtAnEighth(1, 1);

} // namespace

MovieReader::MovieReader(const QString& path, const QString& applicationFolder)
    : m_file(path)
    , m_frameFile(tempFiles::ofLoading(applicationFolder))
{
}

void MovieReader::prepare()
{
    emit ValueChanged(0);
    emit CaptionChanged(u"Loading Movie..."_s);
}

MovieJob::Outcome MovieReader::step()
{
    if (!m_file.isOpen())
        return open() ? Outcome::GoOn : Outcome::Failed;
    if (!m_scan.isDone())
        return scanChunk() ? Outcome::GoOn : Outcome::Failed;
    if (m_partsRead < m_scan.parts().size())
        return readPart() ? Outcome::GoOn : Outcome::Failed;
    emit CaptionChanged(u"Done!"_s);
    return Outcome::Done;
}

void MovieReader::conclude()
{
    if (m_anyFrame)
        emit Loaded();
}

/// The file stays open to the end, so that a new one in its place changes nothing.
bool MovieReader::open()
{
    // Opening a pipe that nobody writes to would wait for ever.
    if (!QFileInfo(m_file.fileName()).isFile() ||
        !m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    m_scan = MovieScan(m_file.size());
    return !m_scan.isDone();
}

bool MovieReader::scanChunk()
{
    const auto chunk = bytesAt(m_scan.position(), m_scan.count());
    if (!chunk)
        return false;
    m_scan.take(*chunk);
    if (m_scan.isDone())
        emit MaximumChanged(int(m_scan.parts().size()));
    return true;
}

bool MovieReader::readPart()
{
    const MoviePart part = m_scan.parts()[m_partsRead];
    ++m_partsRead;
    emit ValueChanged(int(m_partsRead));
    if (!part.mayBePicture())
        return false;
    const auto bytes = bytesAt(part.begin, part.size);
    if (!bytes)
        return false;
    // Kept: the old bytes of a longer frame stay behind a shorter one. A movie that is this file
    // itself is not written over while it is read.
    if (QFileInfo(m_frameFile) != QFileInfo(m_file))
        tempFiles::write(m_frameFile, *bytes, tempFiles::OldEnd::Stays);
    const Still frame = Still::fromBytes(*bytes, AtAnEighth);
    if (frame.isNull())
        return false;
    m_anyFrame = true;
    emit FrameRead(frame);
    return true;
}

/// Nothing where the file does not hold them all any more.
std::optional<QByteArray> MovieReader::bytesAt(qint64 position, qint64 count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    if (!m_file.seek(position) || m_file.read(bytes.data(), count) != count)
        return std::nullopt;
    return bytes;
}
