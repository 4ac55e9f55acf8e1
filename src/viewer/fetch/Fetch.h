#pragma once

#include "network/TcpClient.h"
#include "picture/Still.h"
#include "shared/Timer.h"
#include "viewer/fetch/FetchOutcome.h"
#include "viewer/fetch/FetchProtocol.h"

#include <QFile>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class History;

/// Fetches one camera image at a time: from an address to a body that its owner accepts as a
/// picture. Owns the socket (`sckMain`), the idle time-out (`tmrOut`), the one of a server that
/// says nothing at all, be it before a secure connection is encrypted (`tmrNoAnswer`), the timer
/// that hides the status line afterwards
/// (`tmrFalse`) and the temporary file. Knows no window.
///
/// Everything happens in socket and timer events; Refresh() returns at once. A new Refresh() in
/// any state abandons the fetch under way.
class Fetch : public QObject
{
    Q_OBJECT

public:
    static constexpr int IdleTimeoutMs = 10'000;
    static constexpr int NoAnswerMs = 60'000;
    static constexpr int HideStatusMs = 1'000;
    /// So many redirects in a row lead to no picture: the last of them is not followed.
    static constexpr int MostRedirects = 20;

    /// Shows the picture that `body` holds, keeps it in the history, and gives it back. Null, and
    /// nothing changes, where it holds none.
    using Accept = std::function<Still(const QByteArray& body)>;

    /// `folder` is the folder of the temporary file, the application folder. `history`, which
    /// outlives it, knows the date of the newest image of an address.
    Fetch(const QString& folder, const History& history, Accept accept, QObject* parent);

    /// The camera key as given, without "http://". Setting it fetches nothing.
    QString Url() const { return m_url; }
    void setUrl(const QString& url);
    /// As above; as long as Url is unchanged, Refresh() fetches `camera`, the whole camera key that
    /// `url` (host and path alone) was fetched by. An empty one stands for `url` itself.
    void setUrl(const QString& url, const QString& camera);

    /// Ask for new images only, and refuse a body that equals the last accepted one.
    bool NewOnly() const { return m_newOnly; }
    void setNewOnly(bool on) { m_newOnly = on; }

    /// Starts a fetch of `url` (a camera key without "http://"), or of the stored Url where it
    /// is empty. An address that cannot be fetched ends in a status text alone.
    void Refresh(const QString& url = {});

    /// Fetches `address`, to which the camera's server points, in the camera's place, this once.
    void follow(const QString& address);

    /// Ends the fetch under way; also without one: "  Stopped", Done, and Stopped.
    void Stop();

    /// True from Refresh() until the fetch ends; kept: also after a socket error.
    bool Busy() const { return m_busy; }

    /// The key of the camera being fetched; a redirect does not change it.
    QString camera() const { return m_camera; }
    /// Address of the image being fetched: the first field of its history key.
    QString address() const { return m_target.address(); }
    /// The Last-Modified text of the answer just read; the second field of its history key.
    QString LastModified() const { return m_answer.LastModified(); }

    /// Forgets the last image: whatever comes next is new, and has no date of an older answer.
    void forget();

    /// The user has deleted the image of `body`: where that was the last accepted one, it is new
    /// when it comes again.
    void forgetBody(const QByteArray& body);

    /// Ends everything without a word, for the end of the program.
    void shutDown();

signals:
    /// A fetch begins: the status line may be shown, the debug box empties.
    void Started();
    /// A new text for the status line.
    void StatusText(const QString& text);
    /// The status line has been up for its second after the end.
    void HideStatus();
    void ChunkReceived(const QByteArray& chunk);
    /// A redirect has replaced Url.
    void UrlChanged();
    /// `picture` has been accepted and announced. Also where the handlers of its announcement have
    /// begun another fetch.
    void Accepted(const Still& picture);
    /// The server has nothing newer than the newest image in the history that came from `address`
    /// for `camera`, a whole camera key.
    void NotModified(const QString& address, const QString& camera);
    void Error(const QString& message);
    void Done();
    /// The fetch is over, after all its other signals. `gotBody`: the server sent one, be it a
    /// new image, an old one or no picture at all. Not emitted for Stop().
    void Ended(bool gotBody);
    /// The user has stopped it, and no handler of Done has started another.
    void Stopped();
    /// What came of it, told last of all. Not emitted for Stop().
    void Outcome(const FetchOutcome& outcome);

private:
    void begin(const QString& address);
    void start(const QString& address);
    void connected();
    void dataArrival();
    void socketError(const QString& description, FetchOutcome::Kind kind);
    void refuse(const QString& error, const QString& status, FetchOutcome::Kind kind);
    FetchOutcome::Kind refusalKind() const;
    void redirect();
    void FinishFetch();
    void refuseBody(FetchOutcome::Kind kind);

    /// How a fetch ends, in the order in which it is told. What is empty is not told.
    struct Ending
    {
        QString status = {};
        std::optional<QString> error = {};
        bool done = false;
        QString lastStatus = {};
        bool gotBody = false;
        /// Busy stays as it was.
        bool staysBusy = false;
        /// The user has ended it: Stopped is told in place of Ended.
        bool stopped = false;
        FetchOutcome::Kind kind = FetchOutcome::Kind::NewPicture;
        /// As in the outcome.
        QString text = {};
    };
    /// Where every fetch ends. Nothing more is told once a handler has started or stopped one.
    void end(const Ending& ending);
    void letGo();
    FetchOutcome outcomeOf(const Ending& ending) const;

    const History& m_history;
    Accept m_accept;
    QString m_folder;
    QString m_url;
    /// What m_url stands for; empty where that is m_url itself.
    QString m_urlCamera;
    QString m_camera;
    /// Where the last answer really pointed to, when its location was cut in the wrong place and
    /// what is being fetched came of that; else empty.
    QString m_misreadLocation;
    FetchTarget m_target;
    FetchAnswer m_answer;
    TcpClient m_client;
    Timer m_tmrOut;
    Timer m_tmrNoAnswer;
    Timer m_tmrFalse;
    QFile m_tempFile;
    /// Of the last image that was accepted, and whose it is.
    QByteArray m_previousBody;
    QString m_previousCamera;
    /// Answers in a row that pointed elsewhere.
    int m_redirects = 0;
    /// What came in the last body's place, where that was no picture.
    FetchOutcome::Sent m_sent = FetchOutcome::Sent::SomethingElse;
    quint64 m_run = 0;
    bool m_newOnly = true;
    bool m_busy = false;
};
