// The files of the camera list: what is loaded, saved, imported and exported.

#include "camlist/CamList.h"

#include "cameras/CameraKey.h"
#include "camlist/CameraTreeModel.h"
#include "camlist/CameraTreeView.h"
#include "camlist/DefaultCameras.h"
#include "shared/ReplaceFile.h"
#include "widgets/MessageQueue.h"

#include <QSet>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The cameras of a list that was read; those of a new list where it is empty. `line` has to live
/// as long as the result.
CameraTreeModel::Source camerasOf(const QByteArray& line)
{
    if (!line.isEmpty())
        return [reader = CameraListReader(line)]() mutable { return reader.next(); };
    return CameraTreeModel::sourceOf(defaultCameras());
}

} // namespace

void CamList::LoadFile(const QString& path)
{
    if (path.isEmpty())
        reload();
    else
        import(path);
}

void CamList::Reload()
{
    if (!reloadingLosesChanges()) {
        reload();
        return;
    }
    m_messages->ask({QMessageBox::Question, u"Reload List"_s,
                     tr("The list has changes that are not saved. Load list.dat again and lose "
                        "them?")},
                    [this] { reload(); });
}

/// Categories without a camera are not counted: no file keeps them.
bool CamList::reloadingLosesChanges() const
{
    if (m_tree->revision() == m_saved)
        return false;
    const QList<CameraRecord> cameras = m_tree->cameras();
    const auto isSame = [&cameras](const QByteArray& line) {
        CameraTreeModel loaded;
        loaded.replaceAll(camerasOf(line));
        return loaded.cameras() == cameras;
    };
    if (isSame(m_file.base()))
        return false;
    const auto line = m_file.peek();
    return !line || !isSame(*line);
}

void CamList::reload()
{
    const auto line = m_file.read();
    const bool isList = line && isTrustedLine(*line);
    if (line && !isList)
        m_file.distrust();
    m_before = m_tree->cameras();
    const QStringList open = m_tvwCat->openCategories();
    // A list that cannot be read is not an empty one: nothing takes its place.
    const auto none = [] { return std::optional<CameraRecord>(); };
    const auto expected = line ? line->count(FieldSeparator.toLatin1()) / 3 + 1 : 0;
    tellAlreadyListed(m_tree->replaceAll(isList ? camerasOf(*line) : none, expected));
    // Whatever it is, it is not the list of somebody who removed the last camera.
    if (isList && m_tree->cameraCount() == 0)
        m_file.distrust();
    else if (isList && line->isEmpty())
        m_file.standsFor(writeCameraListLine(m_tree->cameras()));
    tellTrouble();
    showOpen(open);
    m_saved = m_after = m_tree->revision();
    m_tmrSave.setEnabled(false);
    emit Reloaded(m_tree->cameraCount());
}

/// Once, as long as it is the same. Not at once, as below.
void CamList::tellTrouble()
{
    using Trouble = CameraListFile::Trouble;
    struct Row
    {
        Trouble trouble;
        const char* text;
    };
    static constexpr Row rows[] = {
        {Trouble::NoFile, QT_TR_NOOP("%1 is not an ordinary file, so the list stays empty.")},
        {Trouble::TooLong, QT_TR_NOOP("%1 is larger than 64 MiB, so the list stays empty.")},
        {Trouble::TooMany, QT_TR_NOOP("%1 has over 1,500,000 cameras, so the list stays empty.")},
        {Trouble::Unreadable, QT_TR_NOOP("%1 cannot be read, so the list stays empty.")},
        {Trouble::NoList, QT_TR_NOOP("%1 is no list of cameras, so the list stays empty.")},
        {Trouble::Unwritable, QT_TR_NOOP("%1 cannot be changed: what you change in the list "
                                         "cannot be saved.")},
    };
    if (std::exchange(m_told, m_file.trouble()) == m_file.trouble())
        return;
    for (const Row& row : rows) {
        if (row.trouble != m_told)
            continue;
        QString text = tr(row.text).arg(m_file.path());
        if (m_told != Trouble::Unwritable)
            text += u"\n\n"_s + tr("The file is kept as it is. When you change the list, it gets "
                                   "the name list.dat.bak.");
        const auto tell = [this, text] {
            m_messages->tell({QMessageBox::Warning, u"Pevora"_s, text});
        };
        QMetaObject::invokeMethod(m_messages, tell, Qt::QueuedConnection);
    }
}

void CamList::import(const QString& path)
{
    const auto line = readImportedList(path);
    if (!line) {
        // Kept: one that cannot be read is told of as one that is no list.
        tellNotValid();
        return;
    }
    const qsizetype before = m_tree->cameraCount();
    // Kept: "CAMZ" alone brings the cameras of a new list.
    const qsizetype refused = m_tree->addAll(camerasOf(*line));
    tellAlreadyListed(refused);
    const QList<CameraRecord> cameras = m_tree->cameras();
    QSet<QString> gaining;
    for (const CameraRecord& camera : cameras.sliced(before))
        gaining.insert(camera.category);
    for (const QString& category : std::as_const(gaining))
        m_tvwCat->expand(m_tree->category(category));
    emit Added(cameras.size() - before, refused, cameras.value(before).key);
}

void CamList::ExportFile(const QString& path)
{
    const QList<CameraRecord> cameras = m_tree->cameras();
    // "CAMZ" alone would bring the cameras of a new list to whoever imports it.
    const QString reason =
        cameras.isEmpty() ? tr("the list has no cameras") : writeExportedList(path, cameras);
    emit Exported(path, reason);
}

/// However many changes follow, the first one waits no longer than that.
void CamList::changed()
{
    m_tmrSave.setEnabled(true);
}

SaveOutcome CamList::SaveFile()
{
    m_tmrSave.setEnabled(false);
    const quint64 revision = m_tree->revision();
    if (revision == m_saved && !m_file.isNew())
        return {};
    const QByteArray line = writeCameraListLine(m_tree->cameras());
    if (line == m_file.base() && !m_file.isNew()) {
        m_saved = revision;
        return {};
    }
    const CameraListFile::Saved saved = m_file.saveMerged(line);
    if (saved)
        m_saved = revision;
    if (saved.merged)
        showMerged(*saved.merged);
    if (!saved.keptAs.isEmpty())
        emit KeptBeside(saved.keptAs);
    return saved;
}

SaveOutcome CamList::saveCopy(const QString& path) const
{
    SaveOutcome outcome;
    outcome.isDone =
        replaceFile(path, writeCameraListLine(m_tree->cameras()) + "\r\n", &outcome.reason);
    return outcome;
}

SaveOutcome CamList::dropChanges()
{
    m_tmrSave.setEnabled(false);
    return m_file.restore();
}

/// The tree becomes what is in list.dat; what was selected and open is so again.
void CamList::showMerged(const QByteArray& line)
{
    const QModelIndex node = m_tvwCat->selected();
    const bool isCamera = CameraTreeModel::isCamera(node);
    const QString key = m_tree->record(node).key;
    const QString editedKey = m_tree->record(m_edited).key;
    const QStringList open = m_tvwCat->openCategories();
    m_tree->replaceAll(CameraTreeModel::sourceOf(readCameraListLine(line)));
    m_tvwCat->openCategories(open);
    if (const QModelIndex again = isCamera ? m_tree->camera(key) : m_tree->category(key);
        again.isValid())
        m_tvwCat->select(again);
    m_edited = m_tree->camera(editedKey);
    m_saved = m_tree->revision();
    m_tmrSave.setEnabled(false);
}
