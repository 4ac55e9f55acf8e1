#include "display/ThumbCell.h"

#include "picture/SmoothScale.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

ThumbCell::ThumbCell(QWidget* parent)
    : QAbstractButton(parent)
{
    setFocusPolicy(Qt::NoFocus);
    resize(SizePx);
    hide();
}

void ThumbCell::setPicture(const Still& picture)
{
    m_picture = picture;
    m_shown = {};
    m_renderedFor = 0;
    update();
}

void ThumbCell::takePictureOf(const ThumbCell& other)
{
    m_picture = other.m_picture;
    m_shown = other.m_shown;
    m_renderedFor = other.m_renderedFor;
    update();
}

bool ThumbCell::needsRendering() const
{
    return !m_picture.isNull() && m_renderedFor != window()->devicePixelRatioF();
}

void ThumbCell::render()
{
    m_renderedFor = window()->devicePixelRatioF();
    const QSize device = (QSizeF(SizePx) * m_renderedFor).toSize();
    const QImage image = smoothlyScaled(m_picture.imageNoSmallerThan(device), device);
    m_shown = QPixmap::fromImage(image);
    m_shown.setDevicePixelRatio(m_renderedFor);
    update();
}

void ThumbCell::paintEvent(QPaintEvent*)
{
    if (needsRendering())
        emit RenderingWanted();
    QPainter painter(this);
    if (m_shown.isNull())
        paintEmptyFrame(painter);
    else
        painter.drawPixmap(0, 0, m_shown);
    if (hasFocusFrame())
        paintFocusFrame(painter);
}

/// In shades of the text colour, so that it stands back in light palettes and in dark ones.
void ThumbCell::paintEmptyFrame(QPainter& painter) const
{
    constexpr int faint = 16; // Of 255.
    constexpr int clear = 80;
    QColor shade = palette().color(QPalette::Text);
    shade.setAlpha(faint);
    painter.fillRect(rect(), shade);
    shade.setAlpha(clear);
    painter.setPen(shade);
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

/// Two colours, because any picture may lie below.
void ThumbCell::paintFocusFrame(QPainter& painter) const
{
    constexpr int outerPx = 3;
    constexpr int innerPx = 1;
    const auto frame = [&](int inset, int width, QPalette::ColorRole role) {
        QPen pen(palette().color(role), width);
        pen.setJoinStyle(Qt::MiterJoin);
        painter.setPen(pen);
        const qreal middle = inset + width / 2.0;
        painter.drawRect(QRectF(rect()).adjusted(middle, middle, -middle, -middle));
    };
    frame(0, outerPx, QPalette::Highlight);
    frame(outerPx, innerPx, QPalette::Base);
}

void ThumbCell::focusInEvent(QFocusEvent* event)
{
    const Qt::FocusReason reason = event->reason();
    // Where it only comes back with the window, it is marked as it was.
    if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
        m_focusByKeyboard = reason != Qt::MouseFocusReason;
    QAbstractButton::focusInEvent(event);
    update();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason)
        emit TabbedInto();
}

/// Leaves all keys but the one that presses buttons to the strip: a button of its own account
/// would move the focus by the arrow keys.
void ThumbCell::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Select)
        QAbstractButton::keyPressEvent(event);
    else
        event->ignore();
}
