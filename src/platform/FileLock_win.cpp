#include "platform/FileLock.h"

#include <QDir>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

FileLock::~FileLock()
{
    release();
}

FileLock::Result FileLock::take(const QString& path)
{
    if (m_file >= 0)
        return Result::Taken;
    const QString native = QDir::toNativeSeparators(path);
    // Shared with nobody: the second to open it is refused.
    const HANDLE file =
        CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), GENERIC_READ | GENERIC_WRITE,
                    0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_SHARING_VIOLATION ? Result::HeldByAnother
                                                         : Result::Impossible;
    m_file = reinterpret_cast<qintptr>(file);
    return Result::Taken;
}

void FileLock::release()
{
    if (m_file >= 0)
        CloseHandle(reinterpret_cast<HANDLE>(m_file));
    m_file = -1;
}
