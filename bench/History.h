#pragma once

#include <QString>

class Pictures;
class Table;

/// The time until a strip of 45 `pictures` is on the screen.
void benchThumbnails(Table& table, const Pictures& pictures);

/// CPU for saving and loading a movie of 45 `pictures`, in `folder`, against the JPEG library's
/// own programs over the same frames.
void benchMovie(Table& table, const Pictures& pictures, const QString& folder);
