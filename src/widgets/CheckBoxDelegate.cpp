#include "widgets/CheckBoxDelegate.h"

namespace {

constexpr int BetweenRows = 6;

} // namespace

QSize CheckBoxDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, BetweenRows);
}

void CheckBoxDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    // Styles outline a box in a darker shade of the window, which is nothing to be seen on a
    // dark list.
    QPalette& palette = option->palette;
    if (palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness())
        palette.setColor(QPalette::Window, palette.color(QPalette::Text));
}
