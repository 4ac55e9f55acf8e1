#pragma once

#include <QList>
#include <QObject>

class Favourites;
class QAction;
class QMenu;

/// Mirrors the favourites as entries `mnuFavGo(i)` at the end of a menu. Entry 0 is always there,
/// hidden while no favourite uses it.
class FavouritesMenu : public QObject
{
    Q_OBJECT

public:
    FavouritesMenu(Favourites* favourites, QMenu* menu);

signals:
    /// A favourite was chosen: its camera key.
    void Opened(const QString& key);

private:
    void rebuild();
    void append();

    Favourites* m_favourites;
    QMenu* m_menu;
    QList<QAction*> m_mnuFavGo;
};
