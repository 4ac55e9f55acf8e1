#pragma once

#include "shared/Clock.h"
#include "viewer/fetch/FetchOutcome.h"
#include "viewer/surface/ViewerSurface.h"

#include <functional>

class Fetch;
class FileCommands;
class History;
class HistoryView;
class MovieCommands;
class PictureDrag;
class Player;
class RefreshTimer;
class JobQueue;
class StatusLine;
class Still;

/// The camera viewer: fetches the image of one camera, shows it, keeps it and fetches it again.
/// The facade that the rest of the program sees; each piece behind it keeps its own state, and
/// this class only connects them and forwards. Handlers of its signals may start, stop or delete
/// images; the viewer itself they delete later (deleteLater) or not at all.
class WebCam : public ViewerSurface
{
    Q_OBJECT
    Q_PROPERTY(QString Url READ Url WRITE setUrl)
    Q_PROPERTY(bool ShowStatus READ ShowStatus WRITE setShowStatus)
    Q_PROPERTY(bool ShowToolBar READ ShowToolBar WRITE setShowToolBar)
    Q_PROPERTY(bool NewOnly READ NewOnly WRITE setNewOnly)
    Q_PROPERTY(bool OriginalSize READ OriginalSize WRITE setOriginalSize)
    Q_PROPERTY(bool KeepProportions READ KeepProportions WRITE setKeepProportions)
    Q_PROPERTY(bool KeepRefreshing READ KeepRefreshing WRITE setKeepRefreshing)

public:
    /// `folder` is the application folder; temporary files are kept there.
    explicit WebCam(const QString& folder, QWidget* parent = nullptr);
    ~WebCam() override;

    /// The camera key on show, without "http://" and with "https://". Setting it removes a leading
    /// "http://" in any letter case and fetches nothing.
    QString Url() const override;
    void setUrl(const QString& url);

    /// Fetches `url` (a camera key without "http://") and shows it; an empty one fetches the
    /// stored Url again. Returns at once; ImageChange, Done and Error tell what came of it.
    void Refresh(const QString& url = {});

    /// Fetches `address`, to which the camera's server points, in its place this once: the camera
    /// that the next Refresh() asks stays.
    void follow(const QString& address);

    /// Refreshing has stopped although the timer button is pressed.
    bool isStalled() const;
    /// Begins a new countdown where refreshing has stopped; else nothing.
    void resumeRefreshing();

    /// What every choice of a camera comes to: shows and fetches the camera of that key. A movie
    /// that plays is stopped, and the strip gives way to the picture.
    void showCamera(const QString& key);

    /// Leaves nothing in the viewer but the picture, and gives the rest, the strip too where it
    /// was on show, its places back.
    void showPictureAlone(bool alone);

    /// Ends the fetch under way, as the Stop button does.
    void stopFetch();

    /// Shows the picture in the file `path` and keeps it, as Open does.
    void openPicture(const QString& path);

    /// Plays the history as a movie, with the pause of the last play between two frames, until
    /// the user stops it. Of an empty history nothing is played.
    void Play();

    /// Replaces the history by the frames of the movie file `FileName`, as soon as no other long
    /// work runs. A message box tells of a file that is no movie.
    void LoadMovie(const QString& FileName);

    /// Whether a movie is being loaded, saved or played, or a file asked for; Idle follows when
    /// that is over.
    bool isBusy() const;

    /// Deletes the temporary files. Errors are ignored.
    void CleanUp();

    /// Show the status line when a fetch starts; takes effect at the next one. True by default.
    bool ShowStatus() const { return m_showStatus; }
    void setShowStatus(bool on) { m_showStatus = on; }

    /// Take new images only. True by default.
    bool NewOnly() const;
    void setNewOnly(bool on);

    /// Go on refreshing after errors and refused answers. False by default. Switching it on resumes
    /// what has stopped.
    bool KeepRefreshing() const;
    void setKeepRefreshing(bool on);

    /// What the owner calls the camera of a key; empty where it has no name for it. A file is
    /// offered under that name, else under the camera's host.
    using CameraNames = std::function<QString(const QString& key)>;
    void setCameraNames(const CameraNames& names) { m_cameraNames = names; }

    /// Seconds between two fetches, from -32768 to 32767. 30 by default.
    int Interval() const;
    void setInterval(int seconds);

    /// The folder in which the last file was chosen; empty before that.
    QString LastFolder() const;
    void setLastFolder(const QString& folder);

    /// Stops timers and socket, for the end of the program.
    void shutDown();

    /// For tests that move time: times a play, says when an image was fetched, and is in the name
    /// that a file is offered under.
    void setClock(const Clock& clock);

signals:
    /// A fetch ended without a new image: "File not found", "Not a new image", "Not a picture",
    /// or the socket's own description.
    void Error(const QString& message);
    /// A new image is on show, or one of the history. `unused` is always empty; `url` is its
    /// address with its scheme, and "http://" alone for an image opened from a file.
    void ImageChange(const QString& unused, const QString& url);
    /// Follows on ImageChange: the camera key that the image came from, with its port and its extra
    /// header; empty for an image opened from a file.
    void CameraShown(const QString& key);
    /// A fetch that got an answer's body is over, new image or not; also after Stop.
    void Done();
    /// A fetch is over, all that it tells has been told, and the refresh timer knows: what came of
    /// it, for whoever explains it.
    void Outcome(const FetchOutcome& outcome);
    /// Refreshing has stopped although the timer button is pressed, or goes on again.
    void Stalled(bool stalled);
    /// Url has changed otherwise than by setUrl() and Refresh().
    void UrlChanged();
    /// No movie is loaded, saved or played any more, none waits for that, and no file is asked for.
    /// Not emitted at the end of the program.
    void Idle();
    /// An image or a movie is in the file `path`.
    void Saved(const QString& path);
    /// It is not; an old file is as it was. `reason` is a few words without a full stop.
    void NotSaved(const QString& path, const QString& reason);

private:
    void connectFetch();
    void connectRefreshTimer();
    void connectHistory();
    void connectFiles();
    void connectToolBar();
    Still acceptBody(const QByteArray& body);
    void keepOpened(const Still& picture);
    void refreshShown();
    void refreshDue();
    void stopMovie();
    void deleteAll();
    void dragOut();
    void saveFile(void (FileCommands::*command)());
    void tellWhereIdle();

    QString m_folder;
    CameraNames m_cameraNames;
    StatusLine* m_status;
    History* m_history;
    HistoryView* m_historyView;
    JobQueue* m_work;
    Player* m_player;
    MovieCommands* m_movies;
    FileCommands* m_files;
    PictureDrag* m_pictureDrag;
    RefreshTimer* m_refreshTimer;
    Fetch* m_fetch;
    bool m_showStatus = true;
    /// The fetch under way is of a camera that was just chosen.
    bool m_isChoice = false;
    /// Behind a picture that is alone.
    bool m_stripWaits = false;
};
