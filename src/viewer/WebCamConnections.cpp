// What the pieces of the viewer tell each other.

#include "cameras/CameraKey.h"
#include "display/ImageView.h"
#include "shared/JobQueue.h"
#include "viewer/FileCommands.h"
#include "viewer/RefreshTimer.h"
#include "viewer/WebCam.h"
#include "viewer/fetch/Fetch.h"
#include "viewer/history/HistoryView.h"
#include "viewer/history/Player.h"
#include "viewer/movie/MovieCommands.h"
#include "viewer/surface/DebugBox.h"
#include "viewer/surface/IntervalMenu.h"
#include "viewer/surface/StatusLine.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolbarCommands.h"

using namespace Qt::Literals::StringLiterals;

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
    connect(m_fetch, &Fetch::NotModified, this,
            [this](const QString& address, const QString& camera) {
                m_historyView->showNewestOf(address, camera, m_isChoice);
            });
    connect(m_fetch, &Fetch::Error, this, &WebCam::Error);
    connect(m_fetch, &Fetch::Done, this, &WebCam::Done);
    connect(m_fetch, &Fetch::Ended, m_refreshTimer, &RefreshTimer::fetchEnded);
    connect(m_fetch, &Fetch::Outcome, this, [this](const FetchOutcome& outcome) {
        if (outcome.kind == FetchOutcome::Kind::SamePicture && m_isChoice)
            m_historyView->showNewestOf(m_fetch->address(), outcome.camera, true);
        m_isChoice = false;
        emit Outcome(outcome);
    });
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
    connect(m_historyView, &HistoryView::Deleted, this,
            [this](const Still& picture) { m_fetch->forgetBody(picture.bytes()); });
    connect(&imgMain(), &ImageView::DragOutWanted, this, &WebCam::dragOut);
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
                            {ToolBar::Stop, face, [this] { stopFetch(); }},
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
