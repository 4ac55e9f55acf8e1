#include "settings/LanguageCaptions.h"

#include "settings/Ini.h"
#include "widgets/MenuText.h"

#include <QAbstractButton>
#include <QAction>
#include <QHash>
#include <QLabel>
#include <QMenu>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr CaptionRow Table[] = {
    {u"OPTION", u"Options", u"mnuOpt"},
    {u"INTLIST", u"Internet List", u"mnuOptInt"},
    {u"IMPLIST", u"Import List", u"mnuOptImport"},
    {u"RELIST", u"Reload List", u"mnuOptReload"},
    {u"EXIT", u"Exit", u"mnuOptExit"},
    {u"EXITNOSAVE", u"Exit Without Saving", u"mnuOptExitWO"},
    {u"ONTOP", u"Always On Top", u"mnuOptOnTop"},
    {u"VIEW", u"View", u"mnuView"},
    {u"LIST", u"List", u"mnuViewList"},
    {u"VTB", u"ToolBar", u"mnuViewTb"},
    {u"VNEW", u"New Images Only", u"mnuViewNew"},
    {u"VGOTO", u"Goto Bar", u"mnuViewGoto"},
    {u"FAV", u"Favorites", u"mnuFav"},
    {u"MANFAV", u"Manage Favorites", u"mnuFavMan"},
    {u"HELP", u"Help", u"mnuHelp"},
    {u"ABOUT", u"About", u"mnuHelpAb"},
    {u"OHELP", u"Online Help", u"mnuHelpH"},
    {u"LIST", u"List", u"opt(1)"},
    {u"BADD", u"Add", u"opt(0)"},
    {u"BADDIT", u"Add It", u"cmdAdd"},
    {u"CATEGORY", u"Category", u"lbl(0)"},
    {u"NAME", u"Name", u"lbl(2)"},
    {u"EXTRA", u"Extra Header (ie: Cookie)", u"lbl(3)"},
    {u"ADDINT", u"Add to internet database.", u"chkAdd"},
    {u"EMPTYVIEW", u"Choose a camera on the left, or type an address below.", u"picMain"},
    {u"EXPLIST", u"Export List", u"mnuOptExport"},
};

/// All objects below `root` by name, the nearest of each name.
QHash<QString, QObject*> namedObjects(const QObject& root)
{
    QHash<QString, QObject*> byName;
    QObjectList level = root.children();
    while (!level.isEmpty()) {
        QObjectList next;
        for (QObject* object : std::as_const(level)) {
            const auto* widget = qobject_cast<QWidget*>(object);
            if (widget && widget->isWindow() && !qobject_cast<QMenu*>(object))
                continue;
            if (!object->objectName().isEmpty() && !byName.contains(object->objectName()))
                byName.insert(object->objectName(), object);
            next += object->children();
        }
        level = next;
    }
    return byName;
}

void setCaption(QObject* control, const QString& caption)
{
    const QString escaped = menuText(caption);

    if (auto* menu = qobject_cast<QMenu*>(control)) {
        menu->setTitle(escaped);
    } else if (auto* action = qobject_cast<QAction*>(control)) {
        action->setText(escaped);
    } else if (auto* button = qobject_cast<QAbstractButton*>(control)) {
        button->setText(escaped);
    } else if (auto* label = qobject_cast<QLabel*>(control)) {
        label->setTextFormat(Qt::PlainText);
        label->setText(label->buddy() ? escaped : caption);
    } else if (control && control->metaObject()->indexOfProperty("Caption") >= 0) {
        control->setProperty("Caption", caption);
    }
}

} // namespace

std::span<const CaptionRow> captionTable()
{
    return Table;
}

void ApplyLanguageCaptions(QObject& root, const QString& path)
{
    const QHash<QString, QObject*> controls = namedObjects(root);
    for (const CaptionRow& row : Table) {
        const QString value = GetFromINI(u"MAIN"_s, row.key.toString(), path);
        const QString caption = value.isEmpty() ? row.defaultCaption.toString() : value;
        setCaption(controls.value(row.control.toString()), caption);
    }
}
