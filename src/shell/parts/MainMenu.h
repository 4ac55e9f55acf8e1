#pragma once

#include <QObject>

#include <array>

class QAction;
class QMenu;
class QMenuBar;

/// The main window's menus, built from one table of entries, captions, shortcuts and checks.
class MainMenu : public QObject
{
    Q_OBJECT

public:
    /// What has a caption there: the four menus, each before its own entries. The name of a value
    /// is the objectName of its menu or entry.
    enum Entry {
        mnuOpt,
        mnuOptInt,
        mnuOptImport,
        mnuOptReload,
        mnuOptExport,
        mnuOptExit,
        mnuOptExitWO,
        mnuOptOnTop,
        mnuViewTray,
        mnuFav,
        mnuFavMan,
        mnuView,
        mnuViewList,
        mnuViewTb,
        mnuViewGoto,
        mnuViewNew,
        mnuViewOSize,
        mnuViewProp,
        mnuViewFull,
        mnuHelp,
        mnuHelpAb,
        mnuHelpH,
        EntryCount
    };
    Q_ENUM(Entry)

    explicit MainMenu(QMenuBar* bar);

    /// The entry; of a menu the one that opens it.
    QAction* entry(Entry entry) const { return m_entries[entry]; }

    /// The Favorites menu, for the entries that mirror the user's favourites.
    QMenu* favourites() const;

    /// Gives each top-level menu an access key: the first letter of its caption, whatever it now
    /// is, that no menu before it has. Captions show their ampersands as they are.
    void assignAccessKeys();

private:
    QMenuBar* m_bar;
    std::array<QAction*, EntryCount> m_entries{};
};
