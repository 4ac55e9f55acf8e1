#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <array>

/// A check of the main window's menus that is kept from one run to the next.
struct ViewOption
{
    /// The objectNames of the menu and of its entry.
    const char* menu;
    const char* entry;
    /// "SECTION/KEY" in pref.ini.
    const char* iniKey;
    bool atFirst;
    /// What switches it by the keyboard, as xdotool names keys: its own key, or that of the menu
    /// and the way to the entry.
    const char* keys;
};

inline constexpr std::array<ViewOption, 8> ViewOptions{{
    {"mnuView", "mnuViewList", "VIEW/LIST", true, "ctrl+l"},
    {"mnuView", "mnuViewTb", "VIEW/TB", true, "ctrl+t"},
    {"mnuView", "mnuViewGoto", "VIEW/GOTO", true, "ctrl+g"},
    {"mnuView", "mnuViewNew", "VIEW/NEW", true, "ctrl+i"},
    {"mnuView", "mnuViewOSize", "VIEW/OSIZE", false, "ctrl+o"},
    {"mnuView", "mnuViewProp", "WINDOW/PROPORTIONS", false, "alt+v Up Up Return"},
    {"mnuOpt", "mnuViewTray", "VIEW/TRAY", true, "alt+o Up Return"},
    {"mnuOpt", "mnuOptOnTop", "VIEW/ONTOP", false, "alt+o Up Up Return"},
}};

/// "SECTION/KEY" and its value.
using Preferences = QMap<QString, QString>;

/// All that a pref.ini of plain lines holds; not by the program's own reader.
Preferences readPreferences(const QByteArray& content);

/// All options, each the other way round than at first.
Preferences allSwitched();
