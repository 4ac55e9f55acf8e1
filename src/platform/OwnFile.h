#pragma once

#include <QString>

/// Whether `path` is an ordinary file of the user who runs the program: no link, no folder, and
/// under no other name beside. False, too, where that cannot be told.
bool isOwnFile(const QString& path);
