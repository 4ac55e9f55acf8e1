#pragma once

#include <QByteArray>
#include <QString>

/// Who may read a file that was not there before.
enum class NewFile {
    /// The user alone (0600): a file of the program's own.
    Private,
    /// Whoever the umask lets: a document that the user saves somewhere.
    Document,
};

/// Puts `bytes` in the place of the file `path`, as a whole: they are written to a file beside
/// it, counted, flushed and synced, and that file takes the name. A crash, a full disk or a
/// missing right at any point leaves the old file as it was, byte for byte. Returns whether the
/// new bytes are in place. Where they are not, `reason`, if given, says why, in a few words for a
/// person and without a full stop: "No space left on device", "Permission denied".
///
/// A missing file is created, a missing folder is not. The rights of an old file are kept; a
/// symbolic link stays and its target is replaced, unless the link or its folder belongs to
/// someone other than the user and root: such a one is refused. What is no ordinary file (a folder,
/// a pipe, a device) or must not be written is refused, as is a folder in which no file can be
/// created.
bool replaceFile(const QString& path, const QByteArray& bytes, QString* reason = nullptr,
                 NewFile newFile = NewFile::Private);

/// Removes what replaceFile() left beside `path` where it was killed: files of its name, a full
/// stop and six letters, small and capital ones mixed (one such name in twenty is not removed,
/// because it reads as a word, like the "list.dat.backup" of a person). Only ordinary files of
/// this user, and only beside `path` itself, not beside the target of a link. For whoever holds the
/// lock on the folder (FolderLock): else it could be the file of one who writes just now.
void removeLeftovers(const QString& path);
