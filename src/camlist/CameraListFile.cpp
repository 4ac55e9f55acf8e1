#include "camlist/CameraListFile.h"

#include "shared/AppFolder.h"
#include "shared/CameraListLine.h"
#include "shared/DiskText.h"
#include "shared/ReadFile.h"
#include "shared/ReplaceFile.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

CameraListFile::CameraListFile(const QString& folder)
    : m_path(pathInFolder(folder, u"list.dat"_s))
{
}

std::optional<QByteArray> CameraListFile::read()
{
    // Taken first: what is written while the file is read counts as another's.
    m_seen = fileStamp(m_path);
    m_readable = true;
    if (m_seen.kind == FileStamp::Kind::Missing)
        return QByteArray();
    const auto content = readFile(m_path, MaxBytes);
    m_readable = content.has_value();
    if (!content)
        return std::nullopt;
    return withoutLineEnd(withoutByteOrderMark(*content)).toByteArray();
}

bool CameraListFile::write(const QByteArray& line)
{
    if (line.isEmpty() && !m_readable)
        return false;
    if (!keepBackup())
        return false;
    const bool written = line.isEmpty() ? !QFile::exists(m_path) || QFile::remove(m_path)
                                        : replaceFile(m_path, line + "\r\n");
    if (written) {
        m_seen = fileStamp(m_path);
        m_readable = true;
    }
    return written;
}

/// Returns whether the file may be replaced now.
bool CameraListFile::keepBackup() const
{
    const FileStamp now = fileStamp(m_path);
    if (now.kind == FileStamp::Kind::Missing || (m_readable && now == m_seen))
        return true;
    const QString backup = m_path + ".bak"_L1;
    // A copy, so that there is a list.dat at every moment.
    if (const auto content = readFile(m_path, MaxBytes))
        return replaceFile(backup, *content);
    QFile::remove(backup);
    return QFile::rename(m_path, backup);
}

std::optional<QByteArray> readImportedList(const QString& path)
{
    const auto content = readFile(path, CameraListFile::MaxBytes);
    if (!content)
        return std::nullopt;
    QByteArrayView rest = withoutLineEnd(withoutByteOrderMark(*content));
    if (!rest.startsWith("CAMZ"))
        return std::nullopt;
    return rest.sliced(4).toByteArray();
}
