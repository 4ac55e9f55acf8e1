#pragma once

#include "camlist/Favourites.h"
#include "widgets/CheckedListModel.h"

/// The items that the favourites' manager works on: a copy of the favourites with a check box to
/// each, in one column "Name". Nothing done here reaches the favourites themselves.
///
/// An item's key is its camera key, character 255 and two random numbers, so that two items of one
/// camera have two keys.
class FavouritesModel : public CheckedListModel
{
    Q_OBJECT

public:
    /// Takes those of `favourites` that have both a name and a key, in their order, unchecked.
    explicit FavouritesModel(const QList<Favourite>& favourites, QObject* parent = nullptr);

    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// The items as favourites, in the order in which they are shown.
    QList<Favourite> favourites() const;

    void removeChecked() { removeCheckedRows(); }

    /// Sorts by name, ascending, without regard to case, as the user's language does. Items of
    /// equal names keep their order.
    void sortByName();
};
