#include "camlist/CameraTreeView.h"

#include <QContextMenuEvent>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int IndentationPx = 16;

} // namespace

CameraTreeView::CameraTreeView(QWidget* parent)
    : QTreeView(parent)
{
    setObjectName(u"tvwCat"_s);
    setAccessibleName(tr("Cameras"));
    setHeaderHidden(true);
    setEditTriggers(NoEditTriggers);
    setIndentation(IndentationPx);
    // With 100,000 rows nobody may ask each for its height.
    setUniformRowHeights(true);
    // A category opens and closes with a click, and of a double click with the first.
    setExpandsOnDoubleClick(false);
    connect(this, &QTreeView::clicked, this, &CameraTreeView::choose);
}

QModelIndex CameraTreeView::selected() const
{
    const QModelIndex current = currentIndex();
    return selectionModel()->isSelected(current) ? current : QModelIndex();
}

void CameraTreeView::select(const QModelIndex& node)
{
    setCurrentIndex(node);
    scrollTo(node);
}

QStringList CameraTreeView::openCategories() const
{
    QStringList names;
    for (int row = 0; row < model()->rowCount(); ++row) {
        const QModelIndex category = model()->index(row, 0);
        if (isExpanded(category))
            names.append(category.data().toString());
    }
    return names;
}

void CameraTreeView::openCategories(const QStringList& names)
{
    const QSet<QString> open(names.begin(), names.end());
    for (int row = 0; row < model()->rowCount(); ++row) {
        const QModelIndex category = model()->index(row, 0);
        if (open.contains(category.data().toString()))
            expand(category);
    }
}

void CameraTreeView::choose(const QModelIndex& node)
{
    if (node.parent().isValid())
        emit CameraChosen(node);
    else
        setExpanded(node, !isExpanded(node));
}

void CameraTreeView::keyPressEvent(QKeyEvent* event)
{
    // Not by `activated`, which some desktops send for a click as well.
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QTreeView::keyPressEvent(event);
        return;
    }
    if (currentIndex().isValid() && !event->isAutoRepeat()) {
        select(currentIndex());
        choose(currentIndex());
    }
}

void CameraTreeView::mousePressEvent(QMouseEvent* event)
{
    // Below the nodes there is nothing to press: the selected one, which the menu acts on, stays.
    if (indexAt(event->position().toPoint()).isValid())
        QTreeView::mousePressEvent(event);
}

void CameraTreeView::mouseReleaseEvent(QMouseEvent* event)
{
    QTreeView::mouseReleaseEvent(event);
    if (event->button() == Qt::RightButton)
        emit MenuWanted(event->globalPosition().toPoint());
}

void CameraTreeView::contextMenuEvent(QContextMenuEvent* event)
{
    // The mouse's comes with the press on some systems; the menu comes with the release.
    if (event->reason() == QContextMenuEvent::Mouse)
        return;
    if (currentIndex().isValid())
        select(currentIndex());
    const QRect row = visualRect(currentIndex());
    emit MenuWanted(viewport()->mapToGlobal(row.isValid() ? row.center() : QPoint(0, 0)));
}
