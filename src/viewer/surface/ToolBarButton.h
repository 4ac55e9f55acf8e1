#pragma once

#include <QToolButton>

/// A button of the viewer's toolbar: a fixed width, whatever the style, and optionally an arrow
/// at its right that asks for a menu. It never toggles by itself: its owner decides what a click
/// means. A tool tip that changes while it is open is shown as it is then.
class ToolBarButton : public QToolButton
{
    Q_OBJECT

public:
    static constexpr int FaceWidthPx = 24;
    static constexpr int ArrowWidthPx = 13;
    static constexpr int HeightPx = 28;
    static constexpr int IconPx = 20;

    ToolBarButton(bool hasArrow, QWidget* parent);

    QSize sizeHint() const override;

signals:
    /// The arrow was pressed, by mouse or (Down, F4) by key.
    void DropDown();

protected:
    bool event(QEvent* event) override;
    void nextCheckState() override {}
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRect faceRect() const;
    QRect arrowRect() const;
    void setArrowHovered(bool hovered);

    bool m_hasArrow;
    bool m_arrowHovered = false;
    /// The tip that was asked for last, and where on the screen.
    QString m_shownTip;
    QPoint m_tipAt;
};
