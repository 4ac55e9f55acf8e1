#include "shell/MainMenu.h"

#include "widgets/MenuText.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QSet>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

enum class Check { None, Off, On };

struct Row
{
    /// Empty for a separator.
    const char* name;
    const char* caption;
    const char* shortcut = "";
    Check check = Check::None;
};

struct Menu
{
    const char* name;
    const char* caption;
    QList<Row> rows;
};

const QList<Menu>& menus()
{
    static const Row separator{"", ""};
    static const QList<Menu> table = {
        {"mnuOpt",
         "Options",
         {{"mnuOptInt", "Internet List"},
          separator,
          {"mnuOptImport", "Import List"},
          {"mnuOptReload", "Reload List"},
          separator,
          {"mnuOptExit", "Exit"},
          {"mnuOptExitWO", "Exit Without Saving"},
          separator,
          {"mnuOptOnTop", "Always on Top", "", Check::Off},
          {"mnuViewTray", "System Tray Icon", "", Check::On}}},
        {"mnuFav", "Favorites", {{"mnuFavMan", "Manage Favorites"}, separator}},
        {"mnuView",
         "View",
         {{"mnuViewList", "List", "Ctrl+L", Check::On},
          {"mnuViewTb", "Toolbar", "Ctrl+T", Check::On},
          {"mnuViewGoto", "Goto Bar", "Ctrl+G", Check::On},
          separator,
          {"mnuViewNew", "New Images Only", "Ctrl+I", Check::On},
          {"mnuViewOSize", "Original Size", "Ctrl+O", Check::Off}}},
        {"mnuHelp", "Help", {{"mnuHelpAb", "About"}, separator, {"mnuHelpH", "Online Help"}}},
    };
    return table;
}

QString plainCaption(QString title)
{
    // "&&" is a shown ampersand, a lone one marks an access key.
    title.replace("&&"_L1, QString(QChar::Null)).remove(u'&');
    return title.replace(QChar::Null, u'&');
}

} // namespace

MainMenu::MainMenu(QMenuBar* bar)
    : QObject(bar)
{
    for (const Menu& menu : menus()) {
        auto* one = bar->addMenu(QString::fromLatin1(menu.caption));
        one->setObjectName(QString::fromLatin1(menu.name));
        m_menus.append(one);
        for (const Row& row : menu.rows) {
            if (!*row.name) {
                one->addSeparator();
                continue;
            }
            auto* action = one->addAction(QString::fromLatin1(row.caption));
            action->setObjectName(QString::fromLatin1(row.name));
            action->setShortcut(QKeySequence(QString::fromLatin1(row.shortcut)));
            action->setCheckable(row.check != Check::None);
            action->setChecked(row.check == Check::On);
            m_entries.insert(action->objectName(), action);
        }
    }
    assignAccessKeys();
}

QAction* MainMenu::entry(const QString& name) const
{
    return m_entries.value(name);
}

QMenu* MainMenu::favourites() const
{
    const auto isFavourites = [](const QMenu* menu) { return menu->objectName() == "mnuFav"_L1; };
    return *std::find_if(m_menus.begin(), m_menus.end(), isFavourites);
}

void MainMenu::assignAccessKeys()
{
    QSet<QChar> taken;
    for (auto* menu : std::as_const(m_menus)) {
        const QString caption = plainCaption(menu->title());
        qsizetype key = -1;
        for (qsizetype i = 0; i < caption.size() && key < 0; ++i) {
            if (caption[i].isLetterOrNumber() && !taken.contains(caption[i].toCaseFolded()))
                key = i;
        }
        if (key < 0) {
            menu->setTitle(menuText(caption));
            continue;
        }
        taken.insert(caption[key].toCaseFolded());
        menu->setTitle(menuText(caption.left(key)) + u'&' + menuText(caption.mid(key)));
    }
}
