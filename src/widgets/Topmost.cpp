#include "widgets/Topmost.h"

#include <QWidget>
#include <QWindow>

bool setTopmost(QWidget& window, bool topmost)
{
    if (!window.isWindow())
        return false;

    // The widget's own flags are what the system's window is made from, now or later; this call
    // changes nothing else.
    Qt::WindowFlags flags = window.windowFlags();
    window.overrideWindowFlags(flags.setFlag(Qt::WindowStaysOnTopHint, topmost));

    // Asking for its number is what makes Qt create the window.
    if (!window.windowHandle() && window.winId() == 0)
        return false;
    QWindow* handle = window.windowHandle();
    if (!handle)
        return false;
    // Setting a flag that is set already would still be sent to the window manager.
    if (handle->flags().testFlag(Qt::WindowStaysOnTopHint) != topmost)
        handle->setFlag(Qt::WindowStaysOnTopHint, topmost);
    return true;
}
