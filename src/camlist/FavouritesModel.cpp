#include "camlist/FavouritesModel.h"

#include "cameras/CameraKey.h"
#include "cameras/CameraTexts.h"

#include <QCollator>
#include <QRandomGenerator>

#include <algorithm>
#include <numeric>

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
    : CheckedListModel(parent)
{
    QList<CameraRecord> items;
    for (const Favourite& one : favourites) {
        if (one.isWhole())
            items.append({{}, one.name, itemKey(one.key)});
    }
    replaceRows(items);
}

int FavouritesModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant FavouritesModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QString name = shownLine(cameras()[index.row()].name);
    switch (role) {
    case Qt::DisplayRole:
        return name;
    case Qt::ToolTipRole:
        return shownToolTip(name);
    default:
        return CheckedListModel::data(index, role);
    }
}

QVariant FavouritesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return u"Name"_s;
    return CheckedListModel::headerData(section, orientation, role);
}

QList<Favourite> FavouritesModel::favourites() const
{
    QList<Favourite> list;
    list.reserve(cameras().size());
    for (const CameraRecord& item : cameras())
        list.append({item.name, item.key.left(item.key.indexOf(FieldSeparator))});
    return list;
}

void FavouritesModel::sortByName()
{
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    QList<int> order(cameras().size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return collator.compare(cameras()[a].name, cameras()[b].name) < 0;
    });
    reorder(order);
}
