#include "shell/parts/FavouritesMenu.h"

#include "camlist/Favourites.h"
#include "widgets/MenuText.h"

#include <QMenu>

#include <iterator>

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

FavouritesMenu::~FavouritesMenu() = default;

void FavouritesMenu::rebuild()
{
    const auto& entries = m_favourites->entries();
    while (std::ssize(m_mnuFavGo) > entries.size())
        m_mnuFavGo.pop_back();
    while (std::ssize(m_mnuFavGo) < entries.size())
        append();
    qsizetype i = 0;
    for (const auto& one : m_mnuFavGo) {
        // Caption and tag live in the record, whole.
        one->setText(menuText(m_menu->fontMetrics().elidedText(entries[i].shownName(),
                                                               Qt::ElideMiddle, WidestNamePx)));
        one->setVisible(!m_favourites->isHidden(i++));
    }
}

void FavouritesMenu::append()
{
    const qsizetype i = std::ssize(m_mnuFavGo);
    const auto& one = m_mnuFavGo.emplace_back(std::make_unique<QAction>(this));
    one->setObjectName(u"mnuFavGo(%1)"_s.arg(i));
    connect(one.get(), &QAction::triggered, this,
            [this, i] { emit Opened(m_favourites->entries().value(i).key); });
    m_menu->addAction(one.get());
}
