#include "platform/files/SyncFile.h"

#include <QFileDevice>

#include <cerrno>
#include <unistd.h>

bool syncFile(const QFileDevice& file)
{
    const int handle = file.handle();
    if (handle < 0)
        return false;
    int result = 0;
    do {
        result = ::fsync(handle);
    } while (result != 0 && errno == EINTR);
    return result == 0 || errno == EINVAL || errno == ENOTSUP;
}
