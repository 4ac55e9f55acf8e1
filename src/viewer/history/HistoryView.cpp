#include "viewer/history/HistoryView.h"

#include "display/ImageView.h"
#include "display/ThumbView.h"
#include "viewer/history/History.h"
#include "viewer/history/ImageTip.h"
#include "viewer/surface/ToolBar.h"

#include <QApplication>
#include <QLabel>
#include <QToolTip>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

HistoryView::HistoryView(History& history, const Parts& parts, QObject* parent)
    : QObject(parent)
    , m_history(history)
    , m_parts(parts)
{
    connect(&m_parts.tvMain, &ThumbView::Click, this, &HistoryView::chooseThumbnail);
    connect(&m_parts.tvMain, &ThumbView::TipWanted, this, &HistoryView::showTip);
}

void HistoryView::ShowEntry(int n)
{
    if (n < 1 || n > m_history.Count())
        return;
    showPicture(n);
    announce(n);
    showCaption(n);
}

void HistoryView::showWithoutAnnouncing(int n)
{
    if (n < 1 || n > m_history.Count())
        return;
    m_history.setCurrentImage(n);
    showPicture(n);
    showCaption(n);
}

void HistoryView::updateCaption()
{
    if (!m_history.isTakingMovie())
        showCaption(m_history.CurrentImage());
}

void HistoryView::showPicture(int n)
{
    m_parts.imgMain.setPicture(m_history.ilHis().Picture(n));
}

/// An opened file's address is empty, and is announced so; a movie's frame has none.
void HistoryView::announce(int n)
{
    if (const auto address = m_history.addressOf(n))
        emit AddressShown(*address, m_history.cameraOf(n));
}

/// An owner that was told of the address may have emptied the history since.
void HistoryView::showCaption(int n)
{
    if (n > m_history.Count())
        return;
    m_parts.lblPic.setText("Image "_L1 + QString::number(n));
    const QString tip = imageTip(m_history, n);
    m_parts.lblPic.setToolTip(asToolTip(tip));
    m_parts.lblPic.setAccessibleDescription(tip);
}

void HistoryView::showNothing()
{
    m_parts.lblPic.setText(u"Image N/A"_s);
    m_parts.lblPic.setToolTip({});
    m_parts.lblPic.setAccessibleDescription({});
}

void HistoryView::mirrorNewest(const Still& picture)
{
    if (m_history.ilHis().Picture(m_history.Count()).isSameAs(picture))
        m_parts.tvMain.AddImage(picture);
    // The strip is told neither of deletions nor of what made room: what it has too many of goes
    // here. Kept: a picture opened from a file does not come to it until it is shown anew.
    const int most = m_history.hasGivenUpBytes() ? 1 : History::MaxImages;
    while (m_parts.tvMain.ThumbCount() > std::max(m_history.Count(), most))
        m_parts.tvMain.RemImage(1);
}

void HistoryView::Back()
{
    ShowEntry(m_history.back());
}

void HistoryView::Forward()
{
    ShowEntry(m_history.forward());
}

void HistoryView::removeCurrent()
{
    const Still deleted = m_history.ilHis().Picture(m_history.CurrentImage());
    if (!m_history.removeCurrent())
        return;
    m_parts.imgMain.setPicture({});
    emit Deleted(deleted);
}

void HistoryView::DeleteCurrent()
{
    if (m_history.Count() == 0)
        return;
    removeCurrent();
    if (m_history.CurrentImage() > m_history.Count())
        m_history.setCurrentImage(m_history.CurrentImage() - 1);
    if (m_history.CurrentImage() > 0)
        ShowEntry(m_history.CurrentImage());
    else
        showNothing();
}

void HistoryView::DeleteCurrentOnly()
{
    if (m_history.Count() == 0)
        return;
    removeCurrent();
    showNothing();
}

void HistoryView::DeleteAll()
{
    emptyHistory();
    m_parts.tvMain.Clear();
    showNothing();
}

void HistoryView::emptyHistory()
{
    m_history.Clear();
    m_parts.imgMain.setPicture({});
}

void HistoryView::beginMovie()
{
    leaveStrip();
    emptyHistory();
    m_history.beginMovie();
}

void HistoryView::endMovie()
{
    leaveStrip();
    if (m_history.endMovie())
        showWithoutAnnouncing(m_history.Count());
    else if (m_parts.imgMain.Picture().isNull())
        showNothing();
}

QString HistoryView::cameraOnShow() const
{
    const Still shown = m_parts.imgMain.Picture();
    int n = m_history.Count();
    while (n >= 1 && !m_history.ilHis().Picture(n).isSameAs(shown))
        --n;
    return m_history.cameraOf(n);
}

void HistoryView::ToggleView()
{
    const bool toStrip = m_parts.tvMain.isHidden();
    showStrip(toStrip);
    if (!toStrip) {
        m_parts.tbMain.setButtonsEnabled(true);
        return;
    }
    m_parts.tvMain.ShowImages(m_history.ilHis());
    m_parts.tvMain.makeCurrent(m_history.CurrentImage());
    m_parts.tbMain.setButtonsEnabled(
        false, {ToolBar::Stop, ToolBar::Refresh, ToolBar::Timer, ToolBar::ToggleView});
}

void HistoryView::leaveStrip()
{
    if (!m_parts.tvMain.isHidden())
        ToggleView();
}

/// The keyboard's place goes along: the viewer itself is the picture's. While the strip is on show,
/// whatever gives the keyboard to the viewer gives it to the strip.
void HistoryView::showStrip(bool on)
{
    ThumbView& strip = m_parts.tvMain;
    QWidget* viewer = strip.parentWidget();
    const auto* focus = QApplication::focusWidget();
    const bool stripHasFocus = focus && strip.isAncestorOf(focus);
    const bool viewerHasFocus = viewer->hasFocus();
    viewer->setFocusProxy(nullptr);
    strip.setVisible(on);
    m_parts.imgMain.setVisible(!on);
    viewer->update();
    if (on && viewerHasFocus)
        strip.setFocus(Qt::OtherFocusReason);
    else if (!on && stripHasFocus)
        viewer->setFocus(Qt::OtherFocusReason);
    if (on)
        viewer->setFocusProxy(&strip);
}

void HistoryView::announceCurrent()
{
    announce(m_history.CurrentImage());
}

void HistoryView::chooseThumbnail(int n)
{
    if (n < 1 || n > m_history.Count())
        return;
    m_history.setCurrentImage(n);
    ShowEntry(n);
    showStrip(false);
    m_parts.tbMain.setButtonsEnabled(true);
}

/// A picture that was opened from a file under the strip has not come to it.
void HistoryView::showTip(int n, QPoint globalAt)
{
    if (m_parts.tvMain.Picture(n).isSameAs(m_history.ilHis().Picture(n)))
        QToolTip::showText(globalAt, asToolTip(imageTip(m_history, n)), &m_parts.tvMain);
}

void HistoryView::showNewestOf(const QString& address, const QString& camera, bool isChoice)
{
    const int n = m_history.newestOf(address, camera);
    if (n == 0)
        return;
    const bool isShown = isChoice ? m_history.ilHis().Picture(n).isSameAs(m_parts.imgMain.Picture())
                                  : isOnShow(address, camera);
    if (!isShown)
        showWithoutAnnouncing(n);
}

bool HistoryView::isOnShow(const QString& address, const QString& camera) const
{
    const Still shown = m_parts.imgMain.Picture();
    for (int n = m_history.Count(); n >= 1; --n) {
        if (m_history.isOf(n, address, camera) && m_history.ilHis().Picture(n).isSameAs(shown))
            return true;
    }
    return false;
}
