#include "platform/OwnFile.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

bool isOwnFile(const QString& path)
{
    struct stat info = {};
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0 && S_ISREG(info.st_mode) &&
           info.st_uid == ::geteuid() && info.st_nlink == 1;
}
