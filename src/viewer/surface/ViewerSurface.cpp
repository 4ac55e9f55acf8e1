#include "viewer/surface/ViewerSurface.h"

#include "display/ImageView.h"
#include "display/ThumbView.h"
#include "viewer/surface/DebugBox.h"
#include "viewer/surface/IntervalMenu.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/UrlBanner.h"
#include "viewer/surface/ViewerLayout.h"
#include "widgets/ElidedLabel.h"
#include "widgets/MessageQueue.h"
#include "widgets/Notice.h"
#include "widgets/OpenOrTell.h"
#include "widgets/Twips.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int PanStepTwips = 100;
constexpr int StatusPaddingPx = 6;
/// Under the timer button, whose place is computed, not read.
constexpr int TimerMenuLeftTwips = TwipsPerPixel * 17 * 10 + 120;

} // namespace

ViewerSurface::ViewerSurface(QWidget* parent)
    : QWidget(parent)
    , m_imageArea(new QWidget(this))
    , m_imgMain(new ImageView(m_imageArea))
    , m_tvMain(new ThumbView(this))
    , m_txtDebug(new DebugBox(this))
    , m_lblURl(new UrlBanner(this))
    , m_tbMain(new ToolBar(this))
    , m_lbl(new ElidedLabel(this))
    , m_lblPic(new QLabel(this))
    , m_mnuTmr(new IntervalMenu(this))
    , m_notice(new Notice(this))
    , m_messages(new MessageQueue(this))
{
    setFocusPolicy(Qt::StrongFocus);
    m_imgMain->setObjectName(u"imgMain"_s);
    m_tvMain->setObjectName(u"tvMain"_s);
    m_tvMain->hide();
    m_tbMain->setObjectName(u"tbMain"_s);
    m_lbl->setObjectName(u"lbl"_s);
    m_lblPic->setObjectName(u"lblPic"_s);
    m_lblPic->setTextFormat(Qt::PlainText);
    m_lblPic->setText(u"Image N/A"_s);
    m_lblPic->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_lblPic->installEventFilter(this);

    connect(m_imgMain, &ImageView::PictureLoad, this, &ViewerSurface::pictureLoaded);
    connect(m_imgMain, &ImageView::Restored, this, &ViewerSurface::layOut);
    connect(m_imgMain, &ImageView::PanWanted, this, &ViewerSurface::dragImage);
    connect(m_imgMain, &ImageView::MouseMove, this, [this](int button, int, int, int y) {
        m_lblURl->mouseMovedOverImage(button, y, Url());
    });
    connect(m_lblURl, &UrlBanner::OpenRequested, this, &ViewerSurface::OpenWeb);
    connect(m_tbMain, &ToolBar::ButtonDropDown, this, [this](int index) {
        if (index == ToolBar::Timer)
            m_mnuTmr->popup(
                mapToGlobal(QPoint(pixelsFromTwips(TimerMenuLeftTwips), m_tbMain->height())));
    });
}

void ViewerSurface::OpenWeb(const QString& address)
{
    openOrTell(address, *m_messages);
}

void ViewerSurface::setShowToolBar(bool on)
{
    m_showToolBar = on;
    m_tbMain->setVisible(on && !m_alone);
    layOut();
}

void ViewerSurface::showAlone(bool alone)
{
    m_alone = alone;
    m_tbMain->setVisible(m_showToolBar && !alone);
    m_lblPic->setVisible(!alone);
    layOut();
}

bool ViewerSurface::OriginalSize() const
{
    return m_imgMain->OriginalSize();
}

void ViewerSurface::setOriginalSize(bool on)
{
    m_imgMain->setOriginalSize(on);
    layOut();
}

bool ViewerSurface::KeepProportions() const
{
    return m_imgMain->KeepProportions();
}

void ViewerSurface::setKeepProportions(bool on)
{
    m_imgMain->setKeepProportions(on);
}

/// A picture that follows on one of its size keeps the place that it was moved to.
void ViewerSurface::pictureLoaded()
{
    const QPoint place = m_imageTwips;
    const QSize size = m_imgMain->Picture().size();
    layOut();
    if (size == m_pictureSize)
        panImage(place.x() - m_imageTwips.x(), place.y() - m_imageTwips.y());
    m_pictureSize = size;
}

void ViewerSurface::layOut()
{
    const int textHeight = fontMetrics().height() + StatusPaddingPx;
    const ViewerLayout layout = layOutViewer({
        .control = size(),
        .toolBarVisible = m_showToolBar,
        .toolBarHeight = ToolBar::HeightPx,
        .statusHeight = textHeight,
        .captionWidth = fontMetrics().horizontalAdvance(u"Image 32767  "_s),
        .bannerHeight = textHeight,
        .debugVisible = !m_txtDebug->isHidden(),
        .alone = m_alone,
        .originalSize = OriginalSize(),
        .picture = m_imgMain->Picture().size(),
    });
    // A new picture mostly finds its place as it was: then nothing but the picture is painted.
    if (m_frame != layout.frame || m_imageArea->geometry() != layout.imageArea)
        update();
    m_frame = layout.frame;
    m_tbMain->setGeometry(layout.toolBar);
    m_imageArea->setGeometry(layout.imageArea);
    m_imgMain->setGeometry(layout.image.translated(-layout.imageArea.topLeft()));
    m_tvMain->setGeometry(layout.imageArea);
    m_lblURl->setGeometry(layout.banner);
    m_notice->setRoom(layout.imageArea);
    m_txtDebug->setGeometry(layout.debugBox);
    m_lbl->setGeometry(layout.statusLine);
    m_lblPic->setGeometry(layout.caption);
    m_imageTwips = m_imgMain->pos() * TwipsPerPixel;
    m_imgMain->setLargerThanRoom(m_imgMain->width() > m_imageArea->width() ||
                                 m_imgMain->height() > m_imageArea->height());
}

void ViewerSurface::panImage(int leftTwips, int topTwips)
{
    m_imageTwips += QPoint(leftTwips, topTwips);
    m_imgMain->move(pixelsFromTwips(m_imageTwips.x()), pixelsFromTwips(m_imageTwips.y()));
}

/// The pointer moves the image no further than until its edge meets that of the room, unless the
/// keyboard has moved it there already.
void ViewerSurface::dragImage(QPoint by)
{
    const auto moved = [](int at, int step, int length, int room) {
        if (length <= room)
            return at;
        return std::clamp(at + step, std::min(at, room - length), std::max(at, 0));
    };
    const QPoint at = m_imgMain->pos();
    const QPoint to(moved(at.x(), by.x(), m_imgMain->width(), m_imageArea->width()),
                    moved(at.y(), by.y(), m_imgMain->height(), m_imageArea->height()));
    m_imgMain->move(to);
    m_imageTwips = to * TwipsPerPixel;
}

void ViewerSurface::resizeEvent(QResizeEvent*)
{
    layOut();
}

void ViewerSurface::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        layOut();
}

void ViewerSurface::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (m_showsFocus) {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(m_imageArea->geometry().adjusted(-2, -2, 1, 1));
    }
    if (!m_imgMain->isVisible())
        return;
    // The frame of a picture larger than its room ends with the room.
    painter.setClipRect(m_imageArea->geometry().marginsAdded({1, 1, 1, 1}));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLines(m_frame);
}

/// The keyboard's way here is shown; a click shows itself.
void ViewerSurface::focusInEvent(QFocusEvent* event)
{
    m_showsFocus =
        event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    update();
}

void ViewerSurface::focusOutEvent(QFocusEvent*)
{
    m_showsFocus = false;
    update();
}

void ViewerSurface::keyPressEvent(QKeyEvent* event)
{
    if (!m_imgMain->isVisible()) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
        panImage(-PanStepTwips, 0);
        break;
    case Qt::Key_Right:
        panImage(PanStepTwips, 0);
        break;
    case Qt::Key_Up:
        panImage(0, -PanStepTwips);
        break;
    case Qt::Key_Down:
        panImage(0, PanStepTwips);
        break;
    default:
        QWidget::keyPressEvent(event);
        break;
    }
}

/// The mouse's way to the image's menu is its own; this is the menu key's.
void ViewerSurface::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() == QContextMenuEvent::Keyboard && m_imgMain->isVisible())
        m_imgMain->popUpMenu(m_imageArea->mapToGlobal(m_imageArea->rect().center()));
}

bool ViewerSurface::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_lblPic && event->type() == QEvent::MouseButtonPress) {
        const auto* press = static_cast<QMouseEvent*>(event);
        if (press->button() == Qt::RightButton && press->modifiers() == Qt::ShiftModifier) {
            m_txtDebug->setVisible(m_txtDebug->isHidden());
            layOut();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
