#include "settings/Ini.h"

#include "settings/IniCache.h"

#include <QCoreApplication>

namespace {

constexpr qsizetype LongestValue = 749;

IniCache* findCache()
{
    const auto* application = QCoreApplication::instance();
    return application ? application->findChild<IniCache*>(QString(), Qt::FindDirectChildrenOnly)
                       : nullptr;
}

/// Calls `use` with the application's cache, or with one of its own that is gone after the call.
template<typename Use>
auto withCache(Use use)
{
    auto* application = QCoreApplication::instance();
    if (!application) {
        IniCache forNow(nullptr);
        return use(forNow);
    }
    auto* cache = findCache();
    return use(cache ? *cache : *new IniCache(application));
}

QString firstCharacters(const QString& text, qsizetype count)
{
    qsizetype end = 0;
    for (; count > 0 && end < text.size(); --count) {
        const bool isPair =
            text[end].isHighSurrogate() && end + 1 < text.size() && text[end + 1].isLowSurrogate();
        end += isPair ? 2 : 1;
    }
    return text.first(end);
}

} // namespace

QString GetFromINI(const QString& section, const QString& key, const QString& path)
{
    return firstCharacters(GetWholeFromINI(section, key, path), LongestValue);
}

QString GetWholeFromINI(const QString& section, const QString& key, const QString& path)
{
    return withCache([&](IniCache& cache) { return cache.value(section, key.toLower(), path); });
}

QStringList KeysInINI(const QString& section, const QString& path)
{
    return withCache([&](IniCache& cache) { return cache.keys(section, path); });
}

void RefreshINI(const QString& path)
{
    withCache([&](IniCache& cache) { cache.refresh(path); });
}

void WriteToINI(const QString& section, const QString& key, const QString& value,
                const QString& path)
{
    withCache([&](IniCache& cache) {
        cache.setValue(section, key.toUpper(), value, path);
        cache.letEventsRun();
    });
}

void RemoveFromINI(const QString& section, const QString& key, const QString& path)
{
    withCache([&](IniCache& cache) { cache.removeKey(section, key, path); });
}

bool FlushINI(QString* reason)
{
    auto* cache = findCache();
    return !cache || cache->flush(reason);
}
