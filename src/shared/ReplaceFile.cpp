#include "shared/ReplaceFile.h"

#include "platform/SyncFile.h"

#include <QFileInfo>
#include <QSaveFile>

bool replaceFile(const QString& path, const QByteArray& bytes)
{
    const QFileInfo old(path);
    if (old.exists() && !old.isFile())
        return false;

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // QSaveFile (Qt 6.4) takes a full disk for a success where the failure comes only when its
    // buffer is flushed, and then puts an empty or cut file in the place of the old one.
    const bool whole = file.write(bytes) == bytes.size() && file.flush() &&
                       file.error() == QFileDevice::NoError && syncFile(file) &&
                       file.size() == bytes.size();
    if (!whole)
        file.cancelWriting();
    return file.commit() && whole;
}
