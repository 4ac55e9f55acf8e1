#include "widgets/CheckedListView.h"

#include "widgets/CheckBoxDelegate.h"
#include "widgets/CheckedListModel.h"

#include <QHeaderView>
#include <QKeyEvent>

using namespace Qt::Literals::StringLiterals;

CheckedListView::CheckedListView(CheckedListModel* model, const QString& spoken, QWidget* parent)
    : QTreeView(parent)
{
    setObjectName(u"lvwList"_s);
    setAccessibleName(spoken);
    setRootIsDecorated(false);
    // All rows are measured by the first one, however many there are.
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    setItemDelegate(new CheckBoxDelegate(this));
    setModel(model);
    header()->setStretchLastSection(false);
}

void CheckedListView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Space) {
        QTreeView::keyPressEvent(event);
        return;
    }
    const QModelIndex row = currentIndex().siblingAtColumn(0);
    if (!row.isValid())
        return;
    const bool checked = row.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    model()->setData(row, checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}
