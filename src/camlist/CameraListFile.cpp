#include "camlist/CameraListFile.h"

#include "cameras/CameraKey.h"
#include "camlist/MergedLists.h"
#include "platform/files/FileStamp.h"
#include "shared/AppFolder.h"
#include "shared/DiskText.h"
#include "shared/FolderLock.h"
#include "shared/ReadFile.h"
#include "shared/ReplaceFile.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

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

/// What the line of `content` is made of: that and what stands before and behind it.
struct Parts
{
    QByteArray before;
    QByteArray line;
    QByteArray after;
};

/// Takes `content` apart; of a long list there is one copy all the time.
Parts partsOf(QByteArray&& content)
{
    Parts parts;
    const qsizetype mark = content.size() - withoutByteOrderMark(content).size();
    parts.before = content.first(mark);
    const qsizetype end = content.size() - withoutLineEnd(content).size();
    parts.after = content.last(std::min(end, content.size() - mark));
    parts.line = std::move(content);
    parts.line.chop(parts.after.size());
    parts.line.remove(0, mark);
    return parts;
}

bool isControl(char one)
{
    const auto byte = static_cast<unsigned char>(one);
    return (byte < ' ' && one != HeaderMark.toLatin1()) || byte == 0x7F;
}

bool isLineSpace(char one)
{
    return one == '\t' || one == '\r' || one == '\n';
}

/// Whether `line`, which nothing marks as one, is a camera list line. The mark in other letters is
/// none, and no category.
bool isCameraListLine(QByteArrayView line)
{
    const auto first = line.first(std::min(ImportMark.size(), line.size()));
    const auto separators = std::count(line.begin(), line.end(), FieldSeparator.toLatin1());
    return separators % 3 == 2 && first.compare(ImportMark, Qt::CaseInsensitive) != 0 &&
           std::none_of(line.begin(), line.end(), isControl);
}

qsizetype camerasIn(const QByteArray& line)
{
    return (line.count(FieldSeparator.toLatin1()) + 1) / 3;
}

bool hasCamera(QByteArrayView line)
{
    return CameraListReader(line).next().has_value();
}

QByteArray mergedLine(const QByteArray& base, const QByteArray& mine, const QByteArray& theirs,
                      bool* isConflict = nullptr)
{
    const MergedList merged =
        mergedLists(readCameraListLine(base), readCameraListLine(mine), readCameraListLine(theirs));
    if (isConflict)
        *isConflict = merged.isConflict;
    return writeCameraListLine(merged.cameras);
}

QString translated(const char* text)
{
    return QCoreApplication::translate("CameraListFile", text);
}

SaveOutcome failed(const char* reason)
{
    return {false, translated(reason)};
}

} // namespace

bool isTrustedLine(QByteArrayView line)
{
    qsizetype field = 0;
    for (const char one : line) {
        if (one == FieldSeparator.toLatin1())
            field = 0;
        else if (++field > LongestField || (isControl(one) && !isLineSpace(one)))
            return false;
    }
    return line.isEmpty() || hasCamera(line);
}

CameraListFile::CameraListFile(const QString& folder)
    : m_folder(folder)
    , m_path(pathInFolder(folder, u"list.dat"_s))
    , m_backups(m_path)
{
}

/// What is in the file, as far as it keeps the bounds.
std::optional<QByteArray> CameraListFile::content() const
{
    auto bytes = readFile(m_path, MaxBytes);
    return bytes && camerasIn(*bytes) <= MaxCameras ? std::move(bytes) : std::nullopt;
}

std::optional<QByteArray> CameraListFile::read()
{
    auto content = this->content();
    const QByteArray digest = content ? digestOf(*content) : QByteArray();
    const bool isOther = digest != m_seen;
    m_readable = content || isMissing(m_path);
    m_trouble = troubleOf(content);
    m_seen = digest;
    Parts parts;
    if (content)
        parts = partsOf(std::move(*content));
    if (!m_isChanged) {
        m_start = {Start::Kind::Missing, parts.line, parts.before, parts.after};
        if (content)
            m_start.kind = Start::Kind::File;
        else if (!m_readable)
            m_start.kind = Start::Kind::Unreadable;
    } else if (isOther && isTrustedLine(parts.line) && !parts.line.isEmpty()) {
        rebaseStart(parts.line);
    }
    m_base = parts.line;
    if (!m_readable)
        return std::nullopt;
    return parts.line;
}

std::optional<QByteArray> CameraListFile::peek() const
{
    const auto content = this->content();
    if (!content && !isMissing(m_path))
        return std::nullopt;
    return lineOf(content.value_or(QByteArray()));
}

CameraListFile::Trouble CameraListFile::troubleOf(const std::optional<QByteArray>& content) const
{
    const QFileInfo file(m_path);
    if (!content) {
        const FileStamp stamp = fileStamp(m_path);
        if (stamp.kind == FileStamp::Kind::Missing)
            return Trouble::None;
        if (file.exists() && !file.isFile())
            return Trouble::NoFile;
        if (stamp.kind == FileStamp::Kind::File && stamp.size > MaxBytes)
            return Trouble::TooLong;
        return readFile(m_path, MaxBytes) ? Trouble::TooMany : Trouble::Unreadable;
    }
    const bool isWritable = file.isWritable() && QFileInfo(m_folder).isWritable();
    return isWritable ? Trouble::None : Trouble::Unwritable;
}

void CameraListFile::distrust()
{
    m_seen.clear();
    m_base.clear();
    m_readable = false;
    m_trouble = Trouble::NoList;
    if (!m_isChanged)
        m_start = {Start::Kind::Unreadable};
}

void CameraListFile::standsFor(const QByteArray& line)
{
    m_base = line;
    if (!m_isChanged)
        m_start.line = line;
}

bool CameraListFile::isNew() const
{
    return m_readable && m_seen.isEmpty() && isMissing(m_path);
}

/// What another instance changed is as if it had been there at the start.
void CameraListFile::rebaseStart(const QByteArray& theirs)
{
    m_start = {Start::Kind::File, mergedLine(m_base, m_start.line, theirs), {}, "\r\n"};
}

CameraListFile::Saved CameraListFile::saveMerged(const QByteArray& line)
{
    const FolderLock lock(m_folder);
    const auto now = content();
    const int kept = m_backups.made();
    Saved saved;
    if (now && isAnothers(*now) && hasCamera(lineOf(*now)) && isTrustedLine(lineOf(*now)))
        saved = merge(*now, line);
    else
        static_cast<SaveOutcome&>(saved) = put(now, line);
    if (saved && lock.isHeld())
        removeLeftovers(m_path);
    if (m_backups.made() != kept)
        saved.keptAs = m_backups.path();
    return saved;
}

CameraListFile::Saved CameraListFile::merge(const QByteArray& now, const QByteArray& line)
{
    const QByteArray theirs = lineOf(now);
    bool isConflict = false;
    const QByteArray merged = mergedLine(m_base, line, theirs, &isConflict);
    Saved saved;
    if (isConflict)
        static_cast<SaveOutcome&>(saved) = m_backups.keepCopy(now);
    if (!saved)
        return saved;
    const QByteArray base = m_base;
    // What is there now is in the merged list, or beside: put() has nothing to keep.
    const QByteArray seen = std::exchange(m_seen, digestOf(now));
    static_cast<SaveOutcome&>(saved) = put(now, merged);
    if (!saved) {
        m_seen = seen;
        return saved;
    }
    m_start = {Start::Kind::File, mergedLine(base, m_start.line, theirs), {}, "\r\n"};
    if (merged != line)
        saved.merged = merged;
    return saved;
}

SaveOutcome CameraListFile::restore()
{
    if (!m_isChanged)
        return {};
    const FolderLock lock(m_folder);
    const auto now = content();
    if (now ? isAnothers(*now) : !m_seen.isEmpty() || !isMissing(m_path)) {
        // Without a list there is nothing to take back.
        return now && hasCamera(lineOf(*now)) && isTrustedLine(lineOf(*now))
                   ? merge(*now, m_start.line)
                   : SaveOutcome();
    }
    SaveOutcome restored;
    switch (m_start.kind) {
    case Start::Kind::Unreadable:
        if (m_isStartInBackup && m_backups.made() == 1)
            restored = m_backups.putBack();
        break;
    case Start::Kind::Missing:
        restored = put(now, {});
        break;
    case Start::Kind::File:
        restored.isDone =
            replaceFile(m_path, m_start.before + m_start.line + m_start.after, &restored.reason);
        break;
    }
    m_isChanged = !restored;
    return restored;
}

SaveOutcome CameraListFile::write(const QByteArray& line)
{
    const FolderLock lock(m_folder);
    return put(content(), line);
}

/// Under the lock.
SaveOutcome CameraListFile::put(const std::optional<QByteArray>& now, const QByteArray& line)
{
    const QByteArray bytes = line.isEmpty() ? QByteArray() : contentFor(line);
    if (bytes.size() > MaxBytes)
        return failed(QT_TRANSLATE_NOOP("CameraListFile", "The list is longer than 64 MiB"));
    if (camerasIn(bytes) > MaxCameras)
        return failed(QT_TRANSLATE_NOOP("CameraListFile", "The list has over 1,500,000 cameras"));
    const SaveOutcome outcome = line.isEmpty() ? remove(now) : replace(now, bytes);
    if (!outcome)
        return outcome;
    m_seen = line.isEmpty() ? QByteArray() : digestOf(bytes);
    m_base = line;
    m_readable = true;
    // The first that is kept is what was there at the start, unless something was written before.
    m_isStartInBackup = m_isStartInBackup || (!m_isChanged && m_backups.made() == 1);
    m_isChanged = true;
    return outcome;
}

SaveOutcome CameraListFile::remove(const std::optional<QByteArray>& now)
{
    if (!now || !m_readable) {
        if (isMissing(m_path))
            return {};
        return failed(QT_TRANSLATE_NOOP("CameraListFile", "What is there could not be read"));
    }
    if (isAnothers(*now))
        return m_backups.keepItself();
    QFile file(m_path);
    return file.remove() ? SaveOutcome() : SaveOutcome{false, file.errorString()};
}

SaveOutcome CameraListFile::replace(const std::optional<QByteArray>& now, const QByteArray& bytes)
{
    if (!now && !isMissing(m_path))
        return m_backups.keepUnread(bytes);
    if (now && *now == bytes)
        return {};
    SaveOutcome outcome;
    if (now && isAnothers(*now))
        outcome = m_backups.keepCopy(*now);
    if (outcome)
        outcome.isDone = replaceFile(m_path, bytes, &outcome.reason);
    return outcome;
}

bool CameraListFile::isAnothers(const QByteArray& now) const
{
    return digestOf(now) != m_seen;
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
