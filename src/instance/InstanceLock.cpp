#include "instance/InstanceLock.h"

#include "platform/files/PrivateFolder.h"
#include "shared/AppFolder.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QSysInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Short, because the path of a socket may have some hundred bytes only. Of the machine, too: a
/// home folder may be the same on several of them, and no socket reaches another machine.
QString nameOf(const QString& applicationFolder)
{
    constexpr qsizetype length = 16;
    const QString canonical = QFileInfo(applicationFolder).canonicalFilePath();
    const QString named = canonical.isEmpty() ? applicationFolder : canonical;
    const QByteArray hash = QCryptographicHash::hash(
        (QSysInfo::machineHostName() + u'/' + named).toUtf8(), QCryptographicHash::Sha256);
    return QString::fromLatin1(hash.toHex().left(length));
}

} // namespace

InstanceLock::InstanceLock(const QString& applicationFolder)
{
    const QString folder = privateFolder();
    if (!folder.isEmpty())
        m_path = pathInFolder(folder, nameOf(applicationFolder));
}

FileLock::Result InstanceLock::take()
{
    return m_path.isEmpty() ? FileLock::Result::Impossible : m_lock.take(m_path + ".lock"_L1);
}

QString InstanceLock::serverName() const
{
    return m_path.isEmpty() ? QString() : localServerName(m_path);
}
