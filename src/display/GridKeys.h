#pragma once

/// A grid of things, row by row from the left, one of which is current. All but the last row are
/// full.
struct Grid
{
    int count;   ///< At least 1.
    int columns; ///< At least 1.
    int page;    ///< Rows that are in view at once, at least 1.
};

/// The place, from 0, to which `key` (a Qt::Key) leads from place `current`, which is one of the
/// grid: the arrow keys by one, Page Up and Down by a page in the same column, Home and End to the
/// ends. At an edge it stays; below a short last row's end it is the last one. -1 for any other
/// key.
int gridKeyTarget(int key, int current, const Grid& grid);
