#include "widgets/ElidedLabel.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>

ElidedLabel::ElidedLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setAutoFillBackground(true);
}

void ElidedLabel::ShowStatusText(const QString& text, bool centred)
{
    setAlignment((centred ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter);
    setText(text);
    QAccessibleEvent changed(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&changed);
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

void ElidedLabel::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        emit Click();
}
