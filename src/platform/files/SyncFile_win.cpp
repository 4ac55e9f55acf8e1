#include "platform/files/SyncFile.h"

#include <QFileDevice>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <io.h>

bool syncFile(const QFileDevice& file)
{
    const int descriptor = file.handle();
    if (descriptor < 0)
        return false;
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
    if (handle == INVALID_HANDLE_VALUE)
        return false;
    return FlushFileBuffers(handle) || GetLastError() == ERROR_INVALID_FUNCTION ||
           GetLastError() == ERROR_NOT_SUPPORTED;
}
