#pragma once

#include <QString>

/// What the system says of a file without opening it. Two equal stamps of one path mean the same
/// content, unless it was changed again within the step of the file system's clock: so only a
/// stamp whose `changedNs` was some while ago when it was taken can be relied upon.
struct FileStamp
{
    enum class Kind {
        Missing, ///< nothing of that name, or no folder of that name for it
        File,    ///< an ordinary file
        Other    ///< a folder, pipe or device, or out of reach
    };

    Kind kind = Kind::Missing;
    qint64 size = 0;       ///< in bytes
    qint64 modifiedNs = 0; ///< last change of the content, in nanoseconds since 1970 (UTC)
    qint64 changedNs = 0;  ///< last change of content, rights or names, likewise
    quint64 device = 0;
    quint64 inode = 0; ///< the number of the file itself, which a replaced file has not

    bool operator==(const FileStamp&) const = default;
};

/// The stamp of `path`, through symbolic links. Never waits and opens nothing that could.
FileStamp fileStamp(const QString& path);
