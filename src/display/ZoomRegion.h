#pragma once

#include <QPoint>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

/// Which part of a picture a view shows: the arithmetic of zooming and moving, without a window.
///
/// The part is a rectangle in fractions of the picture's width and height, and is always shown over
/// all of the view. What of it lies outside of the picture stays empty: so does the room beside a
/// picture that keeps its proportions. View positions and sizes are logical pixels.
class ZoomRegion
{
public:
    /// The whole picture and nothing else.
    static constexpr QRectF WholePicture{0, 0, 1, 1};
    /// Side of the square that a click zooms into.
    static constexpr int SquareSidePx = 200;
    /// What one notch of the wheel magnifies by.
    static constexpr double WheelStep = 1.25;

    QRectF shown() const { return m_shown; }
    bool isZoomed() const { return m_shown != m_home; }
    /// Whether there is more of the picture than is shown, so that it can be moved.
    bool canMove() const;

    /// Shows the whole picture in `view`: stretched over it, or, where it keeps its proportions,
    /// undistorted and centred. An empty picture or view is shown as if it were stretched.
    void restore(QSizeF picture, QSizeF view, bool keepProportions);

    /// Zooms into the square around `at`, moved into the view at its edges; each one zooms further
    /// into the last. Kept: a view smaller than the square is zoomed out of. Where proportions are
    /// kept, the square is shown undistorted, with what lies beside it, and a view smaller than the
    /// square changes nothing.
    void zoomIntoSquare(QPoint at);

    /// Magnifies by WheelStep for each of `notches`, the place under `at` staying where it is as
    /// far as the picture goes. Negative ones go out again, no further than the whole picture.
    void zoomByWheel(double notches, QPointF at);

    /// Moves the picture by `by`, no further than to its edges; gives what is left of `by`.
    QPointF moveBy(QPointF by);

private:
    void stayInPicture();

    QRectF m_home = WholePicture;
    QRectF m_shown = WholePicture;
    QSizeF m_view;
    bool m_keepProportions = false;
};
