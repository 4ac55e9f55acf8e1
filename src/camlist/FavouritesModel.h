#pragma once

#include "camlist/Favourites.h"

#include <QAbstractListModel>

/// The items that the favourites' manager works on: a copy of the favourites with a check box to
/// each, in one column "Name". Nothing done here reaches the favourites themselves.
///
/// An item's key is its camera key, character 255 and two random numbers, so that two items of one
/// camera have two keys.
class FavouritesModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// The item's key, a QString.
    static constexpr int KeyRole = Qt::UserRole;

    /// Takes those of `favourites` that have both a name and a key, in their order, unchecked.
    explicit FavouritesModel(const QList<Favourite>& favourites, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// The items as favourites, in the order in which they are shown.
    QList<Favourite> favourites() const;

    /// How many of the first `rows` items are checked; of all of them without `rows`.
    int checkedCount(int rows) const;
    int checkedCount() const { return m_checkedCount; }

    void checkAll(bool checked);
    void removeChecked();

    /// Sorts by name, ascending, without regard to case, as the user's language does. Items of
    /// equal names keep their order.
    void sortByName();

private:
    struct Item
    {
        QString name;
        QString key;
        bool checked = false;
    };

    QList<Item> m_items;
    int m_checkedCount = 0;
};
