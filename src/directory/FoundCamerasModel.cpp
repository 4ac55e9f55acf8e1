#include "directory/FoundCamerasModel.h"

#include "cameras/CameraTexts.h"

#include <QCollator>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Categories that begin alike for so many characters count as the same.
constexpr qsizetype LongestCompared = 1'000;

} // namespace

void FoundCamerasModel::replaceAll(const QList<CameraRecord>& cameras)
{
    beginResetModel();
    m_rows.clear();
    QSet<QString> keys;
    keys.reserve(cameras.size());
    for (const CameraRecord& camera : cameras) {
        const auto before = keys.size();
        keys.insert(camera.key);
        if (keys.size() > before)
            m_rows.append({camera, false});
    }
    if (m_sorted)
        reorder(sortedOrder());
    endResetModel();
}

void FoundCamerasModel::setSorted(bool on)
{
    m_sorted = on;
    if (!on)
        return;
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const QList<int> order = sortedOrder();
    QList<int> newRow(order.size());
    for (int row = 0; row < order.size(); ++row)
        newRow[order[row]] = row;
    reorder(order);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex& one : before)
        after.append(index(newRow[one.row()], one.column()));
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}

/// The rows' numbers in the order in which the rows have to stand.
QList<int> FoundCamerasModel::sortedOrder() const
{
    // A thousand rows share a category: it is prepared for comparing once.
    const QCollator collator;
    QHash<QString, QCollatorSortKey> known;
    std::vector<QCollatorSortKey> keys;
    keys.reserve(m_rows.size());
    for (const Row& row : m_rows) {
        // Without a language the collator's keys would regard case.
        const QString category = row.camera.category.left(LongestCompared).toCaseFolded();
        auto key = known.constFind(category);
        if (key == known.constEnd())
            key = known.insert(category, collator.sortKey(category));
        keys.push_back(*key);
    }
    QList<int> order(m_rows.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return keys[a].compare(keys[b]) < 0; });
    return order;
}

void FoundCamerasModel::reorder(const QList<int>& order)
{
    QList<Row> sorted;
    sorted.reserve(m_rows.size());
    for (const int row : order)
        sorted.append(std::move(m_rows[row]));
    m_rows = std::move(sorted);
}

void FoundCamerasModel::checkAll(bool checked)
{
    if (m_rows.isEmpty())
        return;
    for (Row& row : m_rows)
        row.checked = checked;
    emit dataChanged(index(0, 0), index(rowCount() - 1, 0), {Qt::CheckStateRole});
}

QList<CameraRecord> FoundCamerasModel::checkedCameras() const
{
    QList<CameraRecord> cameras;
    for (const Row& row : m_rows) {
        if (row.checked)
            cameras.append(row.camera);
    }
    return cameras;
}

int FoundCamerasModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int FoundCamerasModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FoundCamerasModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& [camera, checked] = m_rows[index.row()];
    const bool first = index.column() == CategoryColumn;
    switch (role) {
    case Qt::DisplayRole:
        return shownLine(first ? camera.category : camera.name);
    case Qt::ToolTipRole:
        return cameraToolTip(camera.name, camera.key);
    case Qt::CheckStateRole:
        return first ? QVariant(checked ? Qt::Checked : Qt::Unchecked) : QVariant();
    case KeyRole:
        return camera.key;
    default:
        return {};
    }
}

bool FoundCamerasModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::CheckStateRole || !checkIndex(index, CheckIndexOption::IndexIsValid) ||
        index.column() != CategoryColumn)
        return false;
    m_rows[index.row()].checked = value.toInt() == Qt::Checked;
    emit dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

QVariant FoundCamerasModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    // Kept: "Catagory" is what this column always said.
    return section == CategoryColumn ? u"Catagory"_s : u"Name"_s;
}

Qt::ItemFlags FoundCamerasModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    return index.column() == CategoryColumn ? flags | Qt::ItemIsUserCheckable : flags;
}
