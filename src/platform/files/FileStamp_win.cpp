#include "platform/files/FileStamp.h"

#include <QDir>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace {

// The system counts steps of 100 ns from the year 1601.
constexpr qint64 StepsTo1970 = 116'444'736'000'000'000;

qint64 nanoseconds(LARGE_INTEGER time)
{
    return (time.QuadPart - StepsTo1970) * 100;
}

FileStamp::Kind kindOfFailure(DWORD error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
        return FileStamp::Kind::Missing;
    default:
        return FileStamp::Kind::Other;
    }
}

} // namespace

FileStamp fileStamp(const QString& path)
{
    FileStamp stamp;
    const QString native = QDir::toNativeSeparators(path);
    // Asking for attributes alone is granted beside every other user of the file.
    const HANDLE handle =
        CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), FILE_READ_ATTRIBUTES,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        stamp.kind = kindOfFailure(GetLastError());
        return stamp;
    }

    stamp.kind = FileStamp::Kind::Other;
    BY_HANDLE_FILE_INFORMATION info = {};
    FILE_BASIC_INFO times = {};
    if (GetFileType(handle) == FILE_TYPE_DISK && GetFileInformationByHandle(handle, &info) &&
        GetFileInformationByHandleEx(handle, FileBasicInfo, &times, sizeof times)) {
        if (!(info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            stamp.kind = FileStamp::Kind::File;
        stamp.size = (static_cast<qint64>(info.nFileSizeHigh) << 32) | info.nFileSizeLow;
        stamp.modifiedNs = nanoseconds(times.LastWriteTime);
        // File systems without a time of change (FAT) say nothing there.
        stamp.changedNs =
            times.ChangeTime.QuadPart ? nanoseconds(times.ChangeTime) : stamp.modifiedNs;
        stamp.device = info.dwVolumeSerialNumber;
        stamp.inode = (static_cast<quint64>(info.nFileIndexHigh) << 32) | info.nFileIndexLow;
    }
    CloseHandle(handle);
    return stamp;
}
