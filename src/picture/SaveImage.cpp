#include "picture/SaveImage.h"

#include "picture/BitmapFile.h"
#include "picture/FlattenedOnWhite.h"
#include "picture/GifWriter.h"
#include "shared/ReplaceFile.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImageWriter>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int JpegQuality = 75;

bool writeFile(const QString& fileName, const QByteArray& bytes, QString* reason)
{
    if (!bytes.isEmpty())
        return replaceFile(fileName, bytes, reason, NewFile::Document);
    if (reason)
        *reason =
            QCoreApplication::translate("SaveImage", "The picture does not fit into such a file");
    return false;
}

} // namespace

QByteArray encodeJpeg(QImage image)
{
    const QImage opaque = flattenedOnWhite(std::move(image));
    if (opaque.isNull())
        return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(JpegQuality);
    return writer.write(opaque) ? bytes : QByteArray();
}

bool SaveImage(const QString& FileName, const Still& picture, const QString& TypeWord,
               QString* reason)
{
    const bool isJpeg = TypeWord == "jpg"_L1;
    return writeFile(FileName, isJpeg ? encodeJpeg(picture.image()) : encodeGif(picture.image()),
                     reason);
}

bool savePicture(const QString& fileName, const Still& picture, QString* reason)
{
    // Kept: "xjpg" is a JPEG and "x.jpeg" a bitmap. The last characters count, not the suffix.
    const QString last = fileName.right(3).toLower();
    if (last == "gif"_L1 || last == "jpg"_L1)
        return SaveImage(fileName, picture, last, reason);
    return writeFile(fileName, BitmapFile(picture.image()).bytes(), reason);
}
