#include "camlist/CameraTree.h"

#include "shared/CameraKey.h"
#include "shared/InputText.h"
#include "shared/SymbolIcon.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

struct CameraTree::Node
{
    QString text;
    QString key;
    Node* category; ///< null for a category
    int row;        ///< among its siblings
    std::vector<Node*> cameras;
};

namespace {

/// Laying out a longer text at every repaint would be felt, and no screen shows it.
constexpr qsizetype LongestShown = 10'000;

/// `text` for one line on screen; what breaks lines becomes a blank.
QString oneLine(const QString& text)
{
    QString line = text.left(LongestShown);
    for (QChar& one : line) {
        if (one.category() == QChar::Other_Control || one == QChar::LineSeparator ||
            one == QChar::ParagraphSeparator)
            one = u' ';
    }
    return line;
}

QString toolTip(const QString& name, const QString& key)
{
    constexpr qsizetype Longest = 500;
    // Escaped and marked as markup, so that a tool tip never takes a name for markup. The extra
    // header may be a secret.
    const auto row = [](const QString& text) { return text.left(Longest).toHtmlEscaped(); };
    return u"<p>%1<br>%2</p>"_s.arg(
        row(oneLine(name)), row(webAddressOf(withoutHttpScheme(splitCameraKey(key).address))));
}

} // namespace

CameraTree::CameraTree(QObject* parent)
    : QAbstractItemModel(parent)
    , m_cameraPicture(symbolIcon(u"camera"_s))
    , m_categoryPicture(symbolIcon(u"category"_s))
{
}

CameraTree::~CameraTree() = default;

qsizetype CameraTree::replaceAll(const QList<CameraRecord>& cameras)
{
    beginResetModel();
    m_resetting = true;
    m_byKey.clear();
    m_categories.clear();
    m_nodes.clear();
    m_byKey.reserve(cameras.size());
    qsizetype refused = 0;
    for (const CameraRecord& camera : cameras)
        refused += add(camera).isValid() ? 0 : 1;
    m_resetting = false;
    endResetModel();
    return refused;
}

QModelIndex CameraTree::add(const CameraRecord& camera)
{
    Node* category = ensureCategory(withoutSeparator(camera.category));
    const QString key = withoutSeparator(camera.key);
    if (!category || m_byKey.contains(key))
        return {};
    return indexOf(insert(withoutSeparator(camera.name), key, category));
}

CameraTree::Node* CameraTree::ensureCategory(const QString& name)
{
    Node* const found = m_byKey.value(name);
    if (!found)
        return insert(name, name, nullptr);
    // A camera may have the name for its key; then there can be no such category.
    return found->category ? nullptr : found;
}

CameraTree::Node* CameraTree::insert(const QString& text, const QString& key, Node* category)
{
    auto& row = siblings(category);
    const int at = static_cast<int>(row.size());
    if (!m_resetting)
        beginInsertRows(category ? indexOf(category) : QModelIndex(), at, at);
    m_nodes.push_back(std::make_unique<Node>(Node{text, key, category, at, {}}));
    Node* const node = m_nodes.back().get();
    row.push_back(node);
    m_byKey.insert(key, node);
    if (!m_resetting)
        endInsertRows();
    return node;
}

void CameraTree::remove(const QModelIndex& index)
{
    const Node* const node = nodeOf(index);
    if (!node)
        return;
    auto& row = siblings(node->category);
    const int at = node->row;
    beginRemoveRows(index.parent(), at, at);
    row.erase(row.begin() + at);
    for (auto later = row.begin() + at; later != row.end(); ++later)
        --(*later)->row;
    forget(node);
    endRemoveRows();
}

/// Destroys the node, and what a category holds.
void CameraTree::forget(const Node* node)
{
    const auto goes = [node](const auto& one) {
        return one.get() == node || one->category == node;
    };
    for (const Node* camera : node->cameras)
        m_byKey.remove(camera->key);
    m_byKey.remove(node->key);
    m_nodes.erase(std::remove_if(m_nodes.begin(), m_nodes.end(), goes), m_nodes.end());
}

QList<CameraRecord> CameraTree::cameras() const
{
    QList<CameraRecord> found;
    found.reserve(static_cast<qsizetype>(m_nodes.size() - m_categories.size()));
    for (const auto& node : m_nodes) {
        if (node->category)
            found.append({node->category->text, node->text, node->key});
    }
    return found;
}

QStringList CameraTree::categories() const
{
    QStringList names;
    for (const Node* category : m_categories)
        names.append(category->text);
    return names;
}

QModelIndex CameraTree::firstMatch(const QString& name) const
{
    if (name.isEmpty())
        return {};
    const auto match = std::find_if(m_nodes.begin(), m_nodes.end(), [&](const auto& node) {
        return node->cameras.empty() && node->text.startsWith(name, Qt::CaseInsensitive);
    });
    return match == m_nodes.end() ? QModelIndex() : indexOf(match->get());
}

CameraRecord CameraTree::record(const QModelIndex& index) const
{
    const Node* const node = nodeOf(index);
    if (!node)
        return {};
    return {node->category ? node->category->text : node->text, node->text, node->key};
}

CameraTree::Node* CameraTree::nodeOf(const QModelIndex& index) const
{
    return static_cast<Node*>(index.internalPointer());
}

QModelIndex CameraTree::indexOf(const Node* node) const
{
    return createIndex(node->row, 0, node);
}

std::vector<CameraTree::Node*>& CameraTree::siblings(Node* category)
{
    return category ? category->cameras : m_categories;
}

QModelIndex CameraTree::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    const auto& nodes = parent.isValid() ? nodeOf(parent)->cameras : m_categories;
    return indexOf(nodes[static_cast<std::size_t>(row)]);
}

QModelIndex CameraTree::parent(const QModelIndex& child) const
{
    const Node* const node = nodeOf(child);
    return node && node->category ? indexOf(node->category) : QModelIndex();
}

int CameraTree::rowCount(const QModelIndex& parent) const
{
    const auto& nodes = parent.isValid() ? nodeOf(parent)->cameras : m_categories;
    return static_cast<int>(nodes.size());
}

int CameraTree::columnCount(const QModelIndex& /*parent*/) const
{
    return 1;
}

QVariant CameraTree::data(const QModelIndex& index, int role) const
{
    const Node* const node = nodeOf(index);
    if (!node)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return oneLine(node->text);
    case Qt::DecorationRole:
        return node->category ? m_cameraPicture : m_categoryPicture;
    case Qt::ToolTipRole:
        return node->category ? toolTip(node->text, node->key) : QVariant();
    default:
        return {};
    }
}
