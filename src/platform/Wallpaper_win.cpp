#include "platform/Wallpaper.h"

#include <QDir>

#include <iterator>
#include <string>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

QString wallpaperFolder()
{
    wchar_t buffer[256] = {};
    const UINT length = GetWindowsDirectoryW(buffer, static_cast<UINT>(std::size(buffer)));
    // 0 is a failure; a folder that does not fit gives the size that it would need.
    if (length == 0 || length >= std::size(buffer))
        return {};
    QString folder = QString::fromWCharArray(buffer, static_cast<int>(length));
    folder.remove(QChar(u'\0'));
    return folder;
}

void setWallpaper(const QString& path)
{
    // The parameter is not const, though this action only reads it.
    std::wstring file = QDir::toNativeSeparators(path).toStdWString();
    SystemParametersInfoW(SPI_SETDESKWALLPAPER, 0, file.data(), SPIF_UPDATEINIFILE);
}
