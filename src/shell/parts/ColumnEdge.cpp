#include "shell/parts/ColumnEdge.h"

#include <QMouseEvent>

using namespace Qt::Literals::StringLiterals;

ColumnEdge::ColumnEdge(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(u"edgList"_s);
    setCursor(Qt::SplitHCursor);
}

void ColumnEdge::mousePressEvent(QMouseEvent* event)
{
    m_held = qRound(event->position().x());
}

void ColumnEdge::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton)
        emit Dragged(mapToParent(event->position().toPoint()).x() - m_held);
}

void ColumnEdge::mouseDoubleClickEvent(QMouseEvent* event)
{
    mousePressEvent(event);
    if (event->button() == Qt::LeftButton)
        emit ResetWanted();
}
