#pragma once

#include <QHash>
#include <QObject>

class QAction;
class QMenu;
class QMenuBar;

/// The main window's menus, built from one table of names, captions, shortcuts and checks.
class MainMenu : public QObject
{
    Q_OBJECT

public:
    explicit MainMenu(QMenuBar* bar);

    /// The entry of that name; the name must be one of the table's.
    QAction* entry(const QString& name) const;

    /// The Favorites menu, for the entries that mirror the user's favourites.
    QMenu* favourites() const;

    /// Gives each top-level menu an access key: the first letter of its caption, whatever it now
    /// is, that no menu before it has. Captions show their ampersands as they are.
    void assignAccessKeys();

private:
    QList<QMenu*> m_menus;
    QHash<QString, QAction*> m_entries;
};
