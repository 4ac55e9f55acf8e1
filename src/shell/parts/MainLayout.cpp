#include "shell/parts/MainLayout.h"

#include "widgets/Twips.h"

#include <algorithm>

namespace {

constexpr int OuterWidthTwips = 100;
constexpr int OuterHeightTwips = 675;
constexpr int ViewerLeftGapTwips = 60;
constexpr int ViewerWidthGapTwips = 70;
constexpr int GotoBarGapTwips = 60;
constexpr int OptionsGapTwips = 680;
constexpr int MinimumOuterWidthTwips = 8670;

/// What a part's size is after `twips` were assigned to it.
int assigned(int twips, int pixelsBefore)
{
    return twips < 0 ? pixelsBefore : pixelsFromTwips(twips);
}

} // namespace

MainLayout layOutMainWindow(const MainLayoutInput& input, const MainLayout& before)
{
    const int formWidth = input.client.width() * TwipsPerPixel + OuterWidthTwips;
    const int formHeight = input.client.height() * TwipsPerPixel + OuterHeightTwips;
    const int list = input.listWidthTwips;
    const int gotoBar = input.gotoBarHeight * TwipsPerPixel;
    const int options = input.optionHeight * TwipsPerPixel;

    const int left = input.listChecked ? list + ViewerLeftGapTwips : 0;
    const int width =
        formWidth - (input.listChecked ? list + ViewerWidthGapTwips : 0) - OuterWidthTwips;
    const int height =
        formHeight - (input.gotoBarVisible ? gotoBar + GotoBarGapTwips : 0) - OuterHeightTwips;

    MainLayout layout;
    layout.viewer = QRect(pixelsFromTwips(left), 0, assigned(width, before.viewer.width()),
                          assigned(height, before.viewer.height()));
    layout.gotoBar =
        QRect(layout.viewer.left(), layout.viewer.height() + pixelsFromTwips(GotoBarGapTwips),
              layout.viewer.width(), input.gotoBarHeight);
    layout.listHeight = assigned(formHeight - options - OptionsGapTwips, before.listHeight);
    layout.optionsTop = layout.listHeight;
    return layout;
}

int listWidth(int wanted, int needed, int clientWidth)
{
    constexpr int viewerTwips = MinimumOuterWidthTwips - OuterWidthTwips - DefaultListWidthTwips;
    const int first = pixelsFromTwips(DefaultListWidthTwips);
    const int least = pixelsFromTwips(LeastListWidthTwips);
    const int most = (clientWidth * TwipsPerPixel - viewerTwips) / TwipsPerPixel; // rounded down
    return std::min(std::max({wanted, needed, least}), std::max(first, most));
}

int minimumOuterWidthTwips(bool toolBarChecked, bool listChecked, int listWidthTwips)
{
    if (!toolBarChecked)
        return 0;
    return std::max(MinimumOuterWidthTwips - (listChecked ? 0 : listWidthTwips), 0);
}

int clientWidthForOuterTwips(int outerTwips)
{
    return (std::max(outerTwips - OuterWidthTwips, 0) + TwipsPerPixel - 1) / TwipsPerPixel;
}
