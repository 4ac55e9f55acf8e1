#pragma once

#include "display/ZoomRegion.h"
#include "picture/Still.h"

#include <QWidget>

class QMenu;
class PictureCanvas;

/// Shows one picture: stretched over the whole view, with KeepProportions undistorted in its
/// middle, or with OriginalSize at the picture's own size (the view then takes that size). A left
/// click zooms into the 200 x 200 square around it, the wheel at the pointer, and dragging moves
/// what is larger than its room; any other click opens a menu that restores the whole picture,
/// copies it or makes it the wallpaper. A new picture of the same size keeps zoom and place; a
/// resize does not.
///
/// It is the one place that keeps pixels: those on show, and while zoomed the whole picture.
/// Positions and sizes are logical pixels of the view; pictures are drawn at the screen's own
/// resolution.
class ImageView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool OriginalSize READ OriginalSize WRITE setOriginalSize)
    Q_PROPERTY(bool KeepProportions READ KeepProportions WRITE setKeepProportions)

public:
    explicit ImageView(QWidget* parent = nullptr);
    ~ImageView() override;

    /// The unscaled picture; null before the first one.
    Still Picture() const { return m_picO; }
    /// Shows `picture` and emits PictureLoad: whole, or the part that was on show where the picture
    /// before had its size. A null still empties the view.
    void setPicture(const Still& picture);
    /// Shows the picture that `bytes` hold (see picture/Still.h), decoded just once for this
    /// view, and gives it back. Null, and nothing changes, where they hold none.
    Still loadPicture(const QByteArray& bytes);

    /// Show pictures at their own size. Switching it on resizes the view to the picture at once;
    /// switching it off leaves the size to the owner.
    bool OriginalSize() const { return m_originalSize; }
    void setOriginalSize(bool on);

    /// Show pictures undistorted, with room in the window's colour beside them. Off at first.
    /// Setting it shows the whole picture.
    bool KeepProportions() const { return m_keepProportions; }
    void setKeepProportions(bool on);

    /// Whether the view is larger than the room it stands in, so that it can be moved there:
    /// PanWanted then asks for that.
    void setLargerThanRoom(bool larger);

    /// Size of the unscaled picture in pixels; 0 without one.
    int IWidth() const { return m_picO.size().width(); }
    int IHeight() const { return m_picO.size().height(); }

    /// The unscaled picture, to be saved or copied.
    Still GetOriginalPic() const { return m_picO; }

    /// Pops up the view's menu; nothing without a picture.
    void popUpMenu(QPoint globalAt);

    /// Makes the bitmap file at `path` the desktop background. Fails silently.
    void SetWallpaper(const QString& path);

    /// The unscaled picture goes to the clipboard; nothing does without one.
    void copyPicture() const;

    /// The part of the picture on show, as fractions of its width and height: (0, 0, 1, 1) unless
    /// zoomed or kept in its proportions. Parts outside of the picture are shown empty.
    QRectF shownRegion() const { return m_region.shown(); }

signals:
    /// A new picture is on show.
    void PictureLoad();
    /// The mouse moved over the picture. `button` and `shift` are bit sets (left 1, right 2,
    /// middle 4; Shift 1, Ctrl 2, Alt 4), `x` and `y` pixels of the view.
    void MouseMove(int button, int shift, int x, int y);
    /// The view itself is dragged by that many pixels.
    void PanWanted(QPoint by);
    /// The whole picture is wanted, where the view was before it was moved.
    void Restored();
    /// A picture that cannot be moved is dragged, to be dropped somewhere else.
    void DragOutWanted();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void buildMenu();
    void showPicture(const Still& picture, const QImage& decoded);
    void takePictureSize();
    void fit();
    void restore();
    void showRegion(const QImage& decoded = {});
    void click(Qt::MouseButton button, QPoint at, QPoint globalAt);
    void beginDrag();
    void drag(QPoint by);
    void endDrag();
    void updateCursor();
    bool canMove() const;
    void makeWallpaper();
    QSize neededSize() const;

    Still m_picO;
    PictureCanvas* m_picMain;
    QMenu* m_mnuRc;
    ZoomRegion m_region;
    bool m_originalSize = false;
    bool m_keepProportions = false;
    bool m_largerThanRoom = false;
    /// The picture, or the view, follows the pointer.
    bool m_moving = false;
};
