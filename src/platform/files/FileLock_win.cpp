#include "platform/files/FileLock.h"

#include <QDir>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace {

/// Shared with nobody: the second to open it is refused.
HANDLE openAlone(const QString& path, DWORD attributes)
{
    const QString native = QDir::toNativeSeparators(path);
    return CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()),
                       GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, attributes, nullptr);
}

FileLock::Result resultOf(HANDLE file)
{
    if (file != INVALID_HANDLE_VALUE)
        return FileLock::Result::Taken;
    // One that goes when it is closed cannot be opened in that moment.
    const DWORD error = GetLastError();
    return error == ERROR_SHARING_VIOLATION || error == ERROR_DELETE_PENDING
               ? FileLock::Result::HeldByAnother
               : FileLock::Result::Impossible;
}

} // namespace

FileLock::~FileLock()
{
    release();
}

FileLock::Result FileLock::take(const QString& path)
{
    if (m_file >= 0)
        return Result::Taken;
    const HANDLE file = openAlone(path, FILE_ATTRIBUTE_NORMAL);
    const Result result = resultOf(file);
    if (result == Result::Taken)
        m_file = reinterpret_cast<qintptr>(file);
    return result;
}

FileLock::Result FileLock::takeFolder(const QString& folder)
{
    if (m_file >= 0)
        return Result::Taken;
    const HANDLE file = openAlone(folder + QLatin1String("/pevora.lock"),
                                  FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE);
    const Result result = resultOf(file);
    if (result == Result::Taken)
        m_file = reinterpret_cast<qintptr>(file);
    return result;
}

void FileLock::release()
{
    if (m_file >= 0)
        CloseHandle(reinterpret_cast<HANDLE>(m_file));
    m_file = -1;
}
