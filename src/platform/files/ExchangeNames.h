#pragma once

#include <QString>

/// Lets the files `one` and `other`, which are there and may be of any kind, change names in one
/// step: at every moment both names are taken. Symbolic links change names themselves. Returns
/// false, and has changed nothing, where it is refused or the system or its file system knows no
/// such step.
bool exchangeNames(const QString& one, const QString& other);
