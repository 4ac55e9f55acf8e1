#pragma once

#include "platform/files/FileLock.h"

/// The lock that tells which instance is the server, of those that are one user's and share one
/// application folder: the one that holds it listens under serverName(). Ends with the process,
/// however that ends.
class InstanceLock
{
public:
    explicit InstanceLock(const QString& applicationFolder);

    /// Takes the lock, without waiting, where no other instance holds it. Impossible where the
    /// user has no private folder that can be trusted: then no instance is a server.
    FileLock::Result take();

    /// Releases the lock for whoever takes it next.
    void release() { m_lock.release(); }

    /// For QLocalServer and QLocalSocket; empty where there can be no server.
    QString serverName() const;

private:
    /// The names of the lock's file and of the socket begin so; empty without a private folder.
    QString m_path;
    FileLock m_lock;
};
