#pragma once

#include "cameras/CameraListLine.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// The user's list of cameras on disk: list.dat in the application folder. Knows what was there
/// when it was last read or written, so that what another instance of the program wrote since, and
/// what could not be read, is never lost: before such a file is replaced or removed it is kept
/// beside, as list.dat.bak, in the place of an older one. Whenever the program is killed, list.dat
/// is the old list or the new one.
class CameraListFile
{
public:
    /// `folder` is the application folder.
    explicit CameraListFile(const QString& folder);

    /// The camera list line in list.dat, without a byte order mark and its one line end. Empty
    /// where there is no such file. Nothing where the file is there and cannot be read, is no
    /// ordinary file or is longer than MaxBytes: that is not an empty list.
    std::optional<QByteArray> read();

    /// What read() would give now; what is known of the file stays as it was.
    std::optional<QByteArray> peek() const;

    /// What was read is no list, whatever it is: it is kept as a file that could not be read.
    void distrust();

    /// Puts `line`, ended by CR LF, in the place of list.dat as a whole; an empty line removes the
    /// file, but leaves one that could not be read, then or now. Returns whether that was done;
    /// where it was not, the old file is there. Not done is also what could not be read back: a
    /// line with which the file would be longer than MaxBytes.
    bool write(const QByteArray& line);

    static constexpr qint64 MaxBytes = 64LL * 1024 * 1024;

private:
    bool remove(const std::optional<QByteArray>& now) const;
    bool replace(const std::optional<QByteArray>& now, const QByteArray& bytes) const;
    bool isAnothers(const QByteArray& now) const;
    bool keepCopy(const QByteArray& now) const;
    bool replaceUnread(const QByteArray& bytes) const;
    bool moveToBackup(const QString& path) const;

    QString m_path;
    QString m_backupPath;
    /// What becomes the backup while it is made.
    QString m_freshPath;
    /// The digest of the file when it was last read or written; empty where there was none.
    QByteArray m_seen;
    bool m_readable = true;
};

/// The camera list line in an imported list, without its one line end: what follows the four
/// characters "CAMZ" at the start of the file `path`; or all of it, as in list.dat and its backup,
/// where it is a run of whole triples without a control character but the one in keys. Nothing
/// where it is neither, cannot be read, or is longer than CameraListFile::MaxBytes.
std::optional<QByteArray> readImportedList(const QString& path);

/// Writes `cameras` as a file that readImportedList() reads. Returns why that was not done, as
/// replaceFile() says it; empty where it was.
QString writeExportedList(const QString& path, const QList<CameraRecord>& cameras);
