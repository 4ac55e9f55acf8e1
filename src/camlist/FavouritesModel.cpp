#include "camlist/FavouritesModel.h"

#include "cameras/CameraKey.h"
#include "cameras/CameraTexts.h"

#include <QCollator>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <algorithm>
#include <cstring>
#include <functional>
#include <numeric>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The text of a random number below 32000, with the blank that stands for its sign.
QString randomText()
{
    return u' ' + QString::number(QRandomGenerator::global()->generateDouble() * 32000);
}

QString itemKey(const QString& cameraKey)
{
    return cameraKey + FieldSeparator + randomText() + randomText();
}

} // namespace

FavouritesModel::FavouritesModel(const QList<Favourite>& favourites, QObject* parent)
    : QAbstractListModel(parent)
{
    m_items.reserve(favourites.size());
    for (const Favourite& one : favourites) {
        if (one.isWhole())
            m_items.append({one.name, itemKey(one.key)});
    }
}

int FavouritesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

QVariant FavouritesModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Item& item = m_items[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return Favourite{item.name, {}}.shownName();
    case Qt::ToolTipRole:
        return shownToolTip(Favourite{item.name, {}}.shownName());
    case Qt::CheckStateRole:
        return item.checked ? Qt::Checked : Qt::Unchecked;
    case KeyRole:
        return item.key;
    default:
        return {};
    }
}

bool FavouritesModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::CheckStateRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    const bool checked = value.toInt() == Qt::Checked;
    bool& before = m_items[index.row()].checked;
    m_checkedCount += int(checked) - int(std::exchange(before, checked));
    emit dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

QVariant FavouritesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return u"Name"_s;
    return QAbstractListModel::headerData(section, orientation, role);
}

Qt::ItemFlags FavouritesModel::flags(const QModelIndex& index) const
{
    return QAbstractListModel::flags(index) | Qt::ItemIsUserCheckable;
}

QList<Favourite> FavouritesModel::favourites() const
{
    QList<Favourite> list;
    list.reserve(m_items.size());
    for (const Item& item : m_items)
        list.append({item.name, item.key.left(item.key.indexOf(FieldSeparator))});
    return list;
}

int FavouritesModel::checkedCount(int rows) const
{
    const auto end = m_items.begin() + std::clamp<qsizetype>(rows, 0, m_items.size());
    return static_cast<int>(std::count_if(m_items.begin(), end, std::mem_fn(&Item::checked)));
}

void FavouritesModel::checkAll(bool checked)
{
    if (m_items.isEmpty())
        return;
    for (Item& item : m_items)
        item.checked = checked;
    m_checkedCount = checked ? rowCount() : 0;
    emit dataChanged(index(0), index(rowCount() - 1), {Qt::CheckStateRole});
}

void FavouritesModel::removeChecked()
{
    // At once, because of 10,000 items every other one may go.
    beginResetModel();
    m_items.removeIf(std::mem_fn(&Item::checked));
    m_checkedCount = 0;
    endResetModel();
}

void FavouritesModel::sortByName()
{
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    QList<int> order(m_items.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return collator.compare(m_items[a].name, m_items[b].name) < 0;
    });

    QList<Item> sorted;
    sorted.reserve(m_items.size());
    QList<int> newRow(m_items.size());
    for (const int row : std::as_const(order)) {
        newRow[row] = static_cast<int>(sorted.size());
        sorted.append(std::move(m_items[row]));
    }
    m_items = std::move(sorted);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex& one : before)
        after.append(index(newRow[one.row()]));
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}
