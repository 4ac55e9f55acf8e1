#pragma once

#include "picture/Still.h"

#include <QAbstractButton>
#include <QPixmap>

/// One thumbnail (`img`) of a ThumbView: a picture stretched over 80 x 60 pixels, which the mouse,
/// the keyboard or a screen reader can press (`clicked`).
///
/// It keeps the picture as a Still, and of its pixels only those it shows, in the resolution of
/// its window's screen. It never decodes by itself: as long as its pixels are missing it shows an
/// empty frame, and asks for them when it is painted. Its owner then calls `render` when it suits.
class ThumbCell : public QAbstractButton
{
    Q_OBJECT

public:
    /// In logical pixels.
    static constexpr QSize SizePx{80, 60};

    /// A hidden one of that size, without a picture.
    explicit ThumbCell(QWidget* parent);

    Still picture() const { return m_picture; }
    /// Takes `picture` (null for none) without decoding it.
    void setPicture(const Still& picture);
    /// Takes the picture of `other` with what is rendered of it.
    void takePictureOf(const ThumbCell& other);

    /// Whether `render` has something to do: there is a picture, and it was not tried in the
    /// resolution that the screen has now.
    bool needsRendering() const;
    /// Decodes the picture and keeps the pixels to show. One that does not decode (any more)
    /// leaves the empty frame, and is not tried again.
    void render();
    /// Whether a picture is on show, and not the empty frame.
    bool isRendered() const { return !m_shown.isNull(); }

    /// Whether the focus is marked by a frame: it is here, and did not come by the mouse.
    bool hasFocusFrame() const { return m_focusByKeyboard && hasFocus(); }

signals:
    /// It was painted and `needsRendering`. Must not be answered by `render` at once.
    void RenderingWanted();
    /// The Tab key brought the focus here.
    void TabbedInto();

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void paintEmptyFrame(QPainter& painter) const;
    void paintFocusFrame(QPainter& painter) const;

    Still m_picture;
    /// In device pixels.
    QPixmap m_shown;
    /// The device pixel ratio for which `render` was last called; 0 before.
    qreal m_renderedFor = 0;
    bool m_focusByKeyboard = false;
};
