#pragma once

#include <QLine>
#include <QList>
#include <QRect>
#include <QSize>

/// What the places of the viewer's parts depend on. Sizes are logical pixels.
struct ViewerLayoutInput
{
    QSize control;
    bool toolBarVisible = true;
    int toolBarHeight = 0;
    int statusHeight = 0;
    int captionWidth = 0;
    int bannerHeight = 0;
    bool debugVisible = false;
    /// The image area takes all of the control; what else there is takes none.
    bool alone = false;
    bool originalSize = false;
    /// Size of the picture; only for originalSize.
    QSize picture;
};

/// Where the parts stand. Tool bar, image area, debug box and status line tile the control; the
/// banner lies over the top of the image.
struct ViewerLayout
{
    QRect toolBar;
    /// All of the room that image or thumbnail strip may take.
    QRect imageArea;
    /// The image itself: the whole area, or the picture's own size from the area's top edge on
    /// (alone: in its middle), centred while it is narrower than the area.
    QRect image;
    QRect banner;
    QRect debugBox;
    /// Its room stays when it is hidden, so that the image keeps its size and its zoom.
    QRect statusLine;
    /// The caption with the number of the image, right of the status line.
    QRect caption;
    /// Four lines that frame the picture; none while it is stretched over the whole area.
    QList<QLine> frame;
};

ViewerLayout layOutViewer(const ViewerLayoutInput& input);
