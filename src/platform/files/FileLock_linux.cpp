#include "platform/files/FileLock.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

/// Closes a file that it cannot lock, and makes it -1. The lock is the open file's, not the
/// process's: gone when the last descriptor is, even after SIGKILL.
FileLock::Result lockOrClose(int& file)
{
    if (file < 0)
        return FileLock::Result::Impossible;
    if (::flock(file, LOCK_EX | LOCK_NB) == 0)
        return FileLock::Result::Taken;
    const auto result =
        errno == EWOULDBLOCK ? FileLock::Result::HeldByAnother : FileLock::Result::Impossible;
    ::close(file);
    file = -1;
    return result;
}

} // namespace

FileLock::~FileLock()
{
    release();
}

FileLock::Result FileLock::take(const QString& path)
{
    if (m_file >= 0)
        return Result::Taken;
    int file = ::open(QFile::encodeName(path).constData(),
                      O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
    const Result result = lockOrClose(file);
    m_file = file;
    return result;
}

FileLock::Result FileLock::takeFolder(const QString& folder)
{
    if (m_file >= 0)
        return Result::Taken;
    int file = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const Result result = lockOrClose(file);
    m_file = file;
    return result;
}

void FileLock::release()
{
    if (m_file >= 0)
        ::close(static_cast<int>(m_file));
    m_file = -1;
}
