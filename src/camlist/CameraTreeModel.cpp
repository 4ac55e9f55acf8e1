#include "camlist/CameraTreeModel.h"

#include "cameras/CameraKey.h"
#include "cameras/CameraTexts.h"
#include "camlist/CameraListFile.h"
#include "shared/DiskText.h"
#include "shared/InputText.h"
#include "widgets/SymbolIcon.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

/// There may be millions: what a list of 60 MB needs is mostly these.
struct CameraTreeModel::Node
{
    QString key;
    Node* category;   ///< null for a category
    qsizetype textAt; ///< in m_texts
    int textSize;
    int row; ///< among its siblings
    /// Of a category alone.
    std::unique_ptr<std::vector<Node*>> cameras;
};

namespace {

/// As QStringView::startsWith without regard to case, but faster where both are ASCII: the bench
/// row "list keystroke, 10,000" takes twice as long with Qt's.
bool beginsWith(QStringView texts, QStringView name)
{
    constexpr auto lower = [](char16_t one) {
        return one >= u'A' && one <= u'Z' ? char16_t(one + (u'a' - u'A')) : one;
    };
    if (texts.size() < name.size())
        return false;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const char16_t one = texts[i].unicode();
        const char16_t other = name[i].unicode();
        if (one > u'\x7F' || other > u'\x7F')
            return texts.sliced(i).startsWith(name.sliced(i), Qt::CaseInsensitive);
        if (lower(one) != lower(other))
            return false;
    }
    return true;
}

/// Whether no list may hold it.
bool isForbidden(QChar one)
{
    return (one < u' ' && one != HeaderMark && one != u'\t' && one != u'\r' && one != u'\n') ||
           one == u'\x7F';
}

/// `text` as the tree keeps it; see CameraTreeModel::add().
QString listText(const QString& text)
{
    const auto needsCare = [](QChar one) { return one == FieldSeparator || isForbidden(one); };
    const auto isLong = [](const QString& one) {
        return one.size() > CameraTreeModel::LongestText && toDiskField(one).size() > LongestField;
    };
    if (std::none_of(text.begin(), text.end(), needsCare) && !isLong(text))
        return text;
    QString kept = withoutSeparator(text);
    kept.removeIf(isForbidden);
    if (!isLong(kept))
        return kept;
    kept.truncate(CameraTreeModel::LongestText);
    if (!kept.isEmpty() && kept.back().isHighSurrogate())
        kept.chop(1);
    return kept;
}

} // namespace

CameraTreeModel::CameraTreeModel(QObject* parent)
    : QAbstractItemModel(parent)
    , m_cameraPicture(symbolIcon(u"camera"_s))
    , m_categoryPicture(symbolIcon(u"category"_s))
{
}

CameraTreeModel::~CameraTreeModel() = default;

CameraTreeModel::Source CameraTreeModel::sourceOf(const QList<CameraRecord>& cameras)
{
    return [cameras, next = qsizetype(0)]() mutable -> std::optional<CameraRecord> {
        return next < cameras.size() ? std::optional(cameras[next++]) : std::nullopt;
    };
}

qsizetype CameraTreeModel::addAll(const Source& source)
{
    qsizetype refused = 0;
    while (const auto camera = source())
        refused += add(*camera).isValid() ? 0 : 1;
    return refused;
}

qsizetype CameraTreeModel::replaceAll(const Source& source, qsizetype expected)
{
    beginResetModel();
    m_resetting = true;
    ++m_revision;
    m_lastCategory = nullptr;
    m_byKey.clear();
    m_byKey.reserve(expected);
    m_categories.clear();
    m_nodes.clear();
    m_nodes.reserve(static_cast<std::size_t>(expected));
    m_texts.clear();
    const qsizetype refused = addAll(source);
    m_resetting = false;
    endResetModel();
    return refused;
}

QModelIndex CameraTreeModel::add(const CameraRecord& camera)
{
    // Kept: a category that is made here stays when the camera is refused.
    Node* category = ensureCategory(listText(camera.category));
    if (!category)
        return {};
    Node* const added = insert(listText(camera.name), listText(camera.key), category);
    return added ? indexOf(added) : QModelIndex();
}

bool CameraTreeModel::canTake(const CameraRecord& camera, const QModelIndex& instead) const
{
    const QString category = listText(camera.category);
    const QString key = listText(camera.key);
    const Node* const gone = nodeOf(instead);
    const Node* const ofCategory = m_byKey.value(category);
    const Node* const ofKey = m_byKey.value(key);
    const bool hasPlace = !ofCategory || ofCategory == gone || !ofCategory->category;
    // A category that is made for it has its name for a key.
    return hasPlace && key != category && (!ofKey || ofKey == gone);
}

CameraTreeModel::Node* CameraTreeModel::ensureCategory(const QString& name)
{
    // Most cameras stand beside others of their category.
    if (m_lastCategory && m_lastCategory->key == name)
        return m_lastCategory;
    Node* const found = m_byKey.value(name);
    if (!found)
        return m_lastCategory = insert(name, name, nullptr);
    // A camera may have the name for its key; then there can be no such category.
    return found->category ? nullptr : m_lastCategory = found;
}

/// Null where the key is there already.
CameraTreeModel::Node* CameraTreeModel::insert(const QString& text, const QString& key,
                                               Node* category)
{
    Node*& place = m_byKey[key];
    if (place)
        return nullptr;
    auto& row = siblings(category);
    const int at = static_cast<int>(row.size());
    if (!m_resetting)
        beginInsertRows(category ? indexOf(category) : QModelIndex(), at, at);
    auto made = std::make_unique<Node>(
        Node{key, category, m_texts.size(), static_cast<int>(text.size()), at, nullptr});
    if (!category)
        made->cameras = std::make_unique<std::vector<Node*>>();
    m_nodes.push_back(std::move(made));
    Node* const node = m_nodes.back().get();
    place = node;
    row.push_back(node);
    m_texts.append(text).append(FieldSeparator);
    ++m_revision;
    if (!m_resetting)
        endInsertRows();
    return node;
}

void CameraTreeModel::remove(const QModelIndex& index)
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
    ++m_revision;
    endRemoveRows();
}

/// Destroys the node, and what a category holds.
void CameraTreeModel::forget(const Node* node)
{
    const auto goes = [node](const auto& one) {
        return one.get() == node || one->category == node;
    };
    m_lastCategory = nullptr;
    if (node->cameras) {
        for (const Node* camera : *node->cameras)
            m_byKey.remove(camera->key);
    }
    m_byKey.remove(node->key);
    m_nodes.erase(std::remove_if(m_nodes.begin(), m_nodes.end(), goes), m_nodes.end());
    QString texts;
    for (const auto& left : m_nodes) {
        const QString text = textOf(*left);
        left->textAt = texts.size();
        texts.append(text).append(FieldSeparator);
    }
    m_texts = texts;
}

QString CameraTreeModel::textOf(const Node& node) const
{
    // Shared, because every camera names its category.
    return node.category ? m_texts.mid(node.textAt, node.textSize) : node.key;
}

bool CameraTreeModel::setKey(const QModelIndex& camera, const QString& key)
{
    Node* const node = nodeOf(camera);
    const QString newKey = listText(key);
    if (!node || !node->category || m_byKey.contains(newKey))
        return false;
    m_byKey.remove(node->key);
    m_byKey.insert(newKey, node);
    node->key = newKey;
    ++m_revision;
    emit dataChanged(camera, camera);
    return true;
}

QModelIndex CameraTreeModel::find(const QString& key) const
{
    const QString wanted = comparableKey(key);
    // Without its scheme it has the same end: of a long list nearly all need no other look.
    const QString end = isSecureAddress(wanted) ? wanted.mid(SecureScheme.size()) : wanted;
    for (const auto& node : m_nodes) {
        if (node->category && node->key.size() <= end.size() + SecureScheme.size() &&
            node->key.endsWith(end) && comparableKey(node->key) == wanted)
            return indexOf(node.get());
    }
    return {};
}

QModelIndex CameraTreeModel::camera(const QString& key) const
{
    const Node* const node = m_byKey.value(key);
    return node && node->category ? indexOf(node) : QModelIndex();
}

QModelIndex CameraTreeModel::category(const QString& name) const
{
    const Node* const node = m_byKey.value(name);
    return node && !node->category ? indexOf(node) : QModelIndex();
}

QList<CameraRecord> CameraTreeModel::cameras() const
{
    QList<CameraRecord> found;
    found.reserve(cameraCount());
    for (const auto& node : m_nodes) {
        if (node->category)
            found.append({node->category->key, textOf(*node), node->key});
    }
    return found;
}

qsizetype CameraTreeModel::cameraCount() const
{
    return static_cast<qsizetype>(m_nodes.size() - m_categories.size());
}

QStringList CameraTreeModel::categories() const
{
    QStringList names;
    for (const Node* category : m_categories)
        names.append(category->key);
    return names;
}

QModelIndex CameraTreeModel::firstMatch(const QString& name) const
{
    if (name.isEmpty())
        return {};
    const QStringView texts = m_texts;
    qsizetype start = 0;
    for (const auto& node : m_nodes) {
        // Kept: a category without cameras is found as a camera is.
        // The second look is for a capital "ÿ", which is the separator but for its case.
        if (beginsWith(texts.sliced(start), name) && (!node->cameras || node->cameras->empty()) &&
            beginsWith(textOf(*node), name))
            return indexOf(node.get());
        start = texts.indexOf(FieldSeparator, start) + 1;
    }
    return {};
}

CameraRecord CameraTreeModel::record(const QModelIndex& index) const
{
    const Node* const node = nodeOf(index);
    if (!node)
        return {};
    const QString text = textOf(*node);
    return {node->category ? node->category->key : text, text, node->key};
}

CameraTreeModel::Node* CameraTreeModel::nodeOf(const QModelIndex& index) const
{
    return static_cast<Node*>(index.internalPointer());
}

QModelIndex CameraTreeModel::indexOf(const Node* node) const
{
    return createIndex(node->row, 0, node);
}

std::vector<CameraTreeModel::Node*>& CameraTreeModel::siblings(Node* category)
{
    return category ? *category->cameras : m_categories;
}

QModelIndex CameraTreeModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    const auto& nodes = parent.isValid() ? *nodeOf(parent)->cameras : m_categories;
    return indexOf(nodes[static_cast<std::size_t>(row)]);
}

QModelIndex CameraTreeModel::parent(const QModelIndex& child) const
{
    const Node* const node = nodeOf(child);
    return node && node->category ? indexOf(node->category) : QModelIndex();
}

int CameraTreeModel::rowCount(const QModelIndex& parent) const
{
    const Node* const node = nodeOf(parent);
    if (node && !node->cameras)
        return 0;
    return static_cast<int>((node ? *node->cameras : m_categories).size());
}

int CameraTreeModel::columnCount(const QModelIndex& /*parent*/) const
{
    return 1;
}

QVariant CameraTreeModel::data(const QModelIndex& index, int role) const
{
    const Node* const node = nodeOf(index);
    if (!node)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return shownLine(textOf(*node));
    case Qt::DecorationRole:
        return node->category ? m_cameraPicture : m_categoryPicture;
    case Qt::ToolTipRole:
        return node->category ? cameraToolTip(textOf(*node), node->key) : shownToolTip(node->key);
    default:
        return {};
    }
}
