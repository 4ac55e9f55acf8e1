#pragma once

#include "shared/SaveOutcome.h"

#include <QByteArray>
#include <QString>

/// What is kept beside a list before it is replaced or removed: PATH.bak. One that is there already
/// becomes PATH.bak.1, and so on to PATH.bak.5; only the oldest of six leaves. For whoever holds
/// the lock of the folder.
class ListBackups
{
public:
    /// `path` is the list's.
    explicit ListBackups(const QString& path);

    /// Where the newest is.
    QString path() const { return m_backupPath; }
    /// How many were made by this object.
    int made() const { return m_made; }

    /// Keeps `content`, which the list's file holds, as a copy with its rights: there is a list at
    /// every moment, and a link to it stays one.
    SaveOutcome keepCopy(const QByteArray& content);

    /// Gives the list's file the backup's name.
    SaveOutcome keepItself();

    /// The same for what cannot be read and so cannot be copied: a new file of `bytes` takes its
    /// place.
    SaveOutcome keepUnread(const QByteArray& bytes);

    /// The newest becomes the list again, which is gone for that.
    SaveOutcome putBack();

private:
    bool makeRoom() const;
    bool moveHere(const QString& path);

    QString m_path;
    QString m_backupPath;
    /// What becomes the backup while it is made.
    QString m_freshPath;
    int m_made = 0;
};
