#include "platform/files/FileOwner.h"

#include <QFile>
#include <QFileInfo>

bool isClosedToOthers(const QString& folder)
{
    return QFileInfo(folder).isDir();
}

/// What lies in the user's own folder is the user's here: Windows gives a file to a group as often.
bool isOwnFile(const QString& path)
{
    const QFileInfo info(path);
    return info.isFile() && !info.isSymLink() && !info.isJunction();
}

bool isOwnLink(const QString& path)
{
    Q_UNUSED(path)
    return true;
}

bool openNoLink(QFile& file, const QString& path)
{
    const QFileInfo old(path);
    if (old.isSymLink() || (old.exists() && !old.isFile()))
        return false;
    file.setFileName(path);
    // WriteOnly would cut an old file.
    return file.open(QIODevice::ReadWrite | QIODevice::Unbuffered);
}

PrivateCreation::PrivateCreation() = default;

PrivateCreation::~PrivateCreation()
{
    // Nothing was changed.
    m_before = 0;
}
