#pragma once

#include "cameras/CameraListLine.h"
#include "camlist/Favourites.h"

/// A list that two instances of the program changed, made one again.
struct MergedList
{
    QList<CameraRecord> cameras;
    /// Something of theirs is not in `cameras`: both sides gave one camera another name or
    /// category each, or one has a category of the name that is a camera's key in the other.
    bool isConflict = false;
};

/// `base` is the list that `mine` and `theirs` came from; a camera is known by its key, and the
/// first counts of several with one key.
///
/// What either side added is there; what either removed is gone, unless the other one changed it.
/// Names and categories are those of the side that changed them, this side's where both did; one
/// key that became two is both. The order is that of mergedOrder(). Without a change on one side
/// the result is the other side.
MergedList mergedLists(const QList<CameraRecord>& base, const QList<CameraRecord>& mine,
                       const QList<CameraRecord>& theirs);

/// The same for favourites, which are known by key and name together and may be there several
/// times. Nothing of theirs is lost but what this side removed. Those that are not whole count
/// for nothing.
QList<Favourite> mergedFavourites(const QList<Favourite>& base, const QList<Favourite>& mine,
                                  const QList<Favourite>& theirs);
