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
/// What is not of old: kept only where it differs from how it is at first.
const QString WindowSection = u"WINDOW"_s;
const QString ProportionsKey = u"PROPORTIONS"_s;

struct CheckRow
{
    const char* key;
    MainMenu::Entry entry;
    /// What a text that is no truth value stands for; the check stays as it is.
    std::optional<bool> unreadable = {};
};

constexpr CheckRow ListCheck{"LIST", MainMenu::mnuViewList};
constexpr CheckRow ToolBarCheck{"TB", MainMenu::mnuViewTb};
constexpr CheckRow GotoBarCheck{"GOTO", MainMenu::mnuViewGoto};
constexpr CheckRow NewOnlyCheck{"NEW", MainMenu::mnuViewNew};
constexpr CheckRow TrayCheck{"TRAY", MainMenu::mnuViewTray, true};
constexpr CheckRow OnTopCheck{"ONTOP", MainMenu::mnuOptOnTop};
constexpr CheckRow OriginalSizeCheck{"OSIZE", MainMenu::mnuViewOSize};

constexpr CheckRow AsRead[] = {ListCheck, ToolBarCheck, GotoBarCheck,     NewOnlyCheck,
                               TrayCheck, OnTopCheck,   OriginalSizeCheck};
constexpr CheckRow AsWritten[] = {ListCheck, ToolBarCheck,      GotoBarCheck, NewOnlyCheck,
                                  TrayCheck, OriginalSizeCheck, OnTopCheck};

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
    if (const auto on = readTruthValue(GetFromINI(WindowSection, ProportionsKey, path))) {
        m_menu.entry(MainMenu::mnuViewProp)->setChecked(*on);
        emit Read(MainMenu::mnuViewProp, *on);
    }
}

void ViewPreferences::save(const QString& path) const
{
    for (const CheckRow& row : AsWritten) {
        const bool checked = m_menu.entry(row.entry)->isChecked();
        WriteToINI(Section, QString::fromLatin1(row.key), truthValueText(checked), path);
    }
    const auto writeWhileOn = [&path](const QString& section, const QString& key, bool on) {
        if (on)
            WriteToINI(section, key, truthValueText(true), path);
        else
            RemoveFromINI(section, key, path);
    };
    writeWhileOn(Section, KeepKey, m_viewer.KeepRefreshing());
    writeWhileOn(WindowSection, ProportionsKey, m_menu.entry(MainMenu::mnuViewProp)->isChecked());
}
