#include "platform/files/PrivateFolder.h"

#include <QFile>
#include <QStandardPaths>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A folder of the user's in which nobody else can make or replace anything. Not so the folder of
/// another user, whose environment a changed user (sudo) may have kept.
bool isOwn(const QString& folder)
{
    struct stat info = {};
    return ::stat(QFile::encodeName(folder).constData(), &info) == 0 && S_ISDIR(info.st_mode) &&
           info.st_uid == ::geteuid() && (info.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

bool isPrivate(const QString& folder)
{
    struct stat info = {};
    return ::lstat(QFile::encodeName(folder).constData(), &info) == 0 && S_ISDIR(info.st_mode) &&
           info.st_uid == ::geteuid() && (info.st_mode & ALLPERMS) == S_IRWXU;
}

void make(const QString& folder)
{
    ::mkdir(QFile::encodeName(folder).constData(), S_IRWXU);
}

} // namespace

QString privateFolder()
{
    // Asked by name: QStandardPaths would make one in the temporary folder, and complain.
    QString parent = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!parent.startsWith(u'/') || !isOwn(parent)) {
        parent = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
        make(parent);
        if (!isOwn(parent))
            return {};
    }
    const QString folder = parent + "/pevora"_L1;
    make(folder);
    return isPrivate(folder) ? folder : QString();
}

QString localServerName(const QString& path)
{
    return path;
}
