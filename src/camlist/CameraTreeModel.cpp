#include "camlist/CameraTreeModel.h"

#include "cameras/CameraKey.h"
#include "cameras/CameraTexts.h"
#include "camlist/CameraListFile.h"
#include "shared/DiskText.h"
#include "shared/InputText.h"
#include "widgets/SymbolIcon.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

struct CameraTreeModel::Node
{
    QString text;
    QString key;
    Node* category; ///< null for a category
    int row;        ///< among its siblings
    std::vector<Node*> cameras;
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

qsizetype CameraTreeModel::replaceAll(const Source& source)
{
    beginResetModel();
    m_resetting = true;
    ++m_revision;
    m_byKey.clear();
    m_categories.clear();
    m_nodes.clear();
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
    Node* const found = m_byKey.value(name);
    if (!found)
        return insert(name, name, nullptr);
    // A camera may have the name for its key; then there can be no such category.
    return found->category ? nullptr : found;
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
    m_nodes.push_back(std::make_unique<Node>(Node{text, key, category, at, {}}));
    Node* const node = m_nodes.back().get();
    place = node;
    row.push_back(node);
    appendText(*node);
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
    for (const Node* camera : node->cameras)
        m_byKey.remove(camera->key);
    m_byKey.remove(node->key);
    m_nodes.erase(std::remove_if(m_nodes.begin(), m_nodes.end(), goes), m_nodes.end());
    m_texts.clear();
    for (const auto& left : m_nodes)
        appendText(*left);
}

void CameraTreeModel::appendText(const Node& node)
{
    m_texts.append(node.text).append(FieldSeparator);
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
    for (const auto& node : m_nodes) {
        if (node->category && comparableKey(node->key) == wanted)
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
            found.append({node->category->text, node->text, node->key});
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
        names.append(category->text);
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
        if (beginsWith(texts.sliced(start), name) && node->cameras.empty() &&
            beginsWith(node->text, name))
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
    return {node->category ? node->category->text : node->text, node->text, node->key};
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
    return category ? category->cameras : m_categories;
}

QModelIndex CameraTreeModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    const auto& nodes = parent.isValid() ? nodeOf(parent)->cameras : m_categories;
    return indexOf(nodes[static_cast<std::size_t>(row)]);
}

QModelIndex CameraTreeModel::parent(const QModelIndex& child) const
{
    const Node* const node = nodeOf(child);
    return node && node->category ? indexOf(node->category) : QModelIndex();
}

int CameraTreeModel::rowCount(const QModelIndex& parent) const
{
    const auto& nodes = parent.isValid() ? nodeOf(parent)->cameras : m_categories;
    return static_cast<int>(nodes.size());
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
        return shownLine(node->text);
    case Qt::DecorationRole:
        return node->category ? m_cameraPicture : m_categoryPicture;
    case Qt::ToolTipRole:
        return node->category ? cameraToolTip(node->text, node->key) : shownToolTip(node->text);
    default:
        return {};
    }
}
