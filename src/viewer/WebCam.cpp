#include "viewer/WebCam.h"

#include "cameras/CameraKey.h"
#include "display/ImageView.h"
#include "display/ThumbView.h"
#include "shared/JobQueue.h"
#include "shared/TempFiles.h"
#include "viewer/FileCommands.h"
#include "viewer/PictureDrag.h"
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

#include <utility>

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
    , m_pictureDrag(new PictureDrag(this))
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

/// Its file is named after the camera's host and the time, or else the program.
void WebCam::dragOut()
{
    const int n = m_history->CurrentImage();
    QString name = u"Pevora"_s;
    if (const QDateTime time = m_history->fetchedAt(n); time.isValid())
        name = hostPartOf(m_history->addressOf(n).value_or(QString())) +
               time.toLocalTime().toString(u" yyyy-MM-dd HH-mm-ss");
    m_pictureDrag->drag(imgMain().Picture(), name);
}

void WebCam::Play()
{
    m_historyView->leaveStrip();
    m_player->Play();
}

void WebCam::showCamera(const QString& key)
{
    if (m_player->isPlaying())
        stopMovie();
    m_historyView->leaveStrip();
    // What an image of the history came from has no port in Url: the same Url, set again, would
    // stand for that camera and not for the one of `key`.
    setUrl({});
    setUrl(key);
    m_isChoice = true;
    m_fetch->Refresh();
}

void WebCam::showPictureAlone(bool alone)
{
    if (alone) {
        m_stripWaits = !tvMain().isHidden();
        m_historyView->leaveStrip();
    }
    showAlone(alone);
    // A movie that has begun meanwhile has the picture's place.
    if (!alone && std::exchange(m_stripWaits, false) && !isBusy())
        m_historyView->ToggleView();
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
    m_isChoice = false;
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

void WebCam::stopFetch()
{
    m_fetch->Stop();
}

void WebCam::openPicture(const QString& path)
{
    m_files->openImageFile(path);
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

int WebCam::Interval() const
{
    return m_refreshTimer->Interval();
}

void WebCam::setInterval(int seconds)
{
    mnuTmr().setInterval(seconds);
    m_refreshTimer->setInterval(seconds);
}

QString WebCam::LastFolder() const
{
    return m_files->LastFolder();
}

void WebCam::setLastFolder(const QString& folder)
{
    m_files->setLastFolder(folder);
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
    m_history->setClock(clock);
    m_files->setClock(clock);
}
