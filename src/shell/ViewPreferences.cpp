#include "shell/ViewPreferences.h"

#include "settings/Ini.h"
#include "settings/TruthValue.h"
#include "viewer/WebCam.h"

#include <QAction>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString Section = u"VIEW"_s;
const QString KeepKey = u"KEEP"_s;

struct Row
{
    const char* key;
    MainMenu::Entry entry;
    /// What a text that is no truth value stands for; the check stays as it is.
    std::optional<bool> unreadable = {};
};

constexpr Row List{"LIST", MainMenu::mnuViewList};
constexpr Row ToolBar{"TB", MainMenu::mnuViewTb};
constexpr Row GotoBar{"GOTO", MainMenu::mnuViewGoto};
constexpr Row NewOnly{"NEW", MainMenu::mnuViewNew};
constexpr Row Tray{"TRAY", MainMenu::mnuViewTray, true};
constexpr Row OnTop{"ONTOP", MainMenu::mnuOptOnTop};
constexpr Row OriginalSize{"OSIZE", MainMenu::mnuViewOSize};

constexpr Row AsRead[] = {List, ToolBar, GotoBar, NewOnly, Tray, OnTop, OriginalSize};
constexpr Row AsWritten[] = {List, ToolBar, GotoBar, NewOnly, Tray, OriginalSize, OnTop};

} // namespace

ViewPreferences::ViewPreferences(MainMenu& menu, WebCam& viewer, QObject* parent)
    : QObject(parent)
    , m_menu(menu)
    , m_viewer(viewer)
{
}

void ViewPreferences::load(const QString& path)
{
    const auto read = [&path](const QString& key) {
        return readTruthValue(GetFromINI(Section, key, path));
    };
    for (const auto& [key, entry, unreadable] : AsRead) {
        const auto value = read(QString::fromLatin1(key));
        if (value)
            m_menu.entry(entry)->setChecked(*value);
        if (const auto on = value ? value : unreadable)
            emit Read(entry, *on);
    }
    if (const auto value = read(KeepKey))
        m_viewer.setKeepRefreshing(*value);
}

void ViewPreferences::save(const QString& path) const
{
    for (const Row& row : AsWritten) {
        const bool checked = m_menu.entry(row.entry)->isChecked();
        WriteToINI(Section, QString::fromLatin1(row.key), truthValueText(checked), path);
    }
    if (m_viewer.KeepRefreshing())
        WriteToINI(Section, KeepKey, truthValueText(true), path);
    else
        RemoveFromINI(Section, KeepKey, path);
}
