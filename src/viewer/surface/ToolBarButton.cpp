#include "viewer/surface/ToolBarButton.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QToolTip>

ToolBarButton::ToolBarButton(bool hasArrow, QWidget* parent)
    : QToolButton(parent)
    , m_hasArrow(hasArrow)
{
    setAutoRaise(true);
    setIconSize({IconPx, IconPx});
    setFixedSize(sizeHint());
    setMouseTracking(hasArrow);
    setFocusPolicy(Qt::TabFocus);
}

QSize ToolBarButton::sizeHint() const
{
    return {FaceWidthPx + (m_hasArrow ? ArrowWidthPx : 0), HeightPx};
}

bool ToolBarButton::event(QEvent* event)
{
    const bool done = QToolButton::event(event);
    if (event->type() == QEvent::ToolTip) {
        m_tipAt = static_cast<QHelpEvent*>(event)->globalPos();
        m_shownTip = toolTip();
    } else if (event->type() == QEvent::ToolTipChange && QToolTip::isVisible() &&
               !m_shownTip.isEmpty() && QToolTip::text() == m_shownTip) {
        m_shownTip = toolTip();
        QToolTip::showText(m_tipAt, m_shownTip, this);
    }
    return done;
}

QRect ToolBarButton::faceRect() const
{
    return rect().adjusted(0, 0, m_hasArrow ? -ArrowWidthPx : 0, 0);
}

QRect ToolBarButton::arrowRect() const
{
    return m_hasArrow ? rect().adjusted(FaceWidthPx, 0, 0, 0) : QRect();
}

/// Face and arrow are drawn as two parts, so that their widths do not depend on the style.
void ToolBarButton::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.rect = faceRect();
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
    if (!m_hasArrow)
        return;

    QStyleOptionToolButton part = option;
    part.rect = arrowRect();
    part.icon = {};
    part.state &= ~(QStyle::State_On | QStyle::State_HasFocus);
    if (!m_arrowHovered)
        part.state &= ~(QStyle::State_MouseOver | QStyle::State_Sunken | QStyle::State_Raised);
    painter.drawComplexControl(QStyle::CC_ToolButton, part);

    QStyleOption arrow = option;
    constexpr int arrowSize = 8;
    arrow.rect = QRect(0, 0, arrowSize, arrowSize);
    arrow.rect.moveCenter(arrowRect().center());
    painter.drawPrimitive(QStyle::PE_IndicatorArrowDown, arrow);
}

void ToolBarButton::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && arrowRect().contains(event->position().toPoint())) {
        emit DropDown();
        return;
    }
    QToolButton::mousePressEvent(event);
}

void ToolBarButton::mouseMoveEvent(QMouseEvent* event)
{
    setArrowHovered(arrowRect().contains(event->position().toPoint()));
    QToolButton::mouseMoveEvent(event);
}

void ToolBarButton::leaveEvent(QEvent* event)
{
    setArrowHovered(false);
    QToolButton::leaveEvent(event);
}

void ToolBarButton::setArrowHovered(bool hovered)
{
    if (m_arrowHovered == hovered)
        return;
    m_arrowHovered = hovered;
    update();
}

void ToolBarButton::keyPressEvent(QKeyEvent* event)
{
    if (m_hasArrow && (event->key() == Qt::Key_Down || event->key() == Qt::Key_F4)) {
        emit DropDown();
        return;
    }
    QToolButton::keyPressEvent(event);
}
