#pragma once

#include <QObject>

#include <memory>
#include <vector>

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
    ~FavouritesMenu() override;

signals:
    /// A favourite was chosen: its camera key.
    void Opened(const QString& key);

private:
    void rebuild();
    void append();

    Favourites* m_favourites;
    QMenu* m_menu;
    std::vector<std::unique_ptr<QAction>> m_mnuFavGo;
};
