#include "display/GridKeys.h"

#include <Qt>

#include <algorithm>

int gridKeyTarget(int key, int current, const Grid& grid)
{
    const int last = grid.count - 1;
    const auto rowsOn = [&](int rows) {
        const int row = std::clamp(current / grid.columns + rows, 0, last / grid.columns);
        return std::min(row * grid.columns + current % grid.columns, last);
    };
    switch (key) {
    case Qt::Key_Left:
        return std::max(current - 1, 0);
    case Qt::Key_Right:
        return std::min(current + 1, last);
    case Qt::Key_Up:
        return rowsOn(-1);
    case Qt::Key_Down:
        return rowsOn(1);
    case Qt::Key_PageUp:
        return rowsOn(-grid.page);
    case Qt::Key_PageDown:
        return rowsOn(grid.page);
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return last;
    default:
        return -1;
    }
}
