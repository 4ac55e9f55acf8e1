#include "shared/FolderLock.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QHash>
#include <QThread>

namespace {

/// How often this process holds the lock of each folder.
QHash<QString, int>& heldHere()
{
    static QHash<QString, int> folders;
    return folders;
}

} // namespace

FolderLock::FolderLock(const QString& folder, int waitMs)
    : m_folder(QDir(folder).canonicalPath())
{
    if (m_folder.isEmpty())
        return;
    m_isHeld = heldHere().contains(m_folder);
    // Nobody can be asked to say when it is done.
    constexpr int betweenTriesMs = 5;
    const QDeadlineTimer end(waitMs);
    while (!m_isHeld) {
        const FileLock::Result result = m_lock.takeFolder(m_folder);
        m_isHeld = result == FileLock::Result::Taken;
        if (m_isHeld || result == FileLock::Result::Impossible || end.hasExpired())
            break;
        QThread::msleep(betweenTriesMs);
    }
    if (m_isHeld)
        ++heldHere()[m_folder];
}

FolderLock::~FolderLock()
{
    if (m_isHeld && --heldHere()[m_folder] == 0)
        heldHere().remove(m_folder);
}
