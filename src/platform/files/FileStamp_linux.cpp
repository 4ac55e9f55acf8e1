#include "platform/files/FileStamp.h"

#include <QFile>

#include <cerrno>
#include <sys/stat.h>

namespace {

qint64 nanoseconds(const timespec& time)
{
    return static_cast<qint64>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

} // namespace

FileStamp fileStamp(const QString& path)
{
    FileStamp stamp;
    struct stat info = {};
    if (::stat(QFile::encodeName(path).constData(), &info) != 0) {
        if (errno != ENOENT && errno != ENOTDIR)
            stamp.kind = FileStamp::Kind::Other;
        return stamp;
    }
    stamp.kind = S_ISREG(info.st_mode) ? FileStamp::Kind::File : FileStamp::Kind::Other;
    stamp.size = info.st_size;
    stamp.modifiedNs = nanoseconds(info.st_mtim);
    stamp.changedNs = nanoseconds(info.st_ctim);
    stamp.device = info.st_dev;
    stamp.inode = info.st_ino;
    return stamp;
}
