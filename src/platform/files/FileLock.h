#pragma once

#include <QString>

/// A lock on a file that one process holds at a time. The system takes it back when the process
/// ends, however it ends; the file itself stays and means nothing. Not for file systems of other
/// machines that know no locks: there it is impossible.
class FileLock
{
public:
    enum class Result {
        Taken,         ///< this object has it
        HeldByAnother, ///< another object has it, most likely of another process
        Impossible     ///< the file cannot be made, opened or locked
    };

    FileLock() = default;
    ~FileLock();
    Q_DISABLE_COPY_MOVE(FileLock)

    /// Takes the lock on `path`, whose folder must be there, without waiting. The file is made
    /// where it is missing; a symbolic link is refused. Taken, too, where this object has it
    /// already.
    Result take(const QString& path);

    /// The same on a folder itself, for those who write files in it. On Linux nothing is made in
    /// it; on Windows a hidden file lies there while the lock is held.
    Result takeFolder(const QString& folder);

    /// Gives it back; does nothing where it is not held.
    void release();

private:
    /// A descriptor or handle; -1 while nothing is held.
    qintptr m_file = -1;
};
