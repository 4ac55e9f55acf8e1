#include "widgets/CheckedListModel.h"

#include <algorithm>
#include <utility>

void CheckedListModel::checkAll(bool checked)
{
    if (m_cameras.isEmpty())
        return;
    m_checks.fill(checked);
    m_checkedCount = checked ? rowCount() : 0;
    emit dataChanged(index(0, 0), index(rowCount() - 1, 0), {Qt::CheckStateRole});
}

int CheckedListModel::checkedCount(int rows) const
{
    const auto end = m_checks.begin() + std::clamp<qsizetype>(rows, 0, m_checks.size());
    return static_cast<int>(std::count(m_checks.begin(), end, true));
}

QList<CameraRecord> CheckedListModel::checkedCameras() const
{
    QList<CameraRecord> checked;
    for (qsizetype row = 0; row < m_cameras.size(); ++row) {
        if (m_checks[row])
            checked.append(m_cameras[row]);
    }
    return checked;
}

int CheckedListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_cameras.size());
}

QVariant CheckedListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role == KeyRole)
        return m_cameras[index.row()].key;
    if (role == Qt::CheckStateRole && index.column() == 0)
        return m_checks[index.row()] ? Qt::Checked : Qt::Unchecked;
    return {};
}

bool CheckedListModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::CheckStateRole || !checkIndex(index, CheckIndexOption::IndexIsValid) ||
        index.column() != 0)
        return false;
    const bool checked = value.toInt() == Qt::Checked;
    m_checkedCount += int(checked) - int(std::exchange(m_checks[index.row()], checked));
    emit dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

Qt::ItemFlags CheckedListModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    return index.column() == 0 ? flags | Qt::ItemIsUserCheckable : flags;
}

void CheckedListModel::replaceRows(const QList<CameraRecord>& cameras)
{
    beginResetModel();
    m_cameras = cameras;
    m_checks = QList<bool>(cameras.size(), false);
    m_checkedCount = 0;
    endResetModel();
}

void CheckedListModel::removeCheckedRows()
{
    QList<CameraRecord> left;
    for (qsizetype row = 0; row < m_cameras.size(); ++row) {
        if (!m_checks[row])
            left.append(m_cameras[row]);
    }
    replaceRows(left);
}

void CheckedListModel::reorder(const QList<int>& order)
{
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    QList<CameraRecord> cameras;
    QList<bool> checks;
    QList<int> newRow(order.size());
    for (const int row : order) {
        newRow[row] = static_cast<int>(cameras.size());
        cameras.append(m_cameras[row]);
        checks.append(m_checks[row]);
    }
    m_cameras = cameras;
    m_checks = checks;
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex& one : before)
        after.append(index(newRow[one.row()], one.column()));
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}
