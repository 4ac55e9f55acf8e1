#include "camlist/CamList.h"

#include "camlist/CameraTreeModel.h"
#include "camlist/CameraTreeView.h"
#include "camlist/DefaultCameras.h"
#include "camlist/frmEdit.h"
#include "widgets/MessageQueue.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QMenu>
#include <QSet>

#include <optional>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A tree of so many cameras is shown open when the program starts: each is one click away.
constexpr int MostShownOpen = 50;

MessageQueue::Message alreadyListed()
{
    return {QMessageBox::Information, u"Pevora"_s, u"Cam is already in your list."_s};
}

} // namespace

CamList::CamList(const QString& folder, QWidget* parent)
    : QWidget(parent)
    , m_file(folder)
    , m_tree(new CameraTreeModel(this))
    , m_tvwCat(new CameraTreeView(this))
    , m_mnu(new QMenu(this))
    , m_tmrSave(u"tmrSave"_s, SaveMs, this)
    , m_messages(new MessageQueue(this))
{
    m_tvwCat->setModel(m_tree);
    setFocusProxy(m_tvwCat);
    createMenu();
    connect(m_tvwCat, &CameraTreeView::CameraChosen, this, [this](const QModelIndex& camera) {
        const auto [category, name, key] = m_tree->record(camera);
        emit Click(name, key);
    });
    connect(m_tvwCat, &CameraTreeView::MenuWanted, m_mnu,
            [this](const QPoint& at) { m_mnu->popup(at); });
    connect(m_tree, &QAbstractItemModel::rowsInserted, this, &CamList::changed);
    connect(m_tree, &QAbstractItemModel::rowsRemoved, this, &CamList::changed);
    connect(m_tree, &QAbstractItemModel::dataChanged, this, &CamList::changed);
    connect(m_tree, &QAbstractItemModel::modelReset, this, &CamList::changed);
    connect(&m_tmrSave, &Timer::Tick, this, &CamList::SaveFile);
}

CamList::~CamList() = default;

/// Kept: every entry but "Edit" acts on a category, too, whose address is its name.
void CamList::createMenu()
{
    m_mnu->setObjectName(u"mnu"_s);
    const auto add = [this](const QString& name, const QString& caption, auto&& command) {
        auto* entry = m_mnu->addAction(caption);
        entry->setObjectName(name);
        connect(entry, &QAction::triggered, this, [this, command] {
            const QModelIndex node = m_tvwCat->selected();
            if (node.isValid())
                command(m_tree->record(node));
        });
        return entry;
    };
    add(u"mnuFav"_s, u"Add to Favorites"_s,
        [this](const CameraRecord& node) { emit AddFavorite(node.name, node.key); });
    m_mnu->addSeparator();
    add(u"mnuSel"_s, u"Select"_s,
        [this](const CameraRecord& node) { emit Click(node.name, node.key); });
    add(u"mnuCopy"_s, u"Copy Url"_s, [](const CameraRecord& node) {
        QGuiApplication::clipboard()->clear();
        QGuiApplication::clipboard()->setText(node.key);
    });
    m_mnu->addSeparator();
    m_mnuEdit = add(u"mnuEdit"_s, u"Edit"_s, [this](const CameraRecord&) { editSelected(); });
    auto* remove = add(u"mnuRem"_s, u"Remove"_s, [this](const CameraRecord&) { Remove(); });
    // The key works while the tree has the keyboard. One that is held down removes one camera.
    remove->setShortcut(QKeySequence::Delete);
    remove->setShortcutContext(Qt::WidgetShortcut);
    remove->setAutoRepeat(false);
    m_tvwCat->addAction(remove);

    connect(m_tvwCat->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CamList::updateMenu);
    connect(m_tree, &QAbstractItemModel::modelReset, this, &CamList::updateMenu);
    updateMenu();
}

void CamList::updateMenu()
{
    const QModelIndex node = m_tvwCat->selected();
    for (QAction* entry : m_mnu->actions())
        entry->setEnabled(node.isValid());
    m_mnuEdit->setEnabled(CameraTreeModel::isCamera(node));
}

QString CamList::ReturnUrlViaName(const QString& name) const
{
    return m_tree->record(m_tree->firstMatch(name)).key;
}

QString CamList::Search(const QString& name) const
{
    return m_tree->record(m_tree->firstMatch(name)).name;
}

void CamList::Remove()
{
    const QModelIndex node = m_tvwCat->selected();
    if (!node.isValid())
        return;
    if (CameraTreeModel::isCamera(node))
        remove(node);
    else
        askToRemove(node);
}

void CamList::askToRemove(const QModelIndex& category)
{
    m_messages->ask(
        {QMessageBox::Question, u"Remove"_s, u"Remove Category and all its contents?"_s},
        // By its name: a save may merge in what another instance wrote, and all nodes are new.
        [this, name = m_tree->record(category).name] { remove(m_tree->category(name)); });
}

void CamList::remove(const QModelIndex& node)
{
    if (!node.isValid())
        return;
    const QString name = m_tree->record(node).name;
    m_before = m_tree->cameras();
    m_tree->remove(node);
    m_after = m_tree->revision();
    emit Removed(name);
}

void CamList::undo()
{
    // Else the second undo of what changed nothing would leave an empty list.
    if (m_before.isEmpty())
        return;
    const auto source = CameraTreeModel::sourceOf(std::exchange(m_before, {}));
    // In their old places where nothing else has changed since, else behind what there is.
    if (m_tree->revision() != m_after) {
        m_tree->addAll(source);
        return;
    }
    const QStringList open = m_tvwCat->openCategories();
    m_tree->replaceAll(source);
    showOpen(open);
}

/// After all nodes are new: a short list all open, of a long one the categories that were.
void CamList::showOpen(const QStringList& categories)
{
    if (m_tree->cameraCount() <= MostShownOpen)
        m_tvwCat->expandAll();
    else
        m_tvwCat->openCategories(categories);
}

bool CamList::has(const QString& key) const
{
    return m_tree->find(key).isValid();
}

QString CamList::nameOf(const QString& key) const
{
    return m_tree->record(m_tree->find(key)).name;
}

bool CamList::changeKey(const QString& key, const QString& newKey)
{
    return m_tree->setKey(m_tree->find(key), newKey);
}

void CamList::edit(const QString& key)
{
    const QModelIndex camera = m_tree->find(key);
    if (!camera.isValid())
        return;
    m_tvwCat->select(camera);
    editSelected();
}

void CamList::select(const QString& key)
{
    if (const QModelIndex camera = m_tree->find(key); camera.isValid())
        m_tvwCat->select(camera);
}

/// Not at once: while the program starts, its window comes first. The same below.
void CamList::tellNotValid()
{
    const auto tell = [this] {
        m_messages->tell({QMessageBox::Critical, u"Pevora"_s, u"Not a valid Zipped Cam List."_s});
    };
    QMetaObject::invokeMethod(m_messages, tell, Qt::QueuedConnection);
}

/// Once for each of `cameras` of one list that were refused; the check box ends those of the list.
void CamList::tellAlreadyListed(qsizetype cameras)
{
    const auto tell = [this, cameras] {
        MessageQueue::Message message = alreadyListed();
        message.skipRest = tr("Don't show again for this list");
        m_messages->tell(message, cameras);
    };
    QMetaObject::invokeMethod(m_messages, tell, Qt::QueuedConnection);
}

void CamList::followCamera(const QString& key)
{
    if (std::exchange(m_followed, key) != key)
        select(key);
}

void CamList::endMessages()
{
    m_messages->end();
}

QStringList CamList::categories() const
{
    return m_tree->categories();
}

void CamList::FillParent(QComboBox* combo) const
{
    combo->addItems(categories());
}

bool CamList::AddCam(const QString& name, const QString& key, const QString& category)
{
    const bool added = add({category, name, key});
    if (added)
        emit Added(1, 0, key);
    return added;
}

bool CamList::add(const CameraRecord& camera)
{
    const QModelIndex added = m_tree->add(camera);
    if (added.isValid())
        m_tvwCat->select(added);
    else
        tellAlreadyListed(1);
    return added.isValid();
}

void CamList::editSelected()
{
    m_edited = m_tvwCat->selected();
    auto* editor = new frmEdit(categories(), window());
    connect(editor, &frmEdit::Updated, this, [this, editor](const CameraRecord& updated) {
        if (!m_tree->canTake(updated, m_edited)) {
            editor->refuse(alreadyListed());
            return;
        }
        // Kept: it moves to the end of its category, whatever was edited.
        m_tree->remove(m_edited);
        add(updated);
        editor->accept();
    });
    editor->edit(m_tree->record(m_edited));
}

void CamList::resizeEvent(QResizeEvent* /*event*/)
{
    m_tvwCat->setGeometry(rect());
}
