#include "camlist/MergedOrder.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <utility>

namespace {

/// Those of `mine` that stand in `base`, too, without the ones that were moved: the longest run
/// that has the order of `base`.
QSet<QString> unmoved(const QStringList& base, const QStringList& mine)
{
    QHash<QString, qsizetype> places;
    places.reserve(base.size());
    for (qsizetype i = 0; i < base.size(); ++i)
        places.insert(base[i], i);

    // The longest rising run of places: of all runs of one length, the one with the lowest end.
    QList<qsizetype> placeOf(mine.size(), -1);
    QList<qsizetype> before(mine.size(), -1);
    QList<qsizetype> ends;
    for (qsizetype i = 0; i < mine.size(); ++i) {
        const auto found = places.constFind(mine[i]);
        if (found == places.constEnd())
            continue;
        placeOf[i] = *found;
        const auto at = std::lower_bound(
            ends.begin(), ends.end(), *found,
            [&placeOf](qsizetype end, qsizetype place) { return placeOf[end] < place; });
        before[i] = at == ends.begin() ? -1 : *(at - 1);
        if (at == ends.end())
            ends.append(i);
        else
            *at = i;
    }

    QSet<QString> names;
    names.reserve(ends.size());
    for (qsizetype i = ends.isEmpty() ? -1 : ends.last(); i >= 0; i = before[i])
        names.insert(mine[i]);
    return names;
}

} // namespace

QStringList mergedOrder(const QStringList& base, const QStringList& mine, const QStringList& theirs)
{
    const QSet<QString> inBase(base.begin(), base.end());
    const QSet<QString> inTheirs(theirs.begin(), theirs.end());
    const QSet<QString> still = unmoved(base, mine);

    // What stands where this side put it, behind the name that it follows there.
    QHash<QString, QStringList> followers;
    QSet<QString> placed;
    QStringList first;
    QStringList* last = &first;
    for (const QString& name : mine) {
        const bool isTheirs = inTheirs.contains(name);
        if (isTheirs && (still.contains(name) || !inBase.contains(name))) {
            last = &followers[name];
            continue;
        }
        last->append(name);
        placed.insert(name);
    }

    // What came last comes last, whatever they have put there, too.
    const QStringList end = std::exchange(*last, {});
    QStringList order = first;
    for (const QString& name : theirs) {
        if (placed.contains(name))
            continue;
        order.append(name);
        order.append(followers.value(name));
    }
    return order + end;
}
