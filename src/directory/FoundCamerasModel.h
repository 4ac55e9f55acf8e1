#pragma once

#include "cameras/CameraListLine.h"

#include <QAbstractTableModel>

/// The rows of the internet list: cameras that the directory found, each with a check box. No two
/// of them have the same key.
class FoundCamerasModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { CategoryColumn, NameColumn, ColumnCount };
    /// The camera key of a row, a QString.
    static constexpr int KeyRole = Qt::UserRole;

    using QAbstractTableModel::QAbstractTableModel;

    /// Puts these cameras, unchecked, in the place of all rows: in their order, or sorted. One
    /// whose key is there already is skipped.
    void replaceAll(const QList<CameraRecord>& cameras);

    /// Whether the rows are sorted by category, ascending, without regard to case, as the user's
    /// language does; within a category they keep their order. Switching it on sorts those that
    /// are there, switching it off leaves them where they are. Off at first.
    void setSorted(bool on);

    void checkAll(bool checked);

    /// The cameras that are checked, in the order of their rows.
    QList<CameraRecord> checkedCameras() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    struct Row
    {
        CameraRecord camera;
        bool checked = false;
    };

    QList<int> sortedOrder() const;
    void reorder(const QList<int>& order);

    QList<Row> m_rows;
    bool m_sorted = false;
};
