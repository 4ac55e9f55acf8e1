#pragma once

#include <QTreeView>

class CheckedListModel;

/// The list on screen of a CheckedListModel (`lvwList`). The space bar is for the current row's
/// check box, whichever column is current.
class CheckedListView : public QTreeView
{
    Q_OBJECT

public:
    /// `spoken` is its name for screen readers. `model` lives as long.
    CheckedListView(CheckedListModel* model, const QString& spoken, QWidget* parent);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};
