#pragma once

#include <QString>

/// The folder in which the picture for the desktop background is kept, because the desktop goes
/// on reading it: the user's picture folder on Linux (made where it is missing), the Windows
/// directory on Windows. It need not be writable. Empty where the system names none.
QString wallpaperFolder();

/// Makes the bitmap file at `path` the desktop background. Any failure is silent.
///
/// On Linux it does not wait for the desktop: the portal is asked first, and where that does not
/// answer, the settings of the running desktop are changed (see WallpaperSetter); both go on in
/// the event loop. On Windows the choice is also written to the user's profile. The file must
/// stay.
void setWallpaper(const QString& path);
