#pragma once

#include <QList>
#include <QObject>

#include <functional>

class ToolBar;

/// Which button or menu item of the toolbar does what: one table, given by the owner. A place that
/// the table does not name does nothing.
class ToolbarCommands : public QObject
{
    Q_OBJECT

public:
    /// Stands for the face of a button in place of a menu item.
    static constexpr int Face = 0;

    struct Row
    {
        /// A ToolBar::Button.
        int button;
        /// The item of its menu, from 1, or Face.
        int item;
        std::function<void()> command;
    };

    ToolbarCommands(const ToolBar& tbMain, QList<Row> rows, QObject* parent);

private:
    void run(int button, int item);

    QList<Row> m_rows;
};
