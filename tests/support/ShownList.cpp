#include "support/ShownList.h"
#include "support/ScratchFile.h"

#include "support/Waiting.h"

#include <QFile>
#include <QMenu>
#include <QTest>

ShownList::ShownList()
    : m_window(std::make_unique<QWidget>())
    , m_list(new CamList(m_folder.path(), m_window.get()))
    , m_tree(m_list->findChild<CameraTreeView*>(QStringLiteral("tvwCat")))
{
    m_window->resize(320, 480);
    m_list->setGeometry(m_window->rect());
    m_window->show();
    m_window->activateWindow();
    if (!waitForActive(m_window.get()))
        qFatal("the window does not become active");
    m_list->setFocus();
}

QAction& ShownList::entry(const QString& name)
{
    auto* found = m_list->findChild<QAction*>(name);
    if (!found)
        qFatal("the list has no %s", qPrintable(name));
    return *found;
}

QString ShownList::path(const QString& name) const
{
    return m_folder.filePath(name);
}

void ShownList::write(const QString& name, const QByteArray& content) const
{
    writeFile(path(name), content);
}

void ShownList::load(const QByteArray& listDat)
{
    write(QStringLiteral("list.dat"), listDat);
    m_list->LoadFile();
}

void ShownList::import(const QByteArray& content)
{
    write("icl.zip", content);
    m_list->LoadFile(path("icl.zip"));
}

QModelIndex ShownList::node(const QString& text) const
{
    const auto hits = m_tree->model()->match(m_tree->model()->index(0, 0), Qt::DisplayRole, text, 1,
                                             Qt::MatchExactly | Qt::MatchRecursive);
    if (hits.isEmpty())
        qFatal("the tree has no %s", qPrintable(text));
    return hits.first();
}

QStringList ShownList::all() const
{
    QStringList texts;
    const auto* model = m_tree->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex category = model->index(row, 0);
        texts.append(category.data().toString());
        for (int camera = 0; camera < model->rowCount(category); ++camera)
            texts.append(category.data().toString() + '/' +
                         model->index(camera, 0, category).data().toString());
    }
    return texts;
}

void ShownList::click(const QString& text, Qt::MouseButton button)
{
    const QModelIndex index = node(text);
    m_tree->scrollTo(index);
    QTest::mouseClick(m_tree->viewport(), button, {}, m_tree->visualRect(index).center());
}

void ShownList::choose(const QString& text, const QString& entryName)
{
    click(text, Qt::RightButton);
    auto* menu = m_list->findChild<QMenu*>(QStringLiteral("mnu"));
    if (!menu || !waitForExposed(menu))
        qFatal("no menu opens for %s", qPrintable(text));
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(&entry(entryName)).center());
}
