#include "viewer/WebCam.h"

#include "display/ImageView.h"
#include "shared/CameraKey.h"
#include "viewer/DebugBox.h"
#include "viewer/Fetch.h"
#include "viewer/History.h"
#include "viewer/IntervalMenu.h"
#include "viewer/RefreshTimer.h"
#include "viewer/TempFiles.h"
#include "viewer/TextStrip.h"
#include "viewer/ToolBar.h"

#include <QLabel>

using namespace Qt::Literals::StringLiterals;

WebCam::WebCam(const QString& folder, QWidget* parent)
    : ViewerSurface(parent)
    , m_folder(folder)
    , m_history(new History(this))
    , m_refreshTimer(new RefreshTimer([this] { return !Url().isEmpty(); }, this))
    , m_fetch(
          new Fetch(folder,
                    {[this](const QString& address) { return m_history->lastModifiedOf(address); },
                     [this](const QByteArray& body) { return acceptBody(body); }, [] {}, [] {}},
                    this))
{
    setAccessibleName(tr("Camera viewer"));
    connectFetch();
    connectRefreshTimer();
    connect(&tbMain(), &ToolBar::ButtonClick, this, &WebCam::toolBarClick);
    // Commands on the history and on files are not part of the viewer yet.
    tbMain().setButtonsEnabled(false, {ToolBar::Stop, ToolBar::Refresh, ToolBar::Timer});
}

WebCam::~WebCam() = default;

void WebCam::connectFetch()
{
    connect(m_fetch, &Fetch::Started, this, [this] {
        lbl().setVisible(m_showStatus);
        txtDebug().startAnew();
    });
    connect(m_fetch, &Fetch::StatusText, this,
            [this](const QString& text) { lbl().ShowStatusText(text); });
    connect(m_fetch, &Fetch::HideStatus, &lbl(), &QWidget::hide);
    connect(m_fetch, &Fetch::ChunkReceived, &txtDebug(), &DebugBox::addChunk);
    connect(m_fetch, &Fetch::UrlChanged, this, &WebCam::UrlChanged);
    connect(m_fetch, &Fetch::Error, this, &WebCam::Error);
    connect(m_fetch, &Fetch::Done, this, &WebCam::Done);
    connect(m_fetch, &Fetch::Ended, m_refreshTimer, &RefreshTimer::fetchEnded);
    connect(m_fetch, &Fetch::Stopped, m_refreshTimer, &RefreshTimer::fetchStopped);
}

void WebCam::connectRefreshTimer()
{
    connect(&mnuTmr(), &IntervalMenu::IntervalChosen, m_refreshTimer, &RefreshTimer::setInterval);
    connect(&mnuTmr(), &IntervalMenu::KeepRefreshingChosen, m_refreshTimer,
            &RefreshTimer::setKeepRefreshing);
    connect(m_refreshTimer, &RefreshTimer::RefreshDue, this, [this] { Refresh(); });
    connect(m_refreshTimer, &RefreshTimer::ToolTip, this,
            [this](const QString& text) { tbMain().setToolTipText(ToolBar::Timer, text); });
    connect(m_refreshTimer, &RefreshTimer::PressedChanged, this,
            [this](bool pressed) { tbMain().setPressed(ToolBar::Timer, pressed); });
    connect(m_refreshTimer, &RefreshTimer::Stalled, this, [this](bool stalled) {
        tbMain().setIconName(ToolBar::Timer, stalled ? u"timer-paused"_s : u"timer"_s);
    });
    connect(m_refreshTimer, &RefreshTimer::NothingToRefresh, this,
            [this] { tbMain().setPressed(ToolBar::Stop, false); });
}

void WebCam::toolBarClick(int index)
{
    switch (index) {
    case ToolBar::Stop:
        m_fetch->Stop();
        break;
    case ToolBar::Refresh:
        if (!Url().isEmpty())
            Refresh();
        break;
    case ToolBar::Timer:
        m_refreshTimer->toggle();
        break;
    default:
        break;
    }
}

bool WebCam::acceptBody(const QByteArray& body)
{
    if (!imgMain().loadPicture(body))
        return false;
    const QString address = m_fetch->address();
    m_history->Append(imgMain().Picture(), address, m_fetch->LastModified(), m_fetch->camera());
    emit ImageChange({}, "http://"_L1 + address);
    lblPic().setText("Image "_L1 + QString::number(m_history->CurrentImage()));
    return true;
}

QString WebCam::Url() const
{
    return m_fetch->Url();
}

void WebCam::setUrl(const QString& url)
{
    m_fetch->setUrl(withoutHttpScheme(url));
}

void WebCam::Refresh(const QString& url)
{
    m_fetch->Refresh(url);
}

void WebCam::CleanUp()
{
    removeTempFiles(m_folder);
}

bool WebCam::NewOnly() const
{
    return m_fetch->NewOnly();
}

void WebCam::setNewOnly(bool on)
{
    m_fetch->setNewOnly(on);
}

bool WebCam::KeepRefreshing() const
{
    return m_refreshTimer->KeepRefreshing();
}

void WebCam::setKeepRefreshing(bool on)
{
    mnuTmr().setKeepRefreshing(on);
    m_refreshTimer->setKeepRefreshing(on);
}

void WebCam::shutDown()
{
    m_refreshTimer->shutDown();
    m_fetch->shutDown();
}

void WebCam::setClock(const Clock& clock)
{
    m_history->setClock(clock);
}
