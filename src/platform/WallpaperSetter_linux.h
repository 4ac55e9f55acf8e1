#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QObject>
#include <QStringList>

#include <functional>

/// Makes one bitmap file the background of a Linux desktop, step by step, and deletes itself when
/// it is done. No step blocks, each is bounded in time, and what fails leads to the next one.
///
/// 1. The desktop portal (org.freedesktop.portal.Wallpaper, SetWallpaperFile) is handed the open
///    file. Once it has taken the request the choice is its own: it may ask the user, and a "no"
///    is not got round by another way.
/// 2. Where no portal takes it (no bus, no such service or interface, an error, no answer within
///    the limit), the settings of the desktop that XDG_CURRENT_DESKTOP names are changed:
///    - GNOME, Unity, Budgie, Pantheon: `gsettings`, org.gnome.desktop.background, the address
///      of the file for the light and for the dark style
///    - Cinnamon and MATE: `gsettings`, in their own schemas
///    - KDE: a script for plasmashell over D-Bus, or else `plasma-apply-wallpaperimage`
///    - Xfce: `xfconf-query`, every "last-image" that channel xfce4-desktop has
///
/// It bears no Q_OBJECT: builds for Windows, where there is no D-Bus, see this header too.
class WallpaperSetter : public QObject
{
public:
    /// How long a call over D-Bus may wait for its reply and how long a command may run, in
    /// milliseconds.
    struct Limits
    {
        int replyMs = 5000;
        int commandMs = 5000;
    };

    /// Begins with the file at `path` on the session bus `bus`, which need not be connected.
    /// `desktops` is the text of XDG_CURRENT_DESKTOP: names parted by colons, the first known one
    /// counts. Returns the object at work, for its destroyed().
    static QObject* start(const QString& path, const QDBusConnection& bus, const QString& desktops,
                          const Limits& limits);

private:
    WallpaperSetter(const QString& path, const QDBusConnection& bus, const QString& desktops,
                    const Limits& limits);

    void askPortal();
    void changeSettings();
    void changePlasma();
    void changeXfce();
    void runCommands();

    void call(const QDBusMessage& message, const std::function<void(bool answered)>& then);
    void run(const QStringList& command, const std::function<void(const QByteArray& output)>& then);

    QString m_path;
    QString m_address;
    QDBusConnection m_bus;
    QStringList m_desktops;
    Limits m_limits;
    QList<QStringList> m_commands;
};
