#pragma once

#include "display/ZoomRegion.h"
#include "picture/Still.h"

#include <QImage>
#include <QPixmap>
#include <QPoint>
#include <QRectF>
#include <QWidget>

/// The surface of an ImageView (`picMain`): paints a region of one picture over its whole area,
/// smoothly, at the resolution of the screen, and reports the mouse. Without a picture it says what
/// to do, in its Caption. Decides nothing.
class PictureCanvas : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString Caption READ Caption WRITE setCaption)

public:
    explicit PictureCanvas(QWidget* parent);

    /// Shows `region` (fractions of the picture's size; what lies outside of it stays empty).
    /// `decoded` may hold the picture's pixels, no fewer than are shown of it; they are used at
    /// once and kept only while a part of the picture is shown, or where the canvas is larger than
    /// any screen: what is seen of it is then rendered alone.
    void showRegion(const Still& picture, const QRectF& region, const QImage& decoded = {});

    /// How large the whole picture is in `region`, in device pixels.
    QSize sizeInDevicePixels(const QRectF& region) const;

    /// What stands in place of a picture, as plain text; a screen reader speaks it as the
    /// description. Empty for none.
    QString Caption() const { return m_caption; }
    void setCaption(const QString& text);

signals:
    /// A button was released that had not dragged anything.
    void Clicked(Qt::MouseButton button, QPoint at, QPoint globalAt);
    void Moved(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers, QPoint at);
    /// The pressed left button has moved by the desktop's drag distance; no click comes of it.
    void DragBegan();
    /// It has moved on by that many pixels since this was last told, or since the press.
    void Dragged(QPoint by);
    void DragEnded();
    /// The wheel was turned by so many notches, away from the user where positive.
    void WheelTurned(double notches, QPointF at);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QSize sizeInDevicePixels() const { return size() * devicePixelRatioF(); }
    bool isBeyondScreens() const;
    bool needsWhole() const;
    QRect inDevicePixels(const QRect& rect) const;
    void render(const QImage& decoded, const QRect& wanted = {});
    QRect placeOfWhole(const QRectF& region) const;
    QPixmap wholePicture(const QImage& decoded, QSize device) const;
    QPixmap partOfPicture(const QRect& part);
    void paintCaption(QPainter& painter) const;
    void describe();
    void drag(const QMouseEvent& event);

    Still m_picture;
    QRectF m_region = ZoomRegion::WholePicture;
    QString m_caption;
    /// What is on show, in device pixels; rendered when it is first painted.
    QPixmap m_shown;
    /// Where that is, and of which size the canvas was then, in device pixels.
    QRect m_shownAt;
    QSize m_shownOf;
    /// The unscaled pixels, kept only as long as needsWhole().
    QImage m_whole;
    /// Where on the screen the left button was pressed, or was when Dragged was last told.
    QPoint m_dragFrom;
    bool m_leftPressed = false;
    bool m_dragging = false;
};
