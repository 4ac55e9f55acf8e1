#pragma once

#include "cameras/CameraListLine.h"
#include "camlist/ListBackups.h"
#include "shared/SaveOutcome.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// The user's list of cameras on disk: list.dat in the application folder. Knows what was there
/// when it was last read or written, the base, so that what another instance of the program wrote
/// since, and what could not be read, is never lost. Every change is made under the lock of the
/// folder (shared/FolderLock.h), after a look at what is there by then. Whenever the program is
/// killed, list.dat is the old list or the new one.
///
/// What is kept beside goes to list.dat.bak (camlist/ListBackups.h).
class CameraListFile
{
public:
    /// What keeps list.dat from being read or written.
    enum class Trouble {
        None,
        NoFile,     ///< a folder, a pipe, a device
        TooLong,    ///< longer than MaxBytes
        TooMany,    ///< more cameras than MaxCameras
        Unreadable, ///< no right to read it, or a broken disk
        NoList,     ///< distrust() was called
        Unwritable  ///< read, but neither it nor its folder may be changed
    };

    /// What became of saveMerged().
    struct Saved : SaveOutcome
    {
        /// What is in list.dat now, where that is not the line that was to be saved: it was merged
        /// with what another instance wrote.
        std::optional<QByteArray> merged = {};
        /// Where something was kept beside that is not in list.dat: the path of it.
        QString keptAs = {};
    };

    /// `folder` is the application folder.
    explicit CameraListFile(const QString& folder);

    QString path() const { return m_path; }

    /// The camera list line in list.dat, without a byte order mark and its one line end. Empty
    /// where there is no such file. Nothing where the file is there and cannot be read, is no
    /// ordinary file, is longer than MaxBytes or has more than MaxCameras: that is not an empty
    /// list.
    std::optional<QByteArray> read();

    /// What read() would give now; what is known of the file stays as it was.
    std::optional<QByteArray> peek() const;

    /// What was read is no list, whatever it is: it is kept as a file that could not be read.
    void distrust();

    /// The file that was read is missing or empty, and the cameras of `line` stand for it: they
    /// are the base.
    void standsFor(const QByteArray& line);

    /// Of the file as it was read last.
    Trouble trouble() const { return m_trouble; }

    /// The line that list.dat held, or stood for, when it was last read or written.
    const QByteArray& base() const { return m_base; }

    /// Whether there was no list.dat when it was last read or written, and there is none now.
    bool isNew() const;

    /// Makes `line` the list. Where another instance changed list.dat since it was read or written
    /// here, the two lists are merged (camlist/MergedLists.h), and theirs is kept beside where
    /// something of it is lost by that. A list.dat that is gone or empty by now is no list of
    /// removals: `line` is written whole. What is there and is no list is kept beside, too.
    Saved saveMerged(const QByteArray& line);

    /// Takes back what was written since the first read(): list.dat is again what it was then, byte
    /// for byte, also where it was missing or could not be read. What another instance changed
    /// meanwhile stays. Nothing where nothing was written.
    SaveOutcome restore();

    /// Puts `line`, ended by CR LF, in the place of list.dat as a whole; an empty line removes the
    /// file, but leaves one that could not be read, then or now. What another instance wrote is
    /// kept beside. Where it was not done, the old file is there. Not done is also what could not
    /// be read back: a line with which the file would be longer than MaxBytes.
    SaveOutcome write(const QByteArray& line);

    static constexpr qint64 MaxBytes = 64LL * 1024 * 1024;
    /// So many load in some two seconds, and in half a gigabyte. In 64 MiB there would be room for
    /// six million.
    static constexpr qsizetype MaxCameras = 1'500'000;

private:
    /// What list.dat was before anything was written here.
    struct Start
    {
        enum class Kind { Missing, File, Unreadable };
        Kind kind = Kind::Missing;
        /// The line that it held or stood for, and what stood around it.
        QByteArray line = {};
        QByteArray before = {};
        QByteArray after = {};
    };

    std::optional<QByteArray> content() const;
    void rebaseStart(const QByteArray& theirs);
    Trouble troubleOf(const std::optional<QByteArray>& content) const;
    Saved merge(const QByteArray& now, const QByteArray& line);
    SaveOutcome put(const std::optional<QByteArray>& now, const QByteArray& line);
    SaveOutcome remove(const std::optional<QByteArray>& now);
    SaveOutcome replace(const std::optional<QByteArray>& now, const QByteArray& bytes);
    bool isAnothers(const QByteArray& now) const;

    QString m_folder;
    QString m_path;
    ListBackups m_backups;
    /// The digest of the file when it was last read or written; empty where there was none.
    QByteArray m_seen;
    QByteArray m_base;
    bool m_readable = true;
    Trouble m_trouble = Trouble::None;
    Start m_start;
    /// Something was written since the start.
    bool m_isChanged = false;
    /// list.dat.bak is what list.dat was at the start.
    bool m_isStartInBackup = false;
};

/// Whether the bytes of a list.dat are one that the program may have written: no control character
/// but 1 and those of white space (tab and line ends, which old lists hold in names), no field of
/// more than LongestField bytes, and whole cameras or nothing. The texts of the tree are bounded
/// so that every list of them is trusted.
bool isTrustedLine(QByteArrayView line);

inline constexpr qsizetype LongestField = 64LL * 1024;

/// The camera list line in an imported list, without its one line end: what follows the four
/// characters "CAMZ" at the start of the file `path`; or all of it, as in list.dat and its backup,
/// where it is a run of whole triples without a control character but the one in keys. Nothing
/// where it is neither, cannot be read, or is longer than CameraListFile::MaxBytes.
std::optional<QByteArray> readImportedList(const QString& path);

/// Writes `cameras` as a file that readImportedList() reads. Returns why that was not done, as
/// replaceFile() says it; empty where it was.
QString writeExportedList(const QString& path, const QList<CameraRecord>& cameras);
