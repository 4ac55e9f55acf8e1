#pragma once

#include "cameras/CameraListLine.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QIcon>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// The user's cameras: categories, and the cameras in them. It is the only store of the list, and
/// what the tree on screen shows.
///
/// Its nodes keep the order in which they were added, over all categories: that is the order of the
/// file and of every search. A node is a camera exactly when its full path (category, field
/// separator, name) holds the separator; since no text in here does, that is every node with a
/// parent. Keys are unique over cameras and categories together; a category's key is its name.
class CameraTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit CameraTreeModel(QObject* parent = nullptr);
    ~CameraTreeModel() override;

    /// Gives one camera after the other, and nothing behind the last.
    using Source = std::function<std::optional<CameraRecord>()>;

    static Source sourceOf(const QList<CameraRecord>& cameras);

    /// Adds the cameras of `source` as add() does; returns how many were refused.
    qsizetype addAll(const Source& source);

    /// The same after removing every node. Room is made for `expected` nodes at once, which a
    /// long list is half as slow without.
    qsizetype replaceAll(const Source& source, qsizetype expected = 0);

    /// Adds a camera at the end of its category, which is added before where it is missing. Adds
    /// nothing where the key is there already, but keeps a category added for it. Returns its
    /// index, or an invalid one. A text becomes what the file can hold (CameraListFile.h): a field
    /// separator becomes what looks the same, control characters but 1 and white space go, and
    /// of a text that is longer than a field may be LongestText characters stay.
    QModelIndex add(const CameraRecord& camera);

    /// Whether add() would take `camera` were the camera at `instead` gone, which may be an invalid
    /// index.
    bool canTake(const CameraRecord& camera, const QModelIndex& instead) const;

    /// Gives a camera another key; false, and nothing changes, where `key` is there already. It
    /// becomes what the file can hold, as above.
    bool setKey(const QModelIndex& camera, const QString& key);

    /// Removes a camera, or a category with its cameras.
    void remove(const QModelIndex& node);

    /// In the field of a list at most LongestField bytes, whatever they are.
    static constexpr qsizetype LongestText = 21'000;

    /// Another number after every change; the same means that nothing has changed.
    quint64 revision() const { return m_revision; }

    /// All cameras, in the order in which they were added.
    QList<CameraRecord> cameras() const;
    qsizetype cameraCount() const;

    /// The names of all categories, in the order in which they were added.
    QStringList categories() const;

    /// The first node in order of adding that has no children, an empty category too, and whose
    /// text begins with `name` without regard to case; invalid where there is none or `name` is
    /// empty.
    QModelIndex firstMatch(const QString& name) const;

    /// The camera of that key, with or without the "http://" that goes without saying; invalid
    /// where there is none.
    QModelIndex find(const QString& key) const;

    /// The camera of exactly that key; invalid where there is none.
    QModelIndex camera(const QString& key) const;

    /// The category of that name; invalid where there is none.
    QModelIndex category(const QString& name) const;

    static bool isCamera(const QModelIndex& node) { return node.parent().isValid(); }

    /// Category, text and key of a node, whole; of a category all three are its name.
    CameraRecord record(const QModelIndex& node) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    /// The text on one line, its picture, and a tool tip with the address.
    QVariant data(const QModelIndex& node, int role) const override;

private:
    struct Node;

    Node* nodeOf(const QModelIndex& index) const;
    QModelIndex indexOf(const Node* node) const;
    std::vector<Node*>& siblings(Node* category);
    Node* insert(const QString& text, const QString& key, Node* category);
    QString textOf(const Node& node) const;
    Node* ensureCategory(const QString& name);
    void forget(const Node* node);

    std::vector<std::unique_ptr<Node>> m_nodes; ///< in the order of adding
    std::vector<Node*> m_categories;
    QHash<QString, Node*> m_byKey;
    /// The category that was last asked for by its name, if it is still there.
    Node* m_lastCategory = nullptr;
    /// The text of every node, in their order, a field separator behind each: a node of its own
    /// has only its place in it. For the bench row
    /// "list keystroke, 100,000": going through the nodes' own texts takes it two to three times
    /// as long, and more than twelve times as long as 10,000 do.
    QString m_texts;
    QIcon m_cameraPicture;
    QIcon m_categoryPicture;
    quint64 m_revision = 0;
    bool m_resetting = false;
};
