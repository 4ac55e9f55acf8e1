#pragma once

#include "picture/Still.h"

#include <QByteArray>
#include <QString>

/// `image` as a JPEG file (JFIF) of 24 bits a pixel and quality 75. Empty for a null image, or
/// where the encoder fails.
QByteArray encodeJpeg(QImage image);

/// Writes `picture`, at its own size, as the file `FileName`: a JPEG of 24 bits and quality 75,
/// always encoded anew, where `TypeWord` is "jpg", a GIF where it is any other word. Transparent
/// parts are put over white. False, and an old file stays as it was, where the picture is null or
/// cannot be encoded (see encodeJpeg, encodeGif) or the file cannot be written. `reason`, if given,
/// then says why (see replaceFile).
bool SaveImage(const QString& FileName, const Still& picture, const QString& TypeWord,
               QString* reason = nullptr);

/// Writes `picture` as the file `fileName` in the format that its last three characters tell, in
/// any letter case: "gif" a GIF, "jpg" a JPEG, both through SaveImage; anything else a Windows
/// bitmap of 24 bits under that very name. False, and an old file stays, as above.
bool savePicture(const QString& fileName, const Still& picture, QString* reason = nullptr);
