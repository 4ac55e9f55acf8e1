#include "platform/OwnFile.h"

#include <QFileInfo>

/// What lies in the user's own folder is the user's here: Windows gives a file to a group as often.
bool isOwnFile(const QString& path)
{
    const QFileInfo info(path);
    return info.isFile() && !info.isSymLink() && !info.isJunction();
}
