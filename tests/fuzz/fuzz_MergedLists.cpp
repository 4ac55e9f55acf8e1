#include "fuzz/Fuzzing.h"

#include "camlist/MergedLists.h"

#include <QSet>

#include <algorithm>

namespace {

/// A list of a few cameras, each key once.
QList<CameraRecord> listFrom(FuzzedDataProvider& input)
{
    QList<CameraRecord> cameras;
    QSet<int> keys;
    for (auto count = input.ConsumeIntegralInRange(0, 12); count > 0; --count) {
        const int key = input.ConsumeIntegralInRange(0, 15);
        const int category = input.ConsumeIntegralInRange(0, 2);
        const int name = input.ConsumeIntegralInRange(0, 3);
        if (keys.contains(key))
            continue;
        keys.insert(key);
        cameras.append({QStringLiteral("Category %1").arg(category),
                        QStringLiteral("Camera %1").arg(name),
                        QStringLiteral("cam.example/%1.jpg").arg(key)});
    }
    return cameras;
}

const CameraRecord* find(const QList<CameraRecord>& cameras, const QString& key)
{
    const auto found = std::find_if(cameras.begin(), cameras.end(),
                                    [&key](const CameraRecord& one) { return one.key == key; });
    return found == cameras.end() ? nullptr : &*found;
}

/// Of one key: what the merged list has to have.
void check(const QString& key, const QList<CameraRecord>& base, const QList<CameraRecord>& mine,
           const QList<CameraRecord>& theirs, const MergedList& merged)
{
    const auto* before = find(base, key);
    const auto* here = find(mine, key);
    const auto* there = find(theirs, key);
    const auto* now = find(merged.cameras, key);
    if (here && there) {
        REQUIRE(now);
        // Each text is that of the side that changed it, of this one where both did.
        const auto expected = [before](const QString& base, const QString& mine,
                                       const QString& theirs) {
            return before && mine == base ? theirs : mine;
        };
        const CameraRecord none;
        const CameraRecord& old = before ? *before : none;
        REQUIRE(now->name == expected(old.name, here->name, there->name));
        REQUIRE(now->category == expected(old.category, here->category, there->category));
        const auto bothChanged = [before](const QString& base, const QString& mine,
                                          const QString& theirs) {
            return mine != theirs && (!before || (mine != base && theirs != base));
        };
        if (bothChanged(old.name, here->name, there->name) ||
            bothChanged(old.category, here->category, there->category))
            REQUIRE(merged.isConflict);
    } else if (!before) {
        REQUIRE((now != nullptr) == (here || there));
    } else if (here || there) {
        // Removed by one side; it stays where the other one changed it.
        const bool isChanged = *(here ? here : there) != *before;
        REQUIRE(!isChanged || now);
    } else {
        REQUIRE(!now);
    }
}

QList<Favourite> favouritesOf(const QList<CameraRecord>& cameras)
{
    QList<Favourite> favourites;
    for (const CameraRecord& camera : cameras)
        favourites.append({camera.name, camera.category});
    return favourites;
}

bool isSame(const QList<Favourite>& one, const QList<Favourite>& other)
{
    return std::equal(
        one.begin(), one.end(), other.begin(), other.end(),
        [](const Favourite& a, const Favourite& b) { return a.name == b.name && a.key == b.key; });
}

} // namespace

/// A merge never loses a camera that neither side removed, and makes no change that none made.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const auto base = listFrom(input);
    const auto mine = listFrom(input);
    const auto theirs = listFrom(input);
    const MergedList merged = mergedLists(base, mine, theirs);
    QSet<QString> keys;
    for (const CameraRecord& camera : merged.cameras) {
        REQUIRE(!keys.contains(camera.key));
        keys.insert(camera.key);
        REQUIRE(find(mine, camera.key) || find(theirs, camera.key));
    }
    for (const auto* list : {&base, &mine, &theirs}) {
        for (const CameraRecord& camera : *list)
            check(camera.key, base, mine, theirs, merged);
    }
    REQUIRE(mergedLists(base, base, theirs).cameras == theirs);
    REQUIRE(mergedLists(base, mine, base).cameras == mine);

    // Favourites may be there several times.
    const auto before = favouritesOf(base);
    const auto here = favouritesOf(mine);
    const auto there = favouritesOf(theirs);
    REQUIRE(isSame(mergedFavourites(before, before, there), there));
    REQUIRE(isSame(mergedFavourites(before, here, before), here));
    const auto both = mergedFavourites(before, here, there);
    for (const Favourite& one : there) {
        const auto is = [&one](const Favourite& other) {
            return other.name == one.name && other.key == one.key;
        };
        const bool isRemovedHere = std::count_if(here.begin(), here.end(), is) <
                                   std::count_if(before.begin(), before.end(), is);
        REQUIRE(isRemovedHere || std::any_of(both.begin(), both.end(), is));
    }
    return 0;
}
