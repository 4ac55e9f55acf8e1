#include "shell/LastSave.h"

#include "camlist/CamList.h"
#include "camlist/Favourites.h"
#include "settings/Ini.h"
#include "settings/IniCache.h"
#include "shared/AppFolder.h"
#include "shared/ReadFile.h"
#include "shared/ReplaceFile.h"
#include "shell/ViewPreferences.h"
#include "shell/WindowPreferences.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto Preferences = "pref.ini"_L1;
constexpr auto CameraListName = "list.dat"_L1;

/// `name` in `folder`, or with a number behind it the first that nothing has yet. Both halves of a
/// name stay as they are: lists are imported by it.
QString freePath(const QString& folder, QLatin1StringView name)
{
    QString path = pathInFolder(folder, name);
    for (int i = 1; QFileInfo(path).isSymLink() || QFileInfo::exists(path); ++i)
        path = pathInFolder(folder, u"Pevora %1 %2"_s.arg(i).arg(name));
    return path;
}

QString lineOf(const QString& path, const QString& reason)
{
    return QDir::toNativeSeparators(path) + ": "_L1 + reason;
}

} // namespace

LastSave::LastSave(const QString& folder, const Parts& parts, QWidget& window)
    : QObject(&window)
    , m_folder(folder)
    , m_parts(parts)
    , m_window(window)
{
}

void LastSave::savePreferences()
{
    const QString path = pathInFolder(m_folder, Preferences);
    m_parts.view.save(path);
    m_preferences = m_parts.favourites.save(path);
    m_parts.window.save(path);
    QString reason;
    if (!FlushINI(&reason) && m_preferences)
        m_preferences = {false, reason};
}

void LastSave::saveList(List list)
{
    m_kind = list;
    m_list = list == List::Saved ? m_parts.list.SaveFile() : m_parts.list.dropChanges();
}

QStringList LastSave::unsaved() const
{
    QStringList lines;
    if (!m_preferences)
        lines << lineOf(pathInFolder(m_folder, Preferences), m_preferences.reason);
    if (!m_list)
        lines << lineOf(pathInFolder(m_folder, CameraListName), m_list.reason);
    return lines;
}

void LastSave::ask()
{
    auto* box =
        new QMessageBox(QMessageBox::Warning, u"Pevora"_s,
                        tr("Not everything could be saved:") + u"\n\n"_s + unsaved().join(u'\n'),
                        QMessageBox::NoButton, &m_window);
    box->setObjectName(u"boxNotSaved"_s);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    auto* again = box->addButton(tr("Try Again"), QMessageBox::AcceptRole);
    auto* elsewhere = box->addButton(tr("Save Elsewhere..."), QMessageBox::ActionRole);
    auto* quit = box->addButton(tr("Quit Anyway"), QMessageBox::DestructiveRole);
    // What was to be taken back is nothing that could be kept.
    elsewhere->setEnabled(!m_preferences || m_kind == List::Saved);
    box->setDefaultButton(again);
    box->setEscapeButton(again);
    connect(box, &QMessageBox::finished, this, [this, box, elsewhere, quit] {
        m_message = nullptr;
        if (box->clickedButton() == quit)
            emit Ended();
        else if (box->clickedButton() == elsewhere)
            askForFolder();
        else
            tryAgain();
    });
    m_message = box;
    box->open();
}

void LastSave::tryAgain()
{
    if (!m_preferences)
        savePreferences();
    if (!m_list)
        saveList(m_kind);
    if (isDone())
        emit Ended();
    else
        ask();
}

void LastSave::askForFolder()
{
    auto* dialog = new QFileDialog(&m_window, tr("Save Elsewhere"), QDir::homePath());
    dialog->setObjectName(u"cdElsewhere"_s);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::finished, this, [this, dialog](int result) {
        const QStringList folders = dialog->selectedFiles();
        if (result == QDialog::Accepted && !folders.isEmpty())
            saveElsewhere(folders.first());
        else
            ask();
    });
    dialog->open();
}

void LastSave::saveElsewhere(const QString& folder)
{
    if (const SaveOutcome copied = copyInto(folder); !copied) {
        // Of the folder that was chosen last, which is what can be changed now.
        (m_list ? m_preferences : m_list).reason = lineOf(folder, copied.reason);
        ask();
        return;
    }
    m_preferences = m_list = {};
    emit Ended();
}

SaveOutcome LastSave::copyPreferences(const QString& path)
{
    // What else was in the file, such as the directory's address.
    if (const auto old = readFile(pathInFolder(m_folder, Preferences), IniCache::MaxBytes))
        replaceFile(path, *old);
    m_parts.view.save(path);
    const SaveOutcome favourites = m_parts.favourites.save(path);
    m_parts.window.save(path);
    QString reason;
    if (!FlushINI(&reason))
        return {false, reason};
    return favourites;
}

/// Gives in `copies` where what is.
SaveOutcome LastSave::copyInto(const QString& folder, QStringList* copies)
{
    const auto keep = [copies](const QString& path) {
        if (copies)
            *copies << path;
    };
    if (!m_list && m_kind == List::Saved) {
        const QString path = freePath(folder, CameraListName);
        if (const SaveOutcome list = m_parts.list.saveCopy(path); !list)
            return list;
        keep(path);
    }
    if (!m_preferences) {
        const QString path = freePath(folder, Preferences);
        if (const SaveOutcome preferences = copyPreferences(path); !preferences)
            return preferences;
        keep(path);
    }
    return {};
}

void LastSave::rescue()
{
    if (m_message) {
        m_message->disconnect(this);
        m_message->close();
    }
    const QStringList lines = unsaved();
    const QString folder = userDataFolder();
    QDir().mkpath(folder);
    QStringList copies;
    copyInto(folder, &copies);
    for (const QString& line : lines)
        qWarning("Not saved: %s", qUtf8Printable(line));
    for (const QString& copy : std::as_const(copies))
        qWarning("A copy is in %s", qUtf8Printable(QDir::toNativeSeparators(copy)));
}
