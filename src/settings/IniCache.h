#pragma once

#include "platform/files/FileStamp.h"
#include "settings/IniFile.h"
#include "shared/Timer.h"

#include <QObject>

#include <map>
#include <optional>
#include <vector>

/// The ini files that were used of late, so that many reads or many writes in a row touch the disk
/// once.
///
/// The first change of a file begins a run: the file is read anew, because another instance of
/// the program may have written it, and stays in memory with all changes of the run. The run ends
/// after 200 ms without a change (timer "tmrIniFlush"), with flush(), when the application quits,
/// and with the cache itself; the file is then replaced as a whole, where a byte of it changed,
/// with what another instance wrote since the run began, but for the keys of the run. A read sees
/// the changes of a run at once. Between two runs a read notices when somebody else changed the
/// file.
///
/// A file that cannot be read (a folder, a pipe, no right to, over MaxBytes, see also
/// IniFile::MaxLines) has no keys and is never written. A file that cannot be written stays as it
/// was, and the changes of the run are gone.
class IniCache : public QObject
{
    Q_OBJECT
public:
    /// A longer file is not read.
    static constexpr qint64 MaxBytes = 32LL * 1024 * 1024;
    static constexpr int QuietMs = 200;

    explicit IniCache(QObject* parent);
    ~IniCache() override;

    /// As in IniFile, for the file `path`.
    QString value(const QString& section, const QString& key, const QString& path);
    QStringList keys(const QString& section, const QString& path);
    void setValue(const QString& section, const QString& key, const QString& value,
                  const QString& path);
    void removeKey(const QString& section, const QString& key, const QString& path);

    /// In a run, the file is read anew, and the changes of the run are made once more in what is
    /// there now. A file that is gone, or that cannot be read any more, changes nothing here.
    void refresh(const QString& path);

    /// Ends all runs, each with refresh() and under the lock of the file's folder. Returns false
    /// where a file with changes could not be written; `reason`, if given, says why.
    bool flush(QString* reason = nullptr);

    /// Lets the events that wait be handled once. Does nothing when called from such an event: a
    /// handler that writes in its turn would else handle the events behind it first, and those
    /// again the ones behind them.
    void letEventsRun();

private:
    /// Of a run: a key that was set, or without a value one that was removed.
    struct Change
    {
        QString section;
        QString key;
        std::optional<QString> value;
    };

    struct File
    {
        IniFile ini;
        std::vector<Change> changes;
        QByteArray bytes; // what `ini` was read from or written as
        FileStamp stamp;
        bool known = false;   // read before, and `stamp` is of that time
        bool settled = false; // an equal stamp means the same content
        bool readable = false;
        bool inRun = false;
        bool changed = false; // since the run began
    };

    File& fileOf(const QString& path);
    File& upToDate(const QString& path);
    static void bringUpToDate(const QString& path, File& file, bool anew);
    void change(const QString& path, const Change& change);
    static bool apply(IniFile& ini, const Change& change);
    static void refreshRun(const QString& path, File& file);

    std::map<QString, File> m_files; // by absolute path
    Timer m_timer;
    bool m_inEvents = false;
};
