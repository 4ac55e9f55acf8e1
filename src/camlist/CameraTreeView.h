#pragma once

#include <QTreeView>

/// The tree of cameras on screen (`tvwCat`): says which node a person chose and where the menu is
/// wanted. The rest (arrows, type-ahead, expanding with + and -) is the desktop's own.
class CameraTreeView : public QTreeView
{
    Q_OBJECT

public:
    explicit CameraTreeView(QWidget* parent);

    /// The node that commands act on; invalid where none is selected.
    QModelIndex selected() const;

    /// Selects the node and brings it into view.
    void select(const QModelIndex& node);

    /// The names of the categories that are open; the second opens those of these names.
    QStringList openCategories() const;
    void openCategories(const QStringList& names);

signals:
    /// A camera was clicked, or Enter pressed on it.
    void CameraChosen(const QModelIndex& camera);
    /// The menu is wanted at this place on the screen.
    void MenuWanted(const QPoint& globalPosition);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void choose(const QModelIndex& node);
};
