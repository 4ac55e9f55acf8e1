#include "platform/files/FileOwner.h"

#include <QFile>
#include <QFileInfo>

#include <string>

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

bool isOfUserOrRoot(const struct stat& info)
{
    return info.st_uid == ::geteuid() || info.st_uid == 0;
}

/// Whether nobody but the user is in `group`: the group that systems make for each user, and whose
/// right to write their umask gives to every new folder.
bool isPrivateGroup(gid_t group)
{
    const passwd* user = ::getpwuid(::geteuid());
    if (!user || user->pw_gid != group)
        return false;
    const std::string name = user->pw_name;
    const struct group* members = ::getgrgid(group);
    return members && members->gr_name == name &&
           (!*members->gr_mem || (*members->gr_mem == name && !members->gr_mem[1]));
}

} // namespace

bool isClosedToOthers(const QString& folder)
{
    const QByteArray path = QFile::encodeName(folder);
    struct stat info = {};
    if (::stat(path.constData(), &info) != 0 || !S_ISDIR(info.st_mode) || !isOfUserOrRoot(info) ||
        (info.st_mode & S_IWOTH))
        return false;
    if (!(info.st_mode & S_IWGRP))
        return true;
    // An access list shows in the group's bits, too, and may name anybody.
    const bool hasList = ::getxattr(path.constData(), "system.posix_acl_access", nullptr, 0) > 0;
    return !hasList && isPrivateGroup(info.st_gid);
}

bool isOwnFile(const QString& path)
{
    struct stat info = {};
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0 && S_ISREG(info.st_mode) &&
           info.st_uid == ::geteuid() && info.st_nlink == 1;
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
