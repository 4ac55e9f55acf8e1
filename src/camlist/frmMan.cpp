#include "camlist/frmMan.h"

#include "camlist/FavouritesModel.h"
#include "camlist/MergedLists.h"
#include "widgets/CheckBoxDelegate.h"
#include "widgets/CheckedListView.h"
#include "widgets/Twips.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QHelpEvent>
#include <QPushButton>
#include <QToolTip>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize ManagerSize(460, 400);
constexpr QSize SmallestFavourites(180, 160);
constexpr int ButtonWidth = 108;
/// What the column leaves of the list's width to the frame and the scroll bar.
constexpr int BesideColumnTwips = 400;

/// Says a name in a tooltip only where the column cuts it.
class NameDelegate : public CheckBoxDelegate
{
public:
    using CheckBoxDelegate::CheckBoxDelegate;

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override
    {
        if (event->type() == QEvent::ToolTip &&
            sizeHint(option, index).width() <= view->visualRect(index).width()) {
            QToolTip::hideText();
            return true;
        }
        return CheckBoxDelegate::helpEvent(event, view, option, index);
    }
};

QPushButton* managerButton(const QString& name, const QString& caption, QWidget* parent)
{
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    return button;
}

} // namespace

frmMan::frmMan(Favourites* favourites, QWidget* parent)
    : QDialog(parent)
    , m_favourites(favourites)
    , m_opened(favourites->entries())
    , m_items(new FavouritesModel(favourites->entries(), this))
{
    setObjectName(u"frmMan"_s);
    setWindowTitle(u"Manage Favorites"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    createList();
    createButtons();
    layOut();
    resize(ManagerSize);
    updateButtons();
    m_lvwList->setFocus();
    m_lvwList->setCurrentIndex(m_items->index(0, 0));
}

void frmMan::createList()
{
    m_lvwList = new CheckedListView(m_items, tr("Favorites"), this);
    m_lvwList->setMinimumSize(SmallestFavourites);
    // The ends of names tell cameras apart as often as their beginnings.
    m_lvwList->setTextElideMode(Qt::ElideMiddle);
    m_lvwList->setItemDelegate(new NameDelegate(m_lvwList));
    m_lvwList->header()->setSectionResizeMode(QHeaderView::Fixed);
    m_lvwList->installEventFilter(this);
    connect(m_items, &QAbstractItemModel::dataChanged, this, &frmMan::updateButtons);
    connect(m_items, &QAbstractItemModel::modelReset, this, &frmMan::updateButtons);
}

void frmMan::createButtons()
{
    m_cmdRem = managerButton(u"cmdRem"_s, u"Remove"_s, this);
    m_cmdAll = managerButton(u"cmdAll"_s, u"Select All"_s, this);
    m_cmdNone = managerButton(u"cmdNone"_s, u"De-Select All"_s, this);
    m_cmdSort = managerButton(u"cmdSort"_s, u"Sort"_s, this);
    m_cmdOk = managerButton(u"cmdOk"_s, u"Ok"_s, this);
    m_cmdCan = managerButton(u"cmdCan"_s, u"Cancel"_s, this);
    // A click leaves the keyboard in the list, so that Enter stays "Ok".
    for (auto* one : {m_cmdRem, m_cmdAll, m_cmdNone, m_cmdSort})
        one->setFocusPolicy(Qt::TabFocus);

    connect(m_cmdRem, &QPushButton::clicked, this, &frmMan::removeChecked);
    connect(m_cmdAll, &QPushButton::clicked, this, [this] { m_items->checkAll(true); });
    connect(m_cmdNone, &QPushButton::clicked, this, [this] { m_items->checkAll(false); });
    // Nothing joins the list and no name changes while the window is open: sorted once, it stays
    // sorted.
    connect(m_cmdSort, &QPushButton::clicked, m_items, &FavouritesModel::sortByName);
    connect(m_cmdOk, &QPushButton::clicked, this, &frmMan::accept);
    connect(m_cmdCan, &QPushButton::clicked, this, &frmMan::reject);
}

void frmMan::layOut()
{
    // The desktop's own order of "Ok" and "Cancel"; what accepts is the default button.
    auto* ends = new QDialogButtonBox(this);
    ends->addButton(m_cmdOk, QDialogButtonBox::AcceptRole);
    ends->addButton(m_cmdCan, QDialogButtonBox::RejectRole);

    auto* side = new QVBoxLayout;
    side->addStrut(ButtonWidth);
    side->addWidget(m_cmdRem);
    side->addSpacing(style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing));
    side->addWidget(m_cmdAll);
    side->addWidget(m_cmdNone);
    side->addSpacing(style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing));
    side->addWidget(m_cmdSort);
    side->addStretch();

    auto* top = new QHBoxLayout;
    top->addWidget(m_lvwList, 1);
    top->addLayout(side);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top, 1);
    all->addWidget(ends);

    QWidget* before = m_lvwList;
    for (auto* one : {m_cmdRem, m_cmdAll, m_cmdNone, m_cmdSort, m_cmdOk, m_cmdCan}) {
        setTabOrder(before, one);
        before = one;
    }
}

void frmMan::accept()
{
    // Meanwhile a save may have brought favourites of another instance.
    m_favourites->replaceAll(
        mergedFavourites(m_opened, m_items->favourites(), m_favourites->entries()));
    QDialog::accept();
}

void frmMan::removeChecked()
{
    const int current = m_lvwList->currentIndex().row();
    const int row = current - m_items->checkedCount(current);
    m_items->removeChecked();
    // The current item stays it; one that has gone is followed by the next, or the last.
    m_lvwList->setCurrentIndex(m_items->index(std::min(row, m_items->rowCount() - 1), 0));
}

void frmMan::updateButtons()
{
    setUsable(m_cmdRem, m_items->checkedCount() > 0);
    for (auto* one : {m_cmdAll, m_cmdNone, m_cmdSort})
        setUsable(one, m_items->rowCount() > 0);
}

void frmMan::setUsable(QPushButton* button, bool usable)
{
    // Else the keyboard would go on to the next button, and Enter with it.
    if (!usable && button->hasFocus())
        m_lvwList->setFocus();
    button->setEnabled(usable);
}

bool frmMan::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_lvwList && event->type() == QEvent::Resize)
        m_lvwList->setColumnWidth(0, m_lvwList->width() - pixelsFromTwips(BesideColumnTwips));
    return QDialog::eventFilter(watched, event);
}
