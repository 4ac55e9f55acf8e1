#pragma once

#include <QString>

class QFile;

/// Whether nobody but the user and root can make, rename or replace a file in `folder`, through
/// symbolic links: it belongs to one of the two, and neither others nor its group may write there,
/// be it with the sticky bit, as in the temporary folder. A group in which nobody but the user is
/// counts as the user. False where it is no folder.
///
/// On Windows true for any folder: whoever may write into a folder is the business of its access
/// list, and making a symbolic link takes an administrator.
bool isClosedToOthers(const QString& folder);

/// Whether `path` is an ordinary file of the user who runs the program: no link, no folder, and
/// under no other name beside. False, too, where that cannot be told.
bool isOwnFile(const QString& path);

/// Whether the symbolic link at `path` and the folder that it lies in belong to the user or to
/// root, so that nobody else has laid it. True for what is no link.
bool isOwnLink(const QString& path);

/// Opens `file` at `path` for writing over what is there, from its beginning; a missing file is
/// made, for the user alone (0600). False, and nothing is opened, changed or waited for, where
/// `path` is a symbolic link, a file with a second name (a hard link) or no ordinary file.
bool openNoLink(QFile& file, const QString& path);

/// While it lives, new files are made for the user alone (0600), whatever the umask lets through.
/// On Windows the folder's access list decides.
class PrivateCreation
{
public:
    PrivateCreation();
    ~PrivateCreation();
    Q_DISABLE_COPY_MOVE(PrivateCreation)

private:
    unsigned m_before = 0;
};
