#include "viewer/surface/ToolbarCommands.h"

#include "viewer/surface/ToolBar.h"

#include <algorithm>
#include <utility>

ToolbarCommands::ToolbarCommands(const ToolBar& tbMain, QList<Row> rows, QObject* parent)
    : QObject(parent)
    , m_rows(std::move(rows))
{
    connect(&tbMain, &ToolBar::ButtonClick, this, [this](int button) { run(button, Face); });
    connect(&tbMain, &ToolBar::ButtonMenuClick, this, &ToolbarCommands::run);
}

void ToolbarCommands::run(int button, int item)
{
    const auto row = std::find_if(m_rows.cbegin(), m_rows.cend(), [=](const Row& one) {
        return one.button == button && one.item == item;
    });
    if (row != m_rows.cend())
        row->command();
}
