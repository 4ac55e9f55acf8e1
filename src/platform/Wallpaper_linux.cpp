#include "platform/Wallpaper.h"

#include "platform/WallpaperSetter_linux.h"

#include <QDir>
#include <QStandardPaths>

QString wallpaperFolder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    // A folder that cannot be made shows when the picture is saved into it.
    if (!folder.isEmpty())
        QDir().mkpath(folder);
    return folder;
}

void setWallpaper(const QString& path)
{
    // Connecting is the one thing that is done at once. The connection is shared by the whole
    // process: where Qt's own menus or tray icon use the bus it is there already.
    WallpaperSetter::start(path, QDBusConnection::sessionBus(),
                           qEnvironmentVariable("XDG_CURRENT_DESKTOP"), WallpaperSetter::Limits());
}
