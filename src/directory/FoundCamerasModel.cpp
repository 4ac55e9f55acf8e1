#include "directory/FoundCamerasModel.h"

#include "cameras/CameraTexts.h"

#include <QCollator>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <numeric>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Categories that begin alike for so many characters count as the same.
constexpr qsizetype LongestCompared = 1'000;

/// The numbers of `cameras` in the order in which their rows have to stand.
QList<int> sortedOrder(const QList<CameraRecord>& cameras)
{
    // A thousand rows share a category: it is prepared for comparing once.
    const QCollator collator;
    QHash<QString, QCollatorSortKey> known;
    std::vector<QCollatorSortKey> keys;
    keys.reserve(static_cast<std::size_t>(cameras.size()));
    for (const CameraRecord& camera : cameras) {
        // Without a language the collator's keys would regard case.
        const QString category = camera.category.left(LongestCompared).toCaseFolded();
        auto key = known.constFind(category);
        if (key == known.constEnd())
            key = known.insert(category, collator.sortKey(category));
        keys.push_back(*key);
    }
    QList<int> order(cameras.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&keys](int a, int b) {
        return keys[static_cast<std::size_t>(a)].compare(keys[static_cast<std::size_t>(b)]) < 0;
    });
    return order;
}

} // namespace

void FoundCamerasModel::replaceAll(const QList<CameraRecord>& cameras)
{
    QList<CameraRecord> rows;
    QSet<QString> keys;
    keys.reserve(cameras.size());
    for (const CameraRecord& camera : cameras) {
        const auto before = keys.size();
        keys.insert(camera.key);
        if (keys.size() > before)
            rows.append(camera);
    }
    if (!m_sorted)
        return replaceRows(rows);
    QList<CameraRecord> sorted;
    for (const int row : sortedOrder(rows))
        sorted.append(rows[row]);
    replaceRows(sorted);
}

void FoundCamerasModel::setSorted(bool on)
{
    m_sorted = on;
    if (on)
        reorder(sortedOrder(cameras()));
}

int FoundCamerasModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FoundCamerasModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const CameraRecord& camera = cameras()[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return shownLine(index.column() == CategoryColumn ? camera.category : camera.name);
    case Qt::ToolTipRole:
        return cameraToolTip(camera.name, camera.key);
    default:
        return CheckedListModel::data(index, role);
    }
}

QVariant FoundCamerasModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return CheckedListModel::headerData(section, orientation, role);
    // Kept: "Catagory" is what this column always said.
    return section == CategoryColumn ? u"Catagory"_s : u"Name"_s;
}
