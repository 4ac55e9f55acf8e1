#pragma once

#include "camlist/Favourites.h"

#include <QDialog>

class CheckedListView;
class FavouritesModel;
class QPushButton;

/// The window "Manage Favorites": removes and sorts favourites. It works on a copy of them, and
/// hands that over when it is closed by "Ok"; however else it goes, they stay as they were.
/// It is modal to its parent, shown with open(), and deletes itself when it is closed.
class frmMan : public QDialog
{
    Q_OBJECT

public:
    /// Lists what `favourites` holds now. `favourites` is there for as long as the window is open.
    frmMan(Favourites* favourites, QWidget* parent);

    /// "Ok", or Enter: the items on show become the favourites.
    void accept() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void createList();
    void createButtons();
    void layOut();
    void removeChecked();
    void updateButtons();
    void setUsable(QPushButton* button, bool usable);

    Favourites* m_favourites;
    /// As they were when the window opened.
    QList<Favourite> m_opened;
    FavouritesModel* m_items;
    CheckedListView* m_lvwList;
    QPushButton* m_cmdRem;
    QPushButton* m_cmdAll;
    QPushButton* m_cmdNone;
    QPushButton* m_cmdSort;
    QPushButton* m_cmdOk;
    QPushButton* m_cmdCan;
};
