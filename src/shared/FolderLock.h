#pragma once

#include "platform/files/FileLock.h"

#include <QString>

/// Held while a file that several instances of the program share is read anew, compared and
/// replaced: of those who hold it on one folder, one writes at a time. It ends with this object,
/// or with its process, however that ends.
///
/// A process that hangs while it holds it does not keep the others from saving: it is waited for
/// so long and no longer. Where it cannot be had (see FileLock), whoever wanted it goes on without.
///
/// For one thread. One that is taken while this process holds the same folder's is held with it.
class FolderLock
{
public:
    /// Replacing a list of 64 MiB on a slow disk takes less.
    static constexpr int LongestWaitMs = 5'000;

    /// Takes the lock on `folder`; waits for another process at most `waitMs`.
    explicit FolderLock(const QString& folder, int waitMs = LongestWaitMs);
    ~FolderLock();
    Q_DISABLE_COPY_MOVE(FolderLock)

    /// Whether it was taken: no other instance that asks for it writes now.
    bool isHeld() const { return m_isHeld; }

private:
    QString m_folder;
    FileLock m_lock;
    bool m_isHeld = false;
};
