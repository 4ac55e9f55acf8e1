#include "shell/parts/MainMenu.h"

#include "widgets/MenuText.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QMetaEnum>
#include <QSet>

using namespace Qt::Literals::StringLiterals;

namespace {

enum class Check { None, Off, On };

struct EntryRow
{
    /// EntryCount for a separator.
    MainMenu::Entry entry;
    const char* caption;
    const char* shortcut = "";
    Check check = Check::None;
};

struct Menu
{
    MainMenu::Entry entry;
    const char* caption;
    QList<EntryRow> rows;
};

const QList<Menu>& menus()
{
    using enum MainMenu::Entry;
    static const EntryRow separator{EntryCount, ""};
    static const QList<Menu> table = {
        {mnuOpt,
         "Options",
         {{mnuOptInt, "Internet List"},
          separator,
          {mnuOptImport, "Import List"},
          {mnuOptReload, "Reload List"},
          {mnuOptExport, "Export List"},
          separator,
          {mnuOptExit, "Exit", "Ctrl+Q"},
          {mnuOptExitWO, "Exit Without Saving"},
          separator,
          {mnuOptOnTop, "Always on Top", "", Check::Off},
          {mnuViewTray, "System Tray Icon", "", Check::On}}},
        {mnuFav, "Favorites", {{mnuFavMan, "Manage Favorites"}, separator}},
        {mnuView,
         "View",
         {{mnuViewList, "List", "Ctrl+L", Check::On},
          {mnuViewTb, "Toolbar", "Ctrl+T", Check::On},
          {mnuViewGoto, "Goto Bar", "Ctrl+G", Check::On},
          separator,
          {mnuViewNew, "New Images Only", "Ctrl+I", Check::On},
          {mnuViewOSize, "Original Size", "Ctrl+O", Check::Off},
          {mnuViewProp, "Keep Proportions", "", Check::Off},
          {mnuViewFull, "Full Screen", "F11"}}},
        {mnuHelp, "Help", {{mnuHelpAb, "About"}, separator, {mnuHelpH, "Online Help", "F1"}}},
    };
    return table;
}

QString nameOf(MainMenu::Entry entry)
{
    return QString::fromLatin1(QMetaEnum::fromType<MainMenu::Entry>().valueToKey(entry));
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
    , m_bar(bar)
{
    for (const Menu& menu : menus()) {
        auto* one = bar->addMenu(QString::fromLatin1(menu.caption));
        one->setObjectName(nameOf(menu.entry));
        m_entries[menu.entry] = one->menuAction();
        for (const EntryRow& row : menu.rows) {
            if (row.entry == EntryCount) {
                one->addSeparator();
                continue;
            }
            auto* action = one->addAction(QString::fromLatin1(row.caption));
            action->setObjectName(nameOf(row.entry));
            action->setShortcut(QKeySequence(QString::fromLatin1(row.shortcut)));
            action->setCheckable(row.check != Check::None);
            action->setChecked(row.check == Check::On);
            m_entries[row.entry] = action;
        }
    }
    assignAccessKeys();
}

QMenu* MainMenu::favourites() const
{
    return entry(mnuFav)->menu();
}

void MainMenu::assignAccessKeys()
{
    QSet<QChar> taken;
    for (const QAction* title : m_bar->actions()) {
        QMenu* const menu = title->menu();
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
