#include "shell/FavouritesMenu.h"

#include "camlist/Favourites.h"
#include "widgets/MenuText.h"

#include <QMenu>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Wider names are cut in their middle, so that those that differ only at the end can be told
/// apart.
constexpr int WidestNamePx = 480;

} // namespace

FavouritesMenu::FavouritesMenu(Favourites* favourites, QMenu* menu)
    : QObject(menu)
    , m_favourites(favourites)
    , m_menu(menu)
{
    // Most styles put what does not fit into further columns, beyond the edge of the screen.
    m_menu->setStyleSheet(u"QMenu { menu-scrollable: 1 }"_s);
    connect(favourites, &Favourites::Changed, this, &FavouritesMenu::rebuild);
    rebuild();
}

void FavouritesMenu::rebuild()
{
    const auto& entries = m_favourites->entries();
    while (m_mnuFavGo.size() > entries.size())
        delete m_mnuFavGo.takeLast();
    for (qsizetype i = 0; i < entries.size(); ++i) {
        if (i == m_mnuFavGo.size())
            append();
        // Caption and tag live in the record, whole.
        m_mnuFavGo[i]->setText(menuText(m_menu->fontMetrics().elidedText(
            entries[i].shownName(), Qt::ElideMiddle, WidestNamePx)));
        m_mnuFavGo[i]->setVisible(!m_favourites->isHidden(i));
    }
}

void FavouritesMenu::append()
{
    const qsizetype i = m_mnuFavGo.size();
    auto* one = new QAction(m_menu);
    one->setObjectName(u"mnuFavGo(%1)"_s.arg(i));
    connect(one, &QAction::triggered, this,
            [this, i] { emit Opened(m_favourites->entries().value(i).key); });
    m_mnuFavGo.append(one);
    m_menu->addAction(one);
}
