#pragma once

#include <QStyledItemDelegate>

/// Draws the rows of a list with check boxes: the boxes apart from each other, and to be seen on a
/// dark list too.
class CheckBoxDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};
