#pragma once

#include <QProcess>
#include <QRect>
#include <QWidget>

/// What the window manager says of a window's property, as xprop prints it. Asked of the system's
/// window as it is now, which Qt exchanges at times.
QString windowProperty(const QWidget& window, const QString& property);

/// The windows that the window manager manages, shown or minimised, whose title is `title`.
QList<WId> managedWindows(const QString& title);

/// The windows on the desktop from the lowest to the highest, as the window manager stacks them.
QList<WId> stacking();

/// Moves the pointer there and does `action`, xdotool's name ("click", "mousedown", "mouseup"),
/// with a mouse button: 1 is the primary one, 2 the middle one, 3 the secondary one.
void pointer(const QPoint& at, const QString& action, int button);
/// Moves it there and nothing else.
void movePointer(const QPoint& at);

/// A tray on the desktop, as long as this object lives.
class DesktopTray
{
public:
    /// Returns when there is one. Ends the program where none starts.
    DesktopTray();
    ~DesktopTray();

    /// Where the program's icon is on the screen, after waiting for it, with the pointer over it;
    /// empty where none comes.
    static QRect icon();
    /// How many icons the program has in the tray.
    static int icons();

private:
    QProcess m_trayer;
};
