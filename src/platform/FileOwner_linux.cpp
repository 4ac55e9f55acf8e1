#include "platform/FileOwner.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool isOfUserOrRoot(const struct stat& info)
{
    return info.st_uid == ::geteuid() || info.st_uid == 0;
}

} // namespace

bool isClosedToOthers(const QString& folder)
{
    struct stat info = {};
    // An access list shows in the group's bits, too.
    return ::stat(QFile::encodeName(folder).constData(), &info) == 0 && S_ISDIR(info.st_mode) &&
           isOfUserOrRoot(info) && (info.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

bool isOwnLink(const QString& path)
{
    struct stat info = {};
    if (::lstat(QFile::encodeName(path).constData(), &info) != 0 || !S_ISLNK(info.st_mode))
        return true;
    struct stat folder = {};
    return isOfUserOrRoot(info) &&
           ::stat(QFile::encodeName(QFileInfo(path).path()).constData(), &folder) == 0 &&
           isOfUserOrRoot(folder);
}

bool openNoLink(QFile& file, const QString& path)
{
    // O_NONBLOCK: a pipe is found out without waiting for its reader.
    const int descriptor =
        ::open(QFile::encodeName(path).constData(),
               O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return false;
    struct stat info = {};
    if (::fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode) && info.st_nlink == 1 &&
        file.open(descriptor, QIODevice::ReadWrite | QIODevice::Unbuffered,
                  QFileDevice::AutoCloseHandle))
        return true;
    ::close(descriptor);
    return false;
}

PrivateCreation::PrivateCreation()
    : m_before(::umask(S_IRWXG | S_IRWXO))
{
}

PrivateCreation::~PrivateCreation()
{
    ::umask(m_before);
}
