#include "settings/IniCache.h"

#include "shared/FolderLock.h"
#include "shared/ReadFile.h"
#include "shared/ReplaceFile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QScopedValueRollback>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

qint64 nowNs()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

/// A file system's clock moves in steps. A second change within the step of the first leaves the
/// stamp as it is, so a stamp from just now proves nothing; one far in the future does, because a
/// change would set it back to the present.
bool isSettled(const FileStamp& stamp, qint64 now)
{
    constexpr qint64 step = 100'000'000;
    return stamp.kind != FileStamp::Kind::File || std::abs(now - stamp.changedNs) > step;
}

} // namespace

IniCache::IniCache(QObject* parent)
    : QObject(parent)
    , m_timer(u"tmrIniFlush"_s, QuietMs, this)
{
    connect(&m_timer, &Timer::Tick, this, [this] { flush(); });
    if (auto* application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, [this] { flush(); });
}

IniCache::~IniCache()
{
    flush();
}

QString IniCache::value(const QString& section, const QString& key, const QString& path)
{
    return upToDate(path).ini.value(section, key);
}

QStringList IniCache::keys(const QString& section, const QString& path)
{
    return upToDate(path).ini.keys(section);
}

IniCache::File& IniCache::upToDate(const QString& path)
{
    File& file = fileOf(path);
    if (!file.inRun)
        bringUpToDate(path, file, false);
    return file;
}

void IniCache::setValue(const QString& section, const QString& key, const QString& value,
                        const QString& path)
{
    change(path, {section, key, value});
}

void IniCache::removeKey(const QString& section, const QString& key, const QString& path)
{
    change(path, {section, key, std::nullopt});
}

void IniCache::refresh(const QString& path)
{
    File& file = fileOf(path);
    if (file.inRun)
        refreshRun(path, file);
}

void IniCache::refreshRun(const QString& path, File& file)
{
    // Without the file, what this run has seen of it is all that is left.
    const std::optional<QByteArray> bytes = readFile(path, MaxBytes);
    IniFile ini;
    if (!bytes || *bytes == file.bytes || !ini.parse(*bytes))
        return;
    file.ini = ini;
    file.bytes = *bytes;
    file.changed = false;
    for (const Change& change : file.changes) {
        if (apply(file.ini, change))
            file.changed = true;
    }
}

bool IniCache::flush(QString* reason)
{
    m_timer.setEnabled(false);
    bool allWritten = true;
    for (auto& [path, file] : m_files) {
        if (file.inRun && file.changed) {
            const FolderLock lock(QFileInfo(path).path());
            refreshRun(path, file);
            file.bytes = file.ini.bytes();
            if (replaceFile(path, file.bytes, reason)) {
                if (lock.isHeld())
                    removeLeftovers(path);
                file.stamp = fileStamp(path);
                file.settled = false;
            } else {
                allWritten = false;
                file = File();
            }
        }
        file.inRun = false;
        file.changed = false;
        file.changes.clear();
    }
    return allWritten;
}

void IniCache::letEventsRun()
{
    if (m_inEvents || !QCoreApplication::instance())
        return;
    const QScopedValueRollback inEvents(m_inEvents, true);
    QCoreApplication::processEvents();
}

IniCache::File& IniCache::fileOf(const QString& path)
{
    return m_files[QFileInfo(path).absoluteFilePath()];
}

void IniCache::bringUpToDate(const QString& path, File& file, bool anew)
{
    const qint64 now = nowNs();
    const FileStamp stamp = fileStamp(path);
    if (!anew && file.known && file.settled && file.stamp == stamp)
        return;

    std::optional<QByteArray> bytes;
    if (stamp.kind == FileStamp::Kind::Missing)
        bytes.emplace();
    else if (stamp.kind == FileStamp::Kind::File)
        bytes = readFile(path, MaxBytes);

    if (!bytes || !file.readable || *bytes != file.bytes) {
        file.readable = bytes && file.ini.parse(*bytes);
        if (!file.readable)
            file.ini = IniFile();
        file.bytes = file.readable ? *bytes : QByteArray();
    }
    file.stamp = stamp;
    file.settled = isSettled(stamp, now);
    file.known = true;
}

bool IniCache::apply(IniFile& ini, const Change& change)
{
    return change.value ? ini.setValue(change.section, change.key, *change.value)
                        : ini.removeKey(change.section, change.key);
}

void IniCache::change(const QString& path, const Change& change)
{
    File& file = fileOf(path);
    if (!file.inRun) {
        // One that cannot be read is looked at again only when something about it changed.
        bringUpToDate(path, file, file.readable);
        if (!file.readable)
            return;
        file.inRun = true;
    }
    file.changes.push_back(change);
    if (apply(file.ini, change))
        file.changed = true;
    // Without an application there are no timers; the cache is then gone in a moment anyway.
    if (QCoreApplication::instance())
        m_timer.restart();
}
