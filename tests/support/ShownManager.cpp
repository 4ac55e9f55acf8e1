#include "support/ShownManager.h"

#include "support/Waiting.h"

#include <QApplication>
#include <QPushButton>
#include <QStyleOptionViewItem>
#include <QTest>
#include <QTreeView>

ShownManager::ShownManager(frmMan& window)
    : m_window(&window)
{
    const auto hasKeyboard = [&] {
        auto* focus = QApplication::focusWidget();
        return focus && focus->window() == &window;
    };
    if (!waitForActive(&window) || !waitFor(hasKeyboard))
        qFatal("the manager does not get the keyboard");
}

QTreeView& ShownManager::list() const
{
    return *m_window->findChild<QTreeView*>("lvwList");
}

QPushButton& ShownManager::button(const QString& name) const
{
    auto* found = m_window->findChild<QPushButton*>(name);
    if (!found)
        qFatal("the manager has no %s", qPrintable(name));
    return *found;
}

QStringList ShownManager::items() const
{
    QStringList found;
    const auto& model = *list().model();
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row, 0);
        const bool checked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        found << (checked ? "[x] " : "") + index.data().toString();
    }
    return found;
}

QString ShownManager::key(int row) const
{
    return list().model()->index(row, 0).data(Qt::UserRole).toString();
}

void ShownManager::press(const QString& name) const
{
    QTest::mouseClick(&button(name), Qt::LeftButton);
}

void ShownManager::tick(int row) const
{
    QTreeView& view = list();
    const QModelIndex index = view.model()->index(row, 0);
    view.scrollTo(index);
    QStyleOptionViewItem option;
    option.initFrom(&view);
    option.rect = view.visualRect(index);
    option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
    option.text = index.data().toString();
    const QRect box =
        view.style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &view);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, box.center());
}
