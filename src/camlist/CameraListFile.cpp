#include "camlist/CameraListFile.h"

#include "cameras/CameraKey.h"
#include "platform/ExchangeNames.h"
#include "platform/FileStamp.h"
#include "shared/AppFolder.h"
#include "shared/DiskText.h"
#include "shared/ReadFile.h"
#include "shared/ReplaceFile.h"

#include <QCryptographicHash>
#include <QFile>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto ByteOrderMark = "\xEF\xBB\xBF";
const QByteArray ImportMark = "CAMZ";

bool isMissing(const QString& path)
{
    return fileStamp(path).kind == FileStamp::Kind::Missing;
}

/// Tells contents apart. A file's times do not: copying programs touch them without a change, and
/// two changes within a step of the file system's clock have the same.
QByteArray digestOf(const QByteArray& content)
{
    // Four times as fast here as the better known SHA-256.
    return QCryptographicHash::hash(content, QCryptographicHash::Blake2b_256);
}

QByteArray contentFor(const QByteArray& line)
{
    // A category may begin with the bytes of a byte order mark, which a reader skips at the start
    // of the file: it skips the one before them then.
    const bool looksMarked = line.startsWith(ByteOrderMark);
    return (looksMarked ? ByteOrderMark + line : line) + "\r\n";
}

QByteArray lineOf(const QByteArray& content)
{
    return withoutLineEnd(withoutByteOrderMark(content)).toByteArray();
}

/// Whether `line`, which nothing marks as one, is a camera list line. The mark in other letters is
/// none, and no category.
bool isCameraListLine(QByteArrayView line)
{
    const auto isControl = [](char one) {
        const auto byte = static_cast<unsigned char>(one);
        return (byte < ' ' && one != HeaderMark.toLatin1()) || byte == 0x7F;
    };
    const auto first = line.first(std::min(ImportMark.size(), line.size()));
    const auto separators = std::count(line.begin(), line.end(), FieldSeparator.toLatin1());
    return separators % 3 == 2 && first.compare(ImportMark, Qt::CaseInsensitive) != 0 &&
           std::none_of(line.begin(), line.end(), isControl);
}

} // namespace

CameraListFile::CameraListFile(const QString& folder)
    : m_path(pathInFolder(folder, u"list.dat"_s))
    , m_backupPath(m_path + ".bak"_L1)
    , m_freshPath(m_path + ".new"_L1)
{
}

std::optional<QByteArray> CameraListFile::read()
{
    const auto content = readFile(m_path, MaxBytes);
    m_seen = content ? digestOf(*content) : QByteArray();
    m_readable = content || isMissing(m_path);
    if (!m_readable)
        return std::nullopt;
    return lineOf(content.value_or(QByteArray()));
}

std::optional<QByteArray> CameraListFile::peek() const
{
    const auto content = readFile(m_path, MaxBytes);
    if (!content && !isMissing(m_path))
        return std::nullopt;
    return lineOf(content.value_or(QByteArray()));
}

void CameraListFile::distrust()
{
    m_seen.clear();
    m_readable = false;
}

bool CameraListFile::write(const QByteArray& line)
{
    const auto now = readFile(m_path, MaxBytes);
    const QByteArray bytes = line.isEmpty() ? QByteArray() : contentFor(line);
    if (bytes.size() > MaxBytes)
        return false;
    if (!(line.isEmpty() ? remove(now) : replace(now, bytes)))
        return false;
    m_seen = line.isEmpty() ? QByteArray() : digestOf(bytes);
    m_readable = true;
    return true;
}

bool CameraListFile::remove(const std::optional<QByteArray>& now) const
{
    if (!now || !m_readable)
        return isMissing(m_path);
    return isAnothers(*now) ? moveToBackup(m_path) : QFile::remove(m_path);
}

bool CameraListFile::replace(const std::optional<QByteArray>& now, const QByteArray& bytes) const
{
    if (!now && !isMissing(m_path))
        return replaceUnread(bytes);
    const bool isKept = !now || *now == bytes || !isAnothers(*now) || keepCopy(*now);
    return isKept && replaceFile(m_path, bytes);
}

bool CameraListFile::isAnothers(const QByteArray& now) const
{
    return digestOf(now) != m_seen;
}

/// A copy, so that there is a list.dat at every moment, and a link to it stays one.
bool CameraListFile::keepCopy(const QByteArray& now) const
{
    QFile::remove(m_freshPath);
    // A key may hold a password: nobody may read the copy who may not read the list, at any time.
    const auto rights = QFile::permissions(m_path) | QFile::ReadOwner | QFile::WriteOwner;
    if (replaceFile(m_freshPath, {}) && QFile::setPermissions(m_freshPath, rights) &&
        replaceFile(m_freshPath, now) && moveToBackup(m_freshPath))
        return true;
    QFile::remove(m_freshPath);
    return false;
}

/// What cannot be read cannot be copied: the new list takes its place, and gives it its own.
bool CameraListFile::replaceUnread(const QByteArray& bytes) const
{
    QFile::remove(m_freshPath);
    if (!replaceFile(m_freshPath, bytes))
        return false;
    if (!moveToBackup(m_freshPath)) {
        QFile::remove(m_freshPath);
        return false;
    }
    if (exchangeNames(m_path, m_backupPath))
        return true;
    // One after the other then, and back where that is refused.
    if (!QFile::rename(m_backupPath, m_freshPath))
        return false;
    if (QFile::rename(m_path, m_backupPath)) {
        if (QFile::rename(m_freshPath, m_path))
            return true;
        QFile::rename(m_backupPath, m_path);
    }
    QFile::remove(m_freshPath);
    return false;
}

bool CameraListFile::moveToBackup(const QString& path) const
{
    QFile::remove(m_backupPath);
    return QFile::rename(path, m_backupPath);
}

std::optional<QByteArray> readImportedList(const QString& path)
{
    const auto content = readFile(path, CameraListFile::MaxBytes);
    if (!content)
        return std::nullopt;
    const QByteArrayView rest = withoutLineEnd(withoutByteOrderMark(*content));
    if (rest.startsWith(ImportMark))
        return rest.sliced(ImportMark.size()).toByteArray();
    return isCameraListLine(rest) ? std::optional(rest.toByteArray()) : std::nullopt;
}

QString writeExportedList(const QString& path, const QList<CameraRecord>& cameras)
{
    QString reason;
    replaceFile(path, ImportMark + writeCameraListLine(cameras) + "\r\n", &reason,
                NewFile::Document);
    return reason;
}
