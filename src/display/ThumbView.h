#pragma once

#include "picture/ImageList.h"
#include "picture/Still.h"

#include <QWidget>

class QScrollBar;
class ThumbCell;
class ThumbPanel;
class Timer;

/// The thumbnail strip: pictures as a grid of small thumbnails, each with a caption "Image " and
/// its number, on a panel that scrolls vertically by bar, wheel and keyboard. Thumbnails are
/// numbered from 1 in order; a click on one, or Enter or Space on the current one, reports its
/// number. The arrow keys, Page Up and Down, Home and End move the current one and scroll to it.
///
/// It keeps no list beside its thumbnails and never reads its owner's: what happens to that list
/// is told by the functions below. They decode nothing: the strip decodes while it is visible
/// only, one picture at each turn of the event loop, those in view first, no larger than needed.
///
/// Positions and sizes are logical pixels.
class ThumbView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int ThumbCount READ ThumbCount)

public:
    /// As many as 16 bits count.
    static constexpr int MaxThumbs = 32767;

    explicit ThumbView(QWidget* parent = nullptr);
    ~ThumbView() override;

    int ThumbCount() const { return m_thumbCount; }

    /// The picture of thumbnail `Index`, which counts from 1; null where there is none.
    /// Kept: after Clear, 1 still gives the picture that the first thumbnail had.
    Still Picture(int Index) const;

    /// Empties the strip.
    void Clear();

    /// Appends a thumbnail of `picture` (a null still stays an empty frame). Does nothing where
    /// there are MaxThumbs.
    void AddImage(const Still& picture);

    /// Removes thumbnail `Index`: the pictures behind it move one place towards the front, and
    /// the last place goes. An Index past the last removes the last; one below 1 is ignored, as
    /// is an empty strip.
    /// Kept: neither panel nor scroll bar follow until the next placement.
    void RemImage(int Index);

    /// Shows exactly the pictures of `images`, or the first MaxThumbs of them. With `Reset` the
    /// strip is cleared first; without, the thumbnails there are used again and the strip stays
    /// where it is scrolled to.
    void ShowImages(const ImageList& images, bool Reset = true);

    /// Makes thumbnail `Index` (from 1) the one that the keyboard begins at, and scrolls to it. An
    /// Index without thumbnail is ignored.
    void makeCurrent(int Index);

signals:
    /// Thumbnail `Index` (from 1) was chosen.
    void Click(int Index);
    /// The pointer rests on thumbnail `Index` (from 1): its owner may show a tip at that place of
    /// the screen.
    void TipWanted(int Index, QPoint globalAt);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void takePictures(const ImageList& images);
    void showFirst();
    void destroyLast();
    void hideFirst();

    void measureRow();
    void layOut();
    void fitPanel();
    void scrollTo(int i);

    void setCurrent(int i, Qt::FocusReason reason);
    void setCurrent(int i);

    void startFilling();
    void fillNext();
    ThumbCell* nextToFill() const;

    ThumbPanel* m_picBack;
    QScrollBar* m_vs;
    Timer* m_tmrFill;
    int m_thumbCount = 0;
    /// Array index of the thumbnail that has the focus when the strip has it.
    int m_current = 0;
};
