#include "shell/ViewPreferences.h"

#include "settings/Ini.h"
#include "settings/TruthValue.h"
#include "shell/MainMenu.h"
#include "viewer/WebCam.h"

#include <QAction>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString Section = u"VIEW"_s;
const QString KeepKey = u"KEEP"_s;

/// In the order in which they are written.
constexpr struct
{
    const char* key;
    const char* entry;
} Checks[] = {{"LIST", "mnuViewList"}, {"TB", "mnuViewTb"},     {"GOTO", "mnuViewGoto"},
              {"NEW", "mnuViewNew"},   {"TRAY", "mnuViewTray"}, {"OSIZE", "mnuViewOSize"},
              {"ONTOP", "mnuOptOnTop"}};

} // namespace

ViewPreferences::ViewPreferences(MainMenu& menu, WebCam& viewer, Targets targets)
    : m_menu(menu)
    , m_viewer(viewer)
    , m_targets(std::move(targets))
{
}

void ViewPreferences::load(const QString& path) const
{
    const auto read = [&](const QString& key) {
        return readTruthValue(GetFromINI(Section, key, path));
    };
    const auto check = [&](const QString& key, const QString& entry) {
        const auto value = read(key);
        if (value)
            m_menu.entry(entry)->setChecked(*value);
        return value;
    };

    if (const auto value = check(u"LIST"_s, u"mnuViewList"_s))
        m_targets.showList(*value);
    if (const auto value = check(u"TB"_s, u"mnuViewTb"_s))
        m_viewer.setShowToolBar(*value);
    if (const auto value = check(u"GOTO"_s, u"mnuViewGoto"_s))
        m_targets.showGotoBar(*value);
    if (const auto value = check(u"NEW"_s, u"mnuViewNew"_s))
        m_viewer.setNewOnly(*value);
    if (check(u"TRAY"_s, u"mnuViewTray"_s).value_or(true))
        m_targets.addTrayIcon();
    if (const auto value = check(u"ONTOP"_s, u"mnuOptOnTop"_s))
        m_targets.setTopmost(*value);
    if (const auto value = read(u"OSIZE"_s)) {
        // The opposite first: the entry's own click handler then flips the check and applies it.
        m_menu.entry(u"mnuViewOSize"_s)->setChecked(!*value);
        m_menu.entry(u"mnuViewOSize"_s)->trigger();
    }
    if (const auto value = read(KeepKey))
        m_viewer.setKeepRefreshing(*value);
}

void ViewPreferences::save(const QString& path) const
{
    for (const auto& [key, entry] : Checks) {
        const bool checked = m_menu.entry(QString::fromLatin1(entry))->isChecked();
        WriteToINI(Section, QString::fromLatin1(key), truthValueText(checked), path);
    }
    if (m_viewer.KeepRefreshing())
        WriteToINI(Section, KeepKey, truthValueText(true), path);
    else
        RemoveFromINI(Section, KeepKey, path);
}
