#pragma once

#include "picture/Still.h"

#include <QImage>
#include <QPixmap>
#include <QRectF>
#include <QWidget>

/// The surface of an ImageView (`picMain`): paints a region of one picture over its whole area,
/// smoothly, at the resolution of the screen, and reports the mouse. Decides nothing.
class PictureCanvas : public QWidget
{
    Q_OBJECT

public:
    /// The region of a picture that is shown whole.
    static constexpr QRectF WholePicture{0, 0, 1, 1};

    explicit PictureCanvas(QWidget* parent);

    /// Shows `region` (fractions of the picture's size; what lies outside of it stays empty).
    /// `decoded` may hold the picture's pixels, no smaller than this canvas; they are used for the
    /// whole picture and then dropped.
    void showRegion(const Still& picture, const QRectF& region, const QImage& decoded = {});

signals:
    void Released(Qt::MouseButton button, QPoint at, QPoint globalAt);
    void Moved(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers, QPoint at);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void render(const QImage& decoded);
    QPixmap wholePicture(const QImage& decoded, QSize device) const;
    QPixmap regionOfPicture(QSize device);

    Still m_picture;
    QRectF m_region = WholePicture;
    /// What is on show, in device pixels; rendered when it is first painted.
    QPixmap m_shown;
    /// The unscaled pixels, kept only while zoomed.
    QImage m_whole;
};
