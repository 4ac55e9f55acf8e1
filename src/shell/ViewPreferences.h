#pragma once

#include <QString>

#include <functional>

class MainMenu;
class WebCam;

/// The VIEW section of pref.ini: which menu checks it keeps, and what each of them switches.
/// A stored text that is no truth value leaves its check and its target as they were; only an
/// unreadable TRAY turns the tray icon on, as it always did.
class ViewPreferences
{
public:
    /// What the checks switch beside the viewer's properties.
    struct Targets
    {
        std::function<void(bool)> showList;
        std::function<void(bool)> showGotoBar;
        std::function<void()> addTrayIcon;
        std::function<void(bool)> setTopmost;
    };

    ViewPreferences(MainMenu& menu, WebCam& viewer, Targets targets);

    /// Reads LIST, TB, GOTO, NEW, TRAY, ONTOP, OSIZE and KEEP from the ini file at `path`, in this
    /// order, and applies each.
    void load(const QString& path) const;

    /// Writes LIST, TB, GOTO, NEW, TRAY, OSIZE, ONTOP, in this order, and KEEP while it is on.
    void save(const QString& path) const;

private:
    MainMenu& m_menu;
    WebCam& m_viewer;
    Targets m_targets;
};
