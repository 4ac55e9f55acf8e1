#pragma once

#include "camlist/CamList.h"
#include "camlist/CameraTreeView.h"

#include <QAction>
#include <QTemporaryDir>

#include <memory>

/// A camera list in a window of its own, on screen and with the keyboard; its application folder
/// is a scratch one. Nothing is loaded yet.
class ShownList
{
public:
    ShownList();
    /// The same with that list.dat, loaded.
    explicit ShownList(const QByteArray& listDat)
        : ShownList()
    {
        load(listDat);
    }

    CamList& list() { return *m_list; }
    CameraTreeView& tree() { return *m_tree; }
    QWidget& window() { return *m_window; }
    QAction& entry(const QString& name);

    QString path(const QString& name = QStringLiteral("list.dat")) const;
    /// Writes a file into the application folder; list.dat and loads it with the second.
    void write(const QString& name, const QByteArray& content) const;
    void load(const QByteArray& listDat);

    /// Writes icl.zip and imports it.
    void import(const QByteArray& content);

    /// The node of that text; ends the program where there is none.
    QModelIndex node(const QString& text) const;
    /// The texts of all nodes, a camera behind its category as "category/camera".
    QStringList all() const;

    /// Clicks the node as a person does.
    void click(const QString& text, Qt::MouseButton button = Qt::LeftButton);
    /// Clicks it and chooses the entry from its menu.
    void choose(const QString& text, const QString& entryName);

private:
    QTemporaryDir m_folder;
    std::unique_ptr<QWidget> m_window;
    CamList* m_list;
    CameraTreeView* m_tree;
};
