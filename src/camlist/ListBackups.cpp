#include "camlist/ListBackups.h"

#include "platform/files/ExchangeNames.h"
#include "platform/files/FileStamp.h"
#include "shared/ReplaceFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Whether nothing has that name, not even a link to nothing.
bool isFree(const QString& path)
{
    return fileStamp(path).kind == FileStamp::Kind::Missing && !QFileInfo(path).isSymLink();
}

SaveOutcome noBackup()
{
    return {false,
            QCoreApplication::translate("ListBackups", "The old list cannot be kept beside it")};
}

} // namespace

ListBackups::ListBackups(const QString& path)
    : m_path(path)
    , m_backupPath(path + ".bak"_L1)
    , m_freshPath(path + ".new"_L1)
{
}

SaveOutcome ListBackups::keepCopy(const QByteArray& content)
{
    QFile::remove(m_freshPath);
    // A key may hold a password: nobody may read the copy who may not read the list, at any time.
    const auto rights = QFile::permissions(m_path) | QFile::ReadOwner | QFile::WriteOwner;
    SaveOutcome outcome;
    outcome.isDone = replaceFile(m_freshPath, {}, &outcome.reason) &&
                     QFile::setPermissions(m_freshPath, rights) &&
                     replaceFile(m_freshPath, content, &outcome.reason) && moveHere(m_freshPath);
    if (outcome)
        return outcome;
    QFile::remove(m_freshPath);
    return outcome.reason.isEmpty() ? noBackup() : outcome;
}

SaveOutcome ListBackups::keepItself()
{
    return moveHere(m_path) ? SaveOutcome() : noBackup();
}

/// The new list takes its place, and gives it its own.
SaveOutcome ListBackups::keepUnread(const QByteArray& bytes)
{
    QFile::remove(m_freshPath);
    SaveOutcome outcome;
    outcome.isDone = replaceFile(m_freshPath, bytes, &outcome.reason);
    if (!outcome)
        return outcome;
    if (!moveHere(m_freshPath)) {
        QFile::remove(m_freshPath);
        return noBackup();
    }
    if (exchangeNames(m_path, m_backupPath))
        return {};
    // One after the other then, and back where that is refused.
    if (!QFile::rename(m_backupPath, m_freshPath))
        return noBackup();
    if (QFile::rename(m_path, m_backupPath)) {
        if (QFile::rename(m_freshPath, m_path))
            return {};
        QFile::rename(m_backupPath, m_path);
    }
    QFile::remove(m_freshPath);
    return noBackup();
}

SaveOutcome ListBackups::putBack()
{
    if (!isFree(m_backupPath) && (isFree(m_path) || QFile::remove(m_path)) &&
        QFile::rename(m_backupPath, m_path))
        return {};
    return {false, QCoreApplication::translate("ListBackups", "The old file cannot be put back")};
}

/// Makes the name of the newest free: each older one takes the next name, up to the first that is
/// free.
bool ListBackups::makeRoom() const
{
    constexpr int last = 5;
    const auto name = [this](int i) {
        return i == 0 ? m_backupPath : m_backupPath + u'.' + QString::number(i);
    };
    int free = 0;
    while (free < last && !isFree(name(free)))
        ++free;
    if (!isFree(name(free)) && !QFile::remove(name(free)))
        return false;
    for (; free > 0; --free) {
        if (!QFile::rename(name(free - 1), name(free)))
            return false;
    }
    return true;
}

bool ListBackups::moveHere(const QString& path)
{
    if (!makeRoom() || !QFile::rename(path, m_backupPath))
        return false;
    ++m_made;
    return true;
}
