#include "shell/MainLayout.h"

#include "shared/Twips.h"

namespace {

constexpr int OuterWidthTwips = 100;
constexpr int OuterHeightTwips = 675;
constexpr int ViewerLeftGapTwips = 60;
constexpr int ViewerWidthGapTwips = 70;
constexpr int GotoBarGapTwips = 60;

} // namespace

MainLayout layOutMainWindow(const MainLayoutInput& input)
{
    const int formWidth = input.client.width() * TwipsPerPixel + OuterWidthTwips;
    const int formHeight = input.client.height() * TwipsPerPixel + OuterHeightTwips;
    const int list = input.listWidth * TwipsPerPixel;
    const int gotoBar = input.gotoBarHeight * TwipsPerPixel;

    const int left = list > 0 ? list + ViewerLeftGapTwips : 0;
    const int width = formWidth - (list > 0 ? list + ViewerWidthGapTwips : 0) - OuterWidthTwips;
    const int height =
        formHeight - (input.gotoBarVisible ? gotoBar + GotoBarGapTwips : 0) - OuterHeightTwips;

    MainLayout layout;
    layout.viewer =
        QRect(pixelsFromTwips(left), 0, pixelsFromTwips(width), pixelsFromTwips(height));
    layout.gotoBar = QRect(pixelsFromTwips(left), pixelsFromTwips(height + GotoBarGapTwips),
                           pixelsFromTwips(width), input.gotoBarHeight);
    return layout;
}
