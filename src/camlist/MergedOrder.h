#pragma once

#include <QStringList>

/// Three lists of names, in none of which a name is there twice: all names of `mine` and of
/// `theirs` in one order, each once. `base` is the list that both came from.
///
/// The order is theirs, but for the names that this side moved or added: each of those stands
/// behind the one that it stands behind in `mine`, and the last ones at the end. So the result is
/// `mine` where `theirs` has the names of `base` in their order, and `theirs` where that holds of
/// `mine`. A name that only one side has left is in the result: whether it stays is the caller's
/// business.
QStringList mergedOrder(const QStringList& base, const QStringList& mine,
                        const QStringList& theirs);
