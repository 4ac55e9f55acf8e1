#pragma once

#include "cameras/CameraListLine.h"
#include "camlist/CameraListFile.h"
#include "shared/SaveOutcome.h"
#include "shared/Timer.h"

#include <QPersistentModelIndex>
#include <QWidget>

class CameraTreeModel;
class CameraTreeView;
class MessageQueue;
class QAction;
class QComboBox;
class QMenu;
class QModelIndex;

/// The camera list: a tree (`tvwCat`) of categories and the cameras in them, its file, and what the
/// user does with it. The tree's nodes are the only store.
///
/// A change is in list.dat a few seconds after it was made (timer "tmrSave"), and so outlives a
/// crash. "Exit Without Saving" then takes the changes of this run back out of the file (see
/// dropChanges()). A list that nobody changed here is never written, so that an instance that only
/// looks on undoes nothing; what another instance wrote meanwhile is merged in, and the tree shows
/// what is in the file then.
class CamList : public QWidget
{
    Q_OBJECT

public:
    /// `folder` is the application folder, where list.dat lies.
    CamList(const QString& folder, QWidget* parent);
    ~CamList() override;

    /// The key of the first node without children, category or camera, whose text begins with
    /// `name` without regard to case; empty where there is none or `name` is empty.
    QString ReturnUrlViaName(const QString& name) const;

    /// The text of that node, likewise.
    QString Search(const QString& name) const;

    /// Removes the selected node: a camera at once, a category after asking. Nothing where none is
    /// selected.
    void Remove();

    /// Without a path: empties the tree and loads list.dat anew, or the default cameras where that
    /// is missing or empty. One that is there but cannot be read, or is no list (isTrustedLine()),
    /// leaves the tree empty, and is told of once. With a path: adds the cameras of that file, see
    /// readImportedList(), the default cameras where it is a "CAMZ" file that holds none, and opens
    /// their categories; says so where it is no such file or cannot be read. Either says once for
    /// every camera that the tree has it already.
    void LoadFile(const QString& path = {});

    /// LoadFile() without a path. Asks before, where the cameras of the tree have changed since
    /// they were loaded and list.dat would not give the same ones.
    void Reload();

    /// Writes all cameras into a "CAMZ" file, which LoadFile(path) reads. Exported follows.
    void ExportFile(const QString& path);

    /// Whether a camera of that key is in the list. "http://" goes without saying. The same below.
    bool has(const QString& key) const;
    /// Its name in the list; empty where it is not there.
    QString nameOf(const QString& key) const;
    /// Gives the camera of `key` the key `newKey`. False where there is none, or where another has
    /// it already.
    bool changeKey(const QString& key, const QString& newKey);
    /// Opens the properties of the camera of `key`; nothing where there is none.
    void edit(const QString& key);
    /// Selects the camera of `key`, and brings it into view.
    void select(const QString& key);
    /// The camera of `key` is on show now. The same where it is another than before; what the user
    /// selects meanwhile stays.
    void followCamera(const QString& key);
    /// The key of the camera that was last on show; empty before the first.
    QString followed() const { return m_followed; }

    /// Brings back what the last removal or the last load of list.dat took away. What has come
    /// since then stays. Nothing where there was none, or it was undone.
    void undo();

    static constexpr int SaveMs = 3'000;

    /// Writes the tree into list.dat, in the order in which the cameras were added, where it was
    /// changed since it was loaded or saved; the default cameras of a new list also unchanged.
    /// Categories without a camera are not written; without any camera the file is removed. What
    /// another instance wrote since is merged with it, and shown; what cannot be merged is kept as
    /// list.dat.bak (see CameraListFile), and KeptBeside tells of it. Where it cannot be written
    /// the old one stays; nobody is told but by the outcome.
    SaveOutcome SaveFile();

    /// Writes the tree to `path`, as list.dat has it.
    SaveOutcome saveCopy(const QString& path) const;

    /// Takes what this run changed back out of list.dat; the tree stays. For a program that ends.
    SaveOutcome dropChanges();

    /// The program ends: no message of this list opens any more.
    void endMessages();

    /// The names of all categories, in the order in which they were added.
    QStringList categories() const;

    /// Adds categories() to the items of `combo`, behind those that it has.
    void FillParent(QComboBox* combo) const;

    /// Adds a camera, and its category where the tree lacks it. Where the tree has the key, it says
    /// so and returns false.
    bool AddCam(const QString& name, const QString& key, const QString& category);

signals:
    /// A camera was chosen by a click or by Enter, or a node by "Select": its text and its key.
    void Click(const QString& name, const QString& key);
    /// "Add to Favorites" was chosen for a node.
    void AddFavorite(const QString& name, const QString& key);
    /// A camera, or a category with its cameras, was removed; undo() brings it back.
    void Removed(const QString& name);
    /// list.dat was loaded anew; undo() brings back what was there.
    void Reloaded(qsizetype cameras);
    /// `added` cameras came in, the first of them that of `firstKey`; `refused` were there already.
    void Added(qsizetype added, qsizetype refused, const QString& firstKey);
    /// The cameras were written to `path`; `reason`, where it is not empty, says why they were not.
    void Exported(const QString& path, const QString& reason);
    /// A save kept at `path` what was in list.dat, because not all of it is in the list now.
    void KeptBeside(const QString& path);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void createMenu();
    void updateMenu();
    void reload();
    bool reloadingLosesChanges() const;
    void changed();
    void showMerged(const QByteArray& line);
    void tellTrouble();
    void import(const QString& path);
    void tellNotValid();
    void tellAlreadyListed(qsizetype cameras);
    void askToRemove(const QModelIndex& category);
    void remove(const QModelIndex& node);
    void showOpen(const QStringList& categories);
    bool add(const CameraRecord& camera);
    void editSelected();

    CameraListFile m_file;
    CameraTreeModel* m_tree;
    CameraTreeView* m_tvwCat;
    QMenu* m_mnu;
    QAction* m_mnuEdit = nullptr;
    /// The key of the camera on show.
    QString m_followed;
    /// All cameras before the last change that can be undone, and the tree's revision after it.
    QList<CameraRecord> m_before;
    quint64 m_after = 0;
    /// The tree's revision when it was as list.dat.
    quint64 m_saved = 0;
    /// The camera that the editor, of which there is one at a time, was opened for.
    QPersistentModelIndex m_edited;
    CameraListFile::Trouble m_told = CameraListFile::Trouble::None;
    Timer m_tmrSave;
    MessageQueue* m_messages;
};
