#include "display/ZoomRegion.h"

#include <algorithm>
#include <cmath>

namespace {

/// A shown part of the picture smaller than this fraction (or larger than its inverse, in a view
/// smaller than the zoom square) is one flat colour: zooming then changes nothing.
constexpr double NothingMoreToSee = 1e-7;

/// What rounding leaves of a zoom that was undone step by step.
constexpr double Rounding = 1e-9;

/// Where the zoom square begins in one direction: around `at`, inside 0..`length`. Kept: a view
/// shorter than the square gives a negative begin.
double squareStart(int at, double length)
{
    constexpr int half = ZoomRegion::SquareSidePx / 2;
    if (at + half > length)
        return length - ZoomRegion::SquareSidePx;
    return std::max(0, at - half);
}

/// Where a part of `length` of the picture begins that should begin at `start`.
double startInPicture(double start, double length)
{
    return length >= 1 ? (1 - length) / 2 : std::clamp(start, 0.0, 1 - length);
}

/// `start`, moved by `by`, but not away from the picture; what is there already may stay.
double movedStart(double start, double length, double by)
{
    if (length >= 1)
        return start;
    return std::clamp(start + by, std::min(start, 0.0), std::max(start, 1 - length));
}

} // namespace

bool ZoomRegion::canMove() const
{
    return isZoomed() && (m_shown.width() < 1 || m_shown.height() < 1);
}

void ZoomRegion::restore(QSizeF picture, QSizeF view, bool keepProportions)
{
    m_view = view;
    m_keepProportions = keepProportions;
    m_home = WholePicture;
    if (keepProportions && !picture.isEmpty() && !view.isEmpty()) {
        const double perWidth = view.width() / picture.width();
        const double perHeight = view.height() / picture.height();
        const double width = std::max(1.0, perWidth / perHeight);
        const double height = std::max(1.0, perHeight / perWidth);
        m_home = {startInPicture(0, width), startInPicture(0, height), width, height};
    }
    m_shown = m_home;
}

void ZoomRegion::zoomIntoSquare(QPoint at)
{
    if (m_view.isEmpty() || std::min(m_shown.width(), m_shown.height()) < NothingMoreToSee)
        return;
    if (m_keepProportions) {
        const double magnified = std::min(m_view.width(), m_view.height()) / SquareSidePx;
        const double half = SquareSidePx / 2.0;
        const QPointF middle(squareStart(at.x(), m_view.width()) + half,
                             squareStart(at.y(), m_view.height()) + half);
        if (magnified <= 1)
            return;
        const QSizeF size = m_shown.size() / magnified;
        const QPointF place(m_shown.x() + middle.x() / m_view.width() * m_shown.width(),
                            m_shown.y() + middle.y() / m_view.height() * m_shown.height());
        m_shown = QRectF(place - QPointF(size.width(), size.height()) / 2, size);
        stayInPicture();
        return;
    }
    if (std::max(m_shown.width(), m_shown.height()) > 1 / NothingMoreToSee)
        return;
    const double left = squareStart(at.x(), m_view.width());
    const double top = squareStart(at.y(), m_view.height());
    m_shown = QRectF(m_shown.x() + left / m_view.width() * m_shown.width(),
                     m_shown.y() + top / m_view.height() * m_shown.height(),
                     SquareSidePx / m_view.width() * m_shown.width(),
                     SquareSidePx / m_view.height() * m_shown.height());
}

void ZoomRegion::zoomByWheel(double notches, QPointF at)
{
    if (m_view.isEmpty() ||
        (notches > 0 && std::min(m_shown.width(), m_shown.height()) < NothingMoreToSee))
        return;
    // No mouse turns that far, and nothing is seen beyond.
    const double magnified = std::pow(WheelStep, std::clamp(notches, -100.0, 100.0));
    const QSizeF size = (m_shown.size() / magnified).boundedTo(m_home.size());
    if (size.width() > m_home.width() * (1 - Rounding) &&
        size.height() > m_home.height() * (1 - Rounding)) {
        m_shown = m_home;
        return;
    }
    const double acrossX = at.x() / m_view.width();
    const double acrossY = at.y() / m_view.height();
    m_shown = QRectF(m_shown.x() + acrossX * (m_shown.width() - size.width()),
                     m_shown.y() + acrossY * (m_shown.height() - size.height()), size.width(),
                     size.height());
    stayInPicture();
}

QPointF ZoomRegion::moveBy(QPointF by)
{
    if (!canMove() || m_view.isEmpty())
        return by;
    const QPointF before = m_shown.topLeft();
    const double perX = m_shown.width() / m_view.width();
    const double perY = m_shown.height() / m_view.height();
    m_shown.moveTopLeft({movedStart(before.x(), m_shown.width(), -by.x() * perX),
                         movedStart(before.y(), m_shown.height(), -by.y() * perY)});
    const QPointF moved = before - m_shown.topLeft();
    return by - QPointF(moved.x() / perX, moved.y() / perY);
}

void ZoomRegion::stayInPicture()
{
    m_shown.moveTopLeft({startInPicture(m_shown.x(), m_shown.width()),
                         startInPicture(m_shown.y(), m_shown.height())});
}
