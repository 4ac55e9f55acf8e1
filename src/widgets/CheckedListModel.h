#pragma once

#include "cameras/CameraListLine.h"

#include <QAbstractTableModel>
#include <QList>

/// Cameras, one a row, with a check box in the first column. What the columns show and say is the
/// derived class's own.
class CheckedListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// The key of a row, a QString.
    static constexpr int KeyRole = Qt::UserRole;

    using QAbstractTableModel::QAbstractTableModel;

    void checkAll(bool checked);

    /// How many of the first `rows` rows are checked; of all of them without `rows`.
    int checkedCount(int rows) const;
    int checkedCount() const { return m_checkedCount; }

    /// The cameras that are checked, in the order of their rows.
    QList<CameraRecord> checkedCameras() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    /// The check and the key.
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

protected:
    /// In the order of the rows.
    const QList<CameraRecord>& cameras() const { return m_cameras; }

    /// Puts `cameras`, unchecked, in the place of all rows.
    void replaceRows(const QList<CameraRecord>& cameras);

    /// Removes the checked rows, at once: of 10,000 every other one may go.
    void removeCheckedRows();

    /// Row i becomes the one that was row `order[i]`; checks and current row go with their cameras.
    void reorder(const QList<int>& order);

private:
    QList<CameraRecord> m_cameras;
    /// One for each camera.
    QList<bool> m_checks;
    int m_checkedCount = 0;
};
