#pragma once

#include "widgets/CheckedListModel.h"

/// The rows of the internet list: cameras that the directory found, each with a check box. No two
/// of them have the same key.
class FoundCamerasModel : public CheckedListModel
{
    Q_OBJECT

public:
    enum Column { CategoryColumn, NameColumn, ColumnCount };

    using CheckedListModel::CheckedListModel;

    /// Puts these cameras, unchecked, in the place of all rows: in their order, or sorted. One
    /// whose key is there already is skipped.
    void replaceAll(const QList<CameraRecord>& cameras);

    /// Whether the rows are sorted by category, ascending, without regard to case, as the user's
    /// language does; within a category they keep their order. Switching it on sorts those that
    /// are there, switching it off leaves them where they are. Off at first.
    void setSorted(bool on);

    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    bool m_sorted = false;
};
