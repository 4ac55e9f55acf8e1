#include "platform/FileLock.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

FileLock::~FileLock()
{
    release();
}

FileLock::Result FileLock::take(const QString& path)
{
    if (m_file >= 0)
        return Result::Taken;
    const int file = ::open(QFile::encodeName(path).constData(),
                            O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
    if (file < 0)
        return Result::Impossible;
    // Of the open file, not of the process: gone when the last descriptor is, even after SIGKILL.
    if (::flock(file, LOCK_EX | LOCK_NB) == 0) {
        m_file = file;
        return Result::Taken;
    }
    const Result result = errno == EWOULDBLOCK ? Result::HeldByAnother : Result::Impossible;
    ::close(file);
    return result;
}

void FileLock::release()
{
    if (m_file >= 0)
        ::close(static_cast<int>(m_file));
    m_file = -1;
}
