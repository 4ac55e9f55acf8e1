#include "viewer/surface/ViewerLayout.h"

#include "widgets/Twips.h"

#include <algorithm>

namespace {

constexpr int MarginTwips = 50;
constexpr int FrameGapTwips = 20;
constexpr int CaptionGapTwips = 150;

QList<QLine> frameAround(const QRect& picture)
{
    const int gap = pixelsFromTwips(FrameGapTwips);
    const QRect frame = picture.adjusted(-gap, -gap, gap, gap);
    return {{frame.topLeft(), frame.topRight()},
            {frame.topRight(), frame.bottomRight()},
            {frame.bottomRight(), frame.bottomLeft()},
            {frame.bottomLeft(), frame.topLeft()}};
}

/// The picture itself in its room.
void placeImage(ViewerLayout& layout, const ViewerLayoutInput& input)
{
    const QRect& area = layout.imageArea;
    layout.image = area;
    if (input.originalSize && !input.picture.isEmpty()) {
        const QSize spare = (area.size() - input.picture).expandedTo({0, 0});
        const int below = input.alone ? spare.height() / 2 : 0;
        layout.image = QRect(area.topLeft() + QPoint(spare.width() / 2, below), input.picture);
        layout.frame = frameAround(layout.image);
    }
    // A picture that reaches out of the area has its banner over the part that is seen.
    const int bannerWidth = std::min(layout.image.width(), area.width());
    layout.banner = QRect(layout.image.topLeft(), QSize(bannerWidth, input.bannerHeight));
}

} // namespace

ViewerLayout layOutViewer(const ViewerLayoutInput& input)
{
    const int margin = pixelsFromTwips(MarginTwips);
    const int width = input.control.width();
    const int height = input.control.height();
    ViewerLayout layout;
    if (input.alone) {
        layout.imageArea = QRect({}, input.control);
        placeImage(layout, input);
        return layout;
    }

    const int toolBarHeight = input.toolBarVisible ? input.toolBarHeight : 0;
    layout.toolBar = QRect(0, 0, width, toolBarHeight);

    const int statusTop = height - input.statusHeight;
    const int captionWidth = std::clamp(input.captionWidth, 0, std::max(0, width - margin));
    const int captionLeft = std::max(0, width - captionWidth - margin);
    layout.caption = QRect(captionLeft, statusTop, captionWidth, input.statusHeight);
    layout.statusLine =
        QRect(0, statusTop, std::max(0, captionLeft - pixelsFromTwips(CaptionGapTwips)),
              input.statusHeight);

    const int top = toolBarHeight + margin;
    QRect area(margin, top, std::max(0, width - 2 * margin), std::max(0, statusTop - margin - top));
    if (input.debugVisible) {
        // The debug box takes the lower third of the area.
        const int debugHeight = area.height() / 3;
        layout.debugBox =
            QRect(area.left(), area.bottom() + 1 - debugHeight, area.width(), debugHeight);
        area.setHeight(std::max(0, area.height() - debugHeight - margin));
    }
    layout.imageArea = area;
    placeImage(layout, input);
    return layout;
}
