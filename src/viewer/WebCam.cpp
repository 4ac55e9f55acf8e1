#include "viewer/WebCam.h"

#include "cameras/CameraKey.h"
#include "display/ImageView.h"
#include "display/ThumbView.h"
#include "shared/JobQueue.h"
#include "shared/TempFiles.h"
#include "viewer/FileCommands.h"
#include "viewer/RefreshTimer.h"
#include "viewer/fetch/Fetch.h"
#include "viewer/history/History.h"
#include "viewer/history/HistoryView.h"
#include "viewer/history/Player.h"
#include "viewer/movie/MovieCommands.h"
#include "viewer/surface/DebugBox.h"
#include "viewer/surface/IntervalMenu.h"
#include "viewer/surface/StatusLine.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolbarCommands.h"
#include "widgets/ElidedLabel.h"

using namespace Qt::Literals::StringLiterals;

WebCam::WebCam(const QString& folder, QWidget* parent)
    : ViewerSurface(parent)
    , m_folder(folder)
    , m_status(new StatusLine(lbl(), this))
    , m_history(new History(this))
    , m_historyView(new HistoryView(*m_history, {imgMain(), tvMain(), lblPic(), tbMain()}, this))
    , m_work(new JobQueue(this))
    , m_player(new Player(*m_history, tbMain(), *m_work, this))
    , m_movies(new MovieCommands({*m_history, *m_historyView, tbMain(), *m_work}, folder, this))
    , m_files(new FileCommands(imgMain(), this))
    , m_refreshTimer(new RefreshTimer(this))
    , m_fetch(new Fetch(
          folder, *m_history, [this](const QByteArray& body) { return acceptBody(body); }, this))
{
    setAccessibleName(tr("Camera viewer"));
    connectFetch();
    connectRefreshTimer();
    connectHistory();
    connectFiles();
    connectToolBar();
}

WebCam::~WebCam() = default;

void WebCam::connectFetch()
{
    connect(m_fetch, &Fetch::Started, this, [this] {
        m_status->setVisible(m_showStatus);
        txtDebug().startAnew();
    });
    connect(m_fetch, &Fetch::StatusText, m_status, &StatusLine::setText);
    connect(m_fetch, &Fetch::HideStatus, m_status, &StatusLine::hide);
    connect(m_fetch, &Fetch::ChunkReceived, &txtDebug(), &DebugBox::addChunk);
    connect(m_fetch, &Fetch::UrlChanged, this, &WebCam::UrlChanged);
    connect(m_fetch, &Fetch::Accepted, m_historyView, &HistoryView::mirrorNewest);
    connect(m_fetch, &Fetch::NotModified, m_historyView, &HistoryView::showNewestOf);
    connect(m_fetch, &Fetch::Error, this, &WebCam::Error);
    connect(m_fetch, &Fetch::Done, this, &WebCam::Done);
    connect(m_fetch, &Fetch::Ended, m_refreshTimer, &RefreshTimer::fetchEnded);
    connect(m_fetch, &Fetch::Outcome, this, &WebCam::Outcome);
    connect(m_fetch, &Fetch::Stopped, m_refreshTimer, &RefreshTimer::fetchStopped);
}

void WebCam::connectRefreshTimer()
{
    connect(&mnuTmr(), &IntervalMenu::IntervalChosen, m_refreshTimer, &RefreshTimer::setInterval);
    connect(&mnuTmr(), &IntervalMenu::KeepRefreshingChosen, m_refreshTimer,
            &RefreshTimer::setKeepRefreshing);
    connect(m_refreshTimer, &RefreshTimer::RefreshDue, this, &WebCam::refreshDue);
    connect(m_refreshTimer, &RefreshTimer::ToolTip, this,
            [this](const QString& text) { tbMain().setToolTipText(ToolBar::Timer, text); });
    connect(m_refreshTimer, &RefreshTimer::PressedChanged, this,
            [this](bool pressed) { tbMain().setPressed(ToolBar::Timer, pressed); });
    connect(m_refreshTimer, &RefreshTimer::Stalled, this, [this](bool stalled) {
        tbMain().setIconName(ToolBar::Timer, stalled ? u"timer-paused"_s : u"timer"_s);
        emit Stalled(stalled);
    });
}

void WebCam::connectHistory()
{
    connect(m_historyView, &HistoryView::AddressShown, this,
            [this](const QString& address, const QString& camera) {
                m_fetch->setUrl(address, camera);
                emit ImageChange({}, webAddressOf(address));
                emit CameraShown(camera);
                emit UrlChanged();
            });
    connect(m_player, &Player::FrameDue, m_historyView, &HistoryView::showWithoutAnnouncing);
}

void WebCam::connectFiles()
{
    connect(m_files, &FileCommands::ImageOpened, this, &WebCam::keepOpened);
    connect(m_files, &FileCommands::MovieOpenRequested, m_movies, &MovieCommands::openMovie);
    connect(m_files, &FileCommands::MovieSaveRequested, m_movies, &MovieCommands::SaveMovie);
    connect(m_files, &FileCommands::StatusText, m_status, &StatusLine::tell);
    connect(m_files, &FileCommands::Saved, this, &WebCam::Saved);
    connect(m_files, &FileCommands::NotSaved, this, &WebCam::NotSaved);
    connect(m_movies, &MovieCommands::Saved, this, &WebCam::Saved);
    connect(m_movies, &MovieCommands::NotSaved, this, &WebCam::NotSaved);
    connect(this, &WebCam::Saved, m_status, &StatusLine::endFault);
    connect(this, &WebCam::NotSaved, m_status,
            [this] { m_status->tellFault(u"  Error: Not saved."_s); });
    connect(m_files, &FileCommands::Answered, this, &WebCam::tellWhereIdle);
    connect(m_work, &JobQueue::Idle, this, &WebCam::tellWhereIdle);
}

void WebCam::connectToolBar()
{
    // Kept: the button's face plays at the slow speed.
    constexpr float fast = 0.2F;
    constexpr float normal = 0.5F;
    constexpr float slow = 1.0F;
    constexpr int face = ToolbarCommands::Face;
    new ToolbarCommands(tbMain(),
                        {
                            {ToolBar::Open, face, [this] { m_files->OpenImage(); }},
                            {ToolBar::Open, 1, [this] { m_files->OpenImage(); }},
                            {ToolBar::Open, 2, [this] { m_files->OpenMovie(); }},
                            {ToolBar::Save, face, [this] { saveFile(&FileCommands::SaveImage); }},
                            {ToolBar::Save, 1, [this] { saveFile(&FileCommands::SaveImage); }},
                            {ToolBar::Save, 2, [this] { saveFile(&FileCommands::SaveMovie); }},
                            {ToolBar::Back, face, [this] { m_historyView->Back(); }},
                            {ToolBar::Forward, face, [this] { m_historyView->Forward(); }},
                            {ToolBar::Stop, face, [this] { m_fetch->Stop(); }},
                            {ToolBar::Refresh, face, [this] { refreshShown(); }},
                            {ToolBar::Timer, face, [this] { m_refreshTimer->toggle(); }},
                            {ToolBar::Delete, face, [this] { m_historyView->DeleteCurrent(); }},
                            {ToolBar::Delete, 1, [this] { m_historyView->DeleteCurrentOnly(); }},
                            {ToolBar::Delete, 2, [this] { deleteAll(); }},
                            {ToolBar::PlayMovie, face, [this] { m_player->start(slow); }},
                            {ToolBar::PlayMovie, 1, [this] { m_player->start(fast); }},
                            {ToolBar::PlayMovie, 2, [this] { m_player->start(normal); }},
                            {ToolBar::PlayMovie, 3, [this] { m_player->start(slow); }},
                            {ToolBar::StopMovie, face, [this] { stopMovie(); }},
                            {ToolBar::ToggleView, face, [this] { m_historyView->ToggleView(); }},
                        },
                        this);
}

void WebCam::refreshShown()
{
    if (!Url().isEmpty())
        Refresh();
}

void WebCam::refreshDue()
{
    if (!Url().isEmpty()) {
        Refresh();
        return;
    }
    // Kept: it is the stop button that is released; the timer button stays pressed.
    tbMain().setPressed(ToolBar::Stop, false);
    m_refreshTimer->fetchStopped();
}

/// The picture and the caption are those of the last frame already.
void WebCam::stopMovie()
{
    m_player->stop();
    tbMain().setButtonsEnabled(true, {ToolBar::StopMovie});
    m_historyView->announceCurrent();
}

void WebCam::deleteAll()
{
    m_historyView->DeleteAll();
    m_fetch->forget();
}

void WebCam::Play()
{
    m_historyView->leaveStrip();
    m_player->Play();
}

Still WebCam::acceptBody(const QByteArray& body)
{
    const Still picture = imgMain().loadPicture(body);
    if (picture.isNull())
        return picture;
    const QString address = m_fetch->address();
    const QString camera = m_fetch->camera();
    m_history->Append(picture, address, m_fetch->LastModified(), camera);
    emit ImageChange({}, webAddressOf(address));
    emit CameraShown(camera);
    m_historyView->updateCaption();
    return picture;
}

/// Neither Url nor the strip changes, and nobody is told.
void WebCam::keepOpened(const Still& picture)
{
    m_history->AppendFile(picture);
    m_historyView->updateCaption();
}

void WebCam::LoadMovie(const QString& FileName)
{
    m_movies->LoadMovie(FileName);
}

bool WebCam::isBusy() const
{
    return m_work->isBusy() || m_files->isAsking();
}

void WebCam::tellWhereIdle()
{
    if (!isBusy())
        emit Idle();
}

/// The file is named after the camera of the picture on show.
void WebCam::saveFile(void (FileCommands::*command)())
{
    const QString key = m_historyView->cameraOnShow();
    m_files->setCamera(m_cameraNames ? m_cameraNames(key) : QString(), key);
    (m_files->*command)();
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

void WebCam::follow(const QString& address)
{
    m_fetch->follow(address);
}

bool WebCam::isStalled() const
{
    return m_refreshTimer->isStalled();
}

void WebCam::resumeRefreshing()
{
    m_refreshTimer->resume();
}

void WebCam::CleanUp()
{
    tempFiles::removeAll(m_folder);
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
    m_work->shutDown();
    m_status->endFault();
    m_refreshTimer->shutDown();
    m_fetch->shutDown();
}

void WebCam::setClock(const Clock& clock)
{
    m_player->setClock(clock);
    m_files->setClock(clock);
}
