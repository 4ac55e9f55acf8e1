#pragma once

#include <QRect>
#include <QSize>

/// How wide the list is at first, and the least that it can be made: 220 and 120 logical pixels.
constexpr int DefaultListWidthTwips = 3300;
constexpr int LeastListWidthTwips = 1800;

/// Where the main window's parts stand, in logical pixels of the room below the menu bar. The list
/// begins at the top left; its width and the option buttons' lefts and sizes are not laid out.
struct MainLayout
{
    QRect viewer;
    QRect gotoBar;
    int listHeight = 0;
    int optionsTop = 0;
};

/// What these places depend on. Sizes are logical pixels; `client` is the room below the menu bar.
struct MainLayoutInput
{
    QSize client;
    /// Whether the View menu says that the list and the option buttons below it are on show.
    bool listChecked = true;
    int listWidthTwips = 0;
    int optionHeight = 0;
    bool gotoBarVisible = true;
    int gotoBarHeight = 0;
};

/// Places the parts by the window's own rules, which count twips of its outer size: outer width
/// is client width + 100 twips, outer height the client height + 675 twips. A size that would be
/// negative, in a very small window, is not set: that of `before` stays, and what follows goes by
/// it. So no part ever covers another; in a window too small for them they lie beyond its edge.
MainLayout layOutMainWindow(const MainLayoutInput& input, const MainLayout& before = {});

/// How wide the list is in logical pixels where the user wants `wanted` and its captions need
/// `needed`, in a window whose room is `clientWidth` wide. Wider than at first it is only as far as
/// that leaves the viewer the room that it has in the narrowest window.
int listWidth(int wanted, int needed, int clientWidth);

/// The least outer width of the window, in twips; 0 where it has none. Only the viewer's toolbar
/// needs one. `listWidthTwips` is that of the list as it is now.
int minimumOuterWidthTwips(bool toolBarChecked, bool listChecked, int listWidthTwips);

/// The client width of an outer width, in logical pixels, rounded up; 0 at the least.
int clientWidthForOuterTwips(int outerTwips);
