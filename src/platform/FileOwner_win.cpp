#include "platform/FileOwner.h"

#include <QFile>
#include <QFileInfo>

bool isClosedToOthers(const QString& folder)
{
    return QFileInfo(folder).isDir();
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
