#include "camlist/MergedLists.h"

#include "cameras/CameraKey.h"
#include "camlist/MergedOrder.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <utility>

namespace {

/// One side of a merge: its names, each once and in order, and what each stands for.
template<typename Value>
struct Side
{
    QStringList names;
    QHash<QString, Value> values;

    void add(const QString& name, const Value& value)
    {
        if (values.contains(name))
            return;
        names.append(name);
        values.insert(name, value);
    }
    bool has(const QString& name) const { return values.contains(name); }
};

Side<CameraRecord> sideOf(const QList<CameraRecord>& cameras)
{
    Side<CameraRecord> side;
    side.names.reserve(cameras.size());
    side.values.reserve(cameras.size());
    for (const CameraRecord& camera : cameras)
        side.add(camera.key, camera);
    return side;
}

Side<Favourite> sideOf(const QList<Favourite>& favourites)
{
    Side<Favourite> side;
    QHash<QString, int> times;
    for (const Favourite& one : favourites) {
        if (!one.isWhole())
            continue;
        // None of the three holds the separator.
        const QString name = one.key + FieldSeparator + one.name;
        side.add(name + FieldSeparator + QString::number(times[name]++), one);
    }
    return side;
}

/// A text that both sides may have changed, in `mine` afterwards. False where both did.
bool mergeText(const QString& base, QString& mine, const QString& theirs)
{
    if (mine == theirs || theirs == base)
        return true;
    if (mine != base)
        return false;
    mine = theirs;
    return true;
}

/// Whether `one`, which `other` does not have any more, stays all the same: it was added or
/// changed.
bool staysAlone(const QString& key, const Side<CameraRecord>& one, const Side<CameraRecord>& base)
{
    return one.has(key) && (!base.has(key) || one.values[key] != base.values[key]);
}

/// Categories are in the tree under their names, cameras under their keys.
bool hasKeyOfACategory(const QList<CameraRecord>& cameras)
{
    QSet<QString> categories;
    for (const CameraRecord& camera : cameras)
        categories.insert(camera.category);
    return std::any_of(cameras.begin(), cameras.end(),
                       [&](const CameraRecord& camera) { return categories.contains(camera.key); });
}

} // namespace

MergedList mergedLists(const QList<CameraRecord>& base, const QList<CameraRecord>& mine,
                       const QList<CameraRecord>& theirs)
{
    const Side<CameraRecord> old = sideOf(base);
    const Side<CameraRecord> ours = sideOf(mine);
    const Side<CameraRecord> others = sideOf(theirs);
    MergedList merged;
    const QStringList order = mergedOrder(old.names, ours.names, others.names);
    for (const QString& key : order) {
        if (!ours.has(key) || !others.has(key)) {
            for (const auto* side : {&ours, &others}) {
                if (staysAlone(key, *side, old))
                    merged.cameras.append(side->values[key]);
            }
            continue;
        }
        CameraRecord camera = ours.values[key];
        const CameraRecord before = old.values.value(key);
        const CameraRecord other = others.values[key];
        const bool isOneName = mergeText(before.name, camera.name, other.name);
        const bool isOneCategory = mergeText(before.category, camera.category, other.category);
        merged.isConflict = merged.isConflict || !isOneName || !isOneCategory;
        merged.cameras.append(camera);
    }
    merged.isConflict = merged.isConflict || hasKeyOfACategory(merged.cameras);
    return merged;
}

QList<Favourite> mergedFavourites(const QList<Favourite>& base, const QList<Favourite>& mine,
                                  const QList<Favourite>& theirs)
{
    const Side<Favourite> old = sideOf(base);
    const Side<Favourite> ours = sideOf(mine);
    const Side<Favourite> others = sideOf(theirs);
    QList<Favourite> merged;
    const QStringList order = mergedOrder(old.names, ours.names, others.names);
    for (const QString& name : order) {
        const bool isBoths = ours.has(name) && others.has(name);
        if (isBoths || !old.has(name))
            merged.append(ours.has(name) ? ours.values[name] : others.values[name]);
    }
    return merged;
}
