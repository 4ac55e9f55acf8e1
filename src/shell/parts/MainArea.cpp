#include "shell/parts/MainArea.h"

#include "shell/parts/ColumnEdge.h"
#include "shell/parts/GotoBar.h"
#include "shell/parts/LeftPanel.h"
#include "shell/parts/MainMenu.h"
#include "viewer/WebCam.h"
#include "widgets/Twips.h"

#include <QAction>
#include <QEvent>

#include <utility>

using namespace Qt::Literals::StringLiterals;

MainArea::MainArea(const QString& folder, const MainMenu& menu, QWidget* window)
    : QWidget(window)
    , m_menu(menu)
    , m_left(new LeftPanel(folder, this))
    , m_cam(new WebCam(folder, this))
    , m_cmbUrl(new GotoBar(m_left->cList(), this))
    , m_edge(new ColumnEdge(this))
    , m_listWidth(pixelsFromTwips(DefaultListWidthTwips))
{
    m_cam->setObjectName(u"Cam"_s);
    connect(m_edge, &ColumnEdge::Dragged, this, &MainArea::dragListTo);
    connect(m_edge, &ColumnEdge::ResetWanted, this,
            [this] { setListWidth(pixelsFromTwips(DefaultListWidthTwips)); });
}

void MainArea::showList(bool shown)
{
    const QWidget* focus = window()->focusWidget();
    m_left->setShown(shown);
    layOut();
    keepKeyboardInView(focus);
}

void MainArea::showGotoBar(bool shown)
{
    const QWidget* focus = window()->focusWidget();
    m_cmbUrl->setVisible(shown);
    layOut();
    keepKeyboardInView(focus);
}

void MainArea::switchToolBar()
{
    const QWidget* focus = window()->focusWidget();
    m_cam->setShowToolBar(!m_cam->ShowToolBar());
    m_menu.entry(MainMenu::mnuViewTb)->setChecked(m_cam->ShowToolBar());
    layOut();
    keepKeyboardInView(focus);
}

/// What is hidden already stays so, whatever shows and hides it by itself.
void MainArea::showPictureAlone(bool alone)
{
    m_pictureAlone = alone;
    if (alone) {
        for (auto* one : findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            if (one == m_cam || one->isWindow() || one->isHidden())
                continue;
            one->hide();
            m_hidden.append(one);
        }
    } else {
        for (const auto& one : std::exchange(m_hidden, {})) {
            if (one)
                one->show();
        }
    }
    m_cam->showPictureAlone(alone);
    layOut();
}

/// The part that had the keyboard may be hidden now, and Qt gives it to whatever comes next.
void MainArea::keepKeyboardInView(const QWidget* before)
{
    if (before && !before->isVisibleTo(window()))
        (m_cmbUrl->isHidden() ? static_cast<QWidget*>(m_cam) : m_cmbUrl)->setFocus();
}

void MainArea::layOut()
{
    if (window()->isMinimized())
        return;
    if (m_pictureAlone) {
        m_cam->setGeometry(rect());
        return;
    }
    const bool listChecked = m_menu.entry(MainMenu::mnuViewList)->isChecked();
    const bool toolBarChecked = m_menu.entry(MainMenu::mnuViewTb)->isChecked();
    const int listPx = shownListWidth(m_listWidth);
    const int listTwips = listPx * TwipsPerPixel;
    window()->setMinimumWidth(
        clientWidthForOuterTwips(minimumOuterWidthTwips(toolBarChecked, listChecked, listTwips)));

    const int barHeight = m_cmbUrl->sizeHint().height();
    m_layout = layOutMainWindow({.client = size(),
                                 .listChecked = listChecked,
                                 .listWidthTwips = listTwips,
                                 .optionHeight = barHeight,
                                 .gotoBarVisible = !m_cmbUrl->isHidden(),
                                 .gotoBarHeight = barHeight},
                                m_layout);
    m_left->place(m_layout, listPx, barHeight);
    m_edge->setGeometry(listPx, 0, m_layout.viewer.left() - listPx, height());
    m_edge->setVisible(listChecked);
    m_cam->setGeometry(m_layout.viewer);
    m_cmbUrl->setGeometry(m_layout.gotoBar);
}

void MainArea::setListWidth(int width)
{
    m_listWidth = width;
    layOut();
}

/// What is kept is the width that came of it, so that the column does not jump later.
void MainArea::dragListTo(int width)
{
    setListWidth(shownListWidth(width));
}

int MainArea::shownListWidth(int wanted) const
{
    return ::listWidth(wanted, m_left->neededWidth(), width());
}

/// The captions of the option buttons have changed, or the font of all.
bool MainArea::event(QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest)
        layOut();
    return QWidget::event(event);
}

void MainArea::resizeEvent(QResizeEvent* /*event*/)
{
    layOut();
}
