#pragma once

#include "picture/Still.h"

#include <QWidget>

class QMenu;
class PictureCanvas;

/// Shows one picture: stretched over the whole view, or with OriginalSize at the picture's own
/// size (the view then takes that size). A left click zooms into the 200 x 200 square around it;
/// any other click opens a menu that restores the whole picture or makes it the wallpaper.
///
/// It is the one place that keeps pixels: those on show, and while zoomed the whole picture.
/// Positions and sizes are logical pixels of the view; pictures are drawn at the screen's own
/// resolution.
class ImageView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool OriginalSize READ OriginalSize WRITE setOriginalSize)

public:
    /// Side of the square that a click zooms into, in pixels of the view.
    static constexpr int ZoomSidePx = 200;

    explicit ImageView(QWidget* parent = nullptr);
    ~ImageView() override;

    /// The unscaled picture; null before the first one.
    Still Picture() const { return m_picO; }
    /// Shows `picture` whole and emits PictureLoad. A null still empties the view.
    void setPicture(const Still& picture);
    /// Shows the picture that `bytes` hold (bitmap, GIF or JPEG), decoded just once for this
    /// view, and gives it back. Null, and nothing changes, where they hold none.
    Still loadPicture(const QByteArray& bytes);

    /// Show pictures at their own size. Switching it on resizes the view to the picture at once;
    /// switching it off leaves the size to the owner.
    bool OriginalSize() const { return m_originalSize; }
    void setOriginalSize(bool on);

    /// Size of the unscaled picture in pixels; 0 without one.
    int IWidth() const { return m_picO.size().width(); }
    int IHeight() const { return m_picO.size().height(); }

    /// The unscaled picture, to be saved or copied.
    Still GetOriginalPic() const { return m_picO; }

    /// Pops up the view's menu; nothing without a picture.
    void popUpMenu(QPoint globalAt);

    /// Makes the bitmap file at `path` the desktop background. Fails silently.
    void SetWallpaper(const QString& path);

    /// The part of the picture on show, as fractions of its width and height: (0, 0, 1, 1) unless
    /// zoomed. Parts outside of the picture are shown empty.
    QRectF shownRegion() const { return m_region; }

signals:
    /// A new picture is on show.
    void PictureLoad();
    /// The mouse moved over the picture. `button` and `shift` are bit sets (left 1, right 2,
    /// middle 4; Shift 1, Ctrl 2, Alt 4), `x` and `y` pixels of the view.
    void MouseMove(int button, int shift, int x, int y);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void buildMenu();
    void showPicture(const Still& picture, const QImage& decoded);
    void takePictureSize();
    void fit();
    void click(Qt::MouseButton button, QPoint at, QPoint globalAt);
    void zoomAt(QPoint at);
    void makeWallpaper();
    QSize deviceSize() const;

    Still m_picO;
    PictureCanvas* m_picMain;
    QMenu* m_mnuRc;
    QRectF m_region{0, 0, 1, 1};
    bool m_originalSize = false;
};
