#pragma once

#include <QWidget>

/// The edge between two columns that a person drags: a thin widget over the gap between them. It
/// moves nothing; whoever owns the columns does, and places the edge anew. The keyboard passes it.
class ColumnEdge : public QWidget
{
    Q_OBJECT

public:
    explicit ColumnEdge(QWidget* parent);

signals:
    /// The primary button drags the edge: its left should be at `left` of the parent, which may be
    /// anywhere, also outside of it.
    void Dragged(int left);
    /// A double click: the edge should be where it is at first.
    void ResetWanted();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    /// Where in the edge it is held.
    int m_held = 0;
};
