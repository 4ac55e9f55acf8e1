#pragma once

#include <QLine>
#include <QList>
#include <QPoint>
#include <QSize>
#include <QWidget>

class DebugBox;
class ImageView;
class IntervalMenu;
class MessageQueue;
class Notice;
class QLabel;
class ElidedLabel;
class ThumbView;
class ToolBar;
class UrlBanner;

/// The viewer's surface: its child controls, their places, the banner over the image, the hidden
/// debug box and panning by the arrow keys and the pointer. A new picture of the size of the last
/// one keeps its place, another one or a resize does not. Knows nothing of fetches, history or
/// timers of these.
class ViewerSurface : public QWidget
{
    Q_OBJECT

public:
    explicit ViewerSurface(QWidget* parent);

    bool ShowToolBar() const { return m_showToolBar; }
    void setShowToolBar(bool on);

    bool OriginalSize() const;
    void setOriginalSize(bool on);

    /// Show pictures undistorted in the middle of their room. False by default.
    bool KeepProportions() const;
    void setKeepProportions(bool on);

    /// The camera key on show; the banner shows its host.
    virtual QString Url() const = 0;
    /// The bar over the top of the picture, for what is to be said about it.
    Notice& notice() { return *m_notice; }

    /// Opens an http or https address in the user's browser. An address that no browser opens, and
    /// one of another kind, is told in a message.
    void OpenWeb(const QString& address);

protected:
    /// Hides all but the picture (or the strip), which then fills the viewer; the parts come back
    /// as they were.
    void showAlone(bool alone);

    ToolBar& tbMain() { return *m_tbMain; }
    IntervalMenu& mnuTmr() { return *m_mnuTmr; }
    ImageView& imgMain() { return *m_imgMain; }
    ThumbView& tvMain() { return *m_tvMain; }
    ElidedLabel& lbl() { return *m_lbl; }
    QLabel& lblPic() { return *m_lblPic; }
    DebugBox& txtDebug() { return *m_txtDebug; }

    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void layOut();
    void pictureLoaded();
    void panImage(int leftTwips, int topTwips);
    void dragImage(QPoint by);

    /// Clips the image, which may be larger than its room.
    QWidget* m_imageArea;
    ImageView* m_imgMain;
    /// In the image's place, one of them shown; hidden at first.
    ThumbView* m_tvMain;
    DebugBox* m_txtDebug;
    UrlBanner* m_lblURl;
    ToolBar* m_tbMain;
    ElidedLabel* m_lbl;
    QLabel* m_lblPic;
    IntervalMenu* m_mnuTmr;
    Notice* m_notice;
    MessageQueue* m_messages;
    QList<QLine> m_frame;
    QPoint m_imageTwips;
    QSize m_pictureSize;
    bool m_showToolBar = true;
    bool m_alone = false;
    bool m_showsFocus = false;
};
