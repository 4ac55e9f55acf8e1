#pragma once

#include <QDateTime>
#include <QImage>
#include <QSize>

/// The demo camera's picture: boats on a mountain lake, with a station clock.
namespace Scene {

/// Sizes that are drawn, in pixels; the largest keeps one picture at 100 MB of memory.
constexpr QSize smallest{320, 240};
constexpr QSize largest{7680, 4320};

/// Draws one picture. It depends on the arguments alone: `time` (what the clock and the caption
/// show, to the millisecond), `frame` (a number that goes up by one with every picture: boats and
/// clouds drift with it, and a whole day passes in 72 frames, so that a row of pictures does not
/// look all the same) and `size` in pixels, from `smallest` to `largest`.
/// Any two frames differ in the middle of the picture.
///
/// Needs a QGuiApplication for its fonts.
QImage draw(const QDateTime& time, quint64 frame, QSize size);

} // namespace Scene
