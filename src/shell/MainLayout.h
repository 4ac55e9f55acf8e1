#pragma once

#include <QRect>
#include <QSize>

/// What the places of the main window's parts depend on. Sizes are logical pixels; `client` is
/// the room below the menu bar.
struct MainLayoutInput
{
    QSize client;
    /// Width of the camera list; 0 while it is not shown.
    int listWidth = 0;
    bool gotoBarVisible = true;
    int gotoBarHeight = 0;
};

struct MainLayout
{
    QRect viewer;
    QRect gotoBar;
};

/// Places the parts by the window's own rules, which count twips of its outer size: outer width
/// is client width + 100 twips, outer height the client height + 675 twips.
MainLayout layOutMainWindow(const MainLayoutInput& input);
