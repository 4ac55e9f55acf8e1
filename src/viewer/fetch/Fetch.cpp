#include "viewer/fetch/Fetch.h"

#include "cameras/CameraKey.h"
#include "shared/TempFiles.h"
#include "viewer/history/History.h"

#include <QUrl>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isSameAddress(const QString& one, const QString& other)
{
    return QUrl(one).toString(QUrl::FullyEncoded | QUrl::RemoveFragment) == other;
}

} // namespace

Fetch::Fetch(const QString& folder, const History& history, Accept accept, QObject* parent)
    : QObject(parent)
    , m_history(history)
    , m_accept(std::move(accept))
    , m_folder(folder)
    , m_client(TcpClient::FirstChunk::OnePacket, this)
    , m_tmrOut(u"tmrOut"_s, IdleTimeoutMs, this)
    , m_tmrNoAnswer(u"tmrNoAnswer"_s, NoAnswerMs, this)
    , m_tmrFalse(u"tmrFalse"_s, HideStatusMs, this)
{
    m_client.setObjectName(u"sckMain"_s);
    connect(&m_client, &TcpClient::Reached, this, [this] { m_tmrNoAnswer.setEnabled(true); });
    connect(&m_client, &TcpClient::Connected, this, &Fetch::connected);
    connect(&m_client, &TcpClient::DataArrival, this, &Fetch::dataArrival);
    connect(&m_client, &TcpClient::Closed, this, &Fetch::FinishFetch);
    connect(&m_client, &TcpClient::Error, this, [this](int, const QString& description) {
        // What has come of the body is lost with the connection.
        socketError(description, m_answer.HeaderDone() ? FetchOutcome::Kind::Incomplete
                                                       : FetchOutcome::Kind::Failed);
    });
    connect(&m_tmrOut, &Timer::Tick, this, &Fetch::FinishFetch);
    connect(&m_tmrNoAnswer, &Timer::Tick, this, [this] {
        socketError(tr("The server does not answer."), FetchOutcome::Kind::NoAnswer);
    });
    connect(&m_tmrFalse, &Timer::Tick, this, [this] {
        m_tmrFalse.setEnabled(false);
        if (!m_busy)
            emit HideStatus();
    });
}

void Fetch::setUrl(const QString& url, const QString& camera)
{
    m_url = url;
    m_urlCamera = camera;
}

void Fetch::setUrl(const QString& url)
{
    if (url != m_url)
        setUrl(url, {});
}

void Fetch::Refresh(const QString& url)
{
    if (!url.isEmpty())
        setUrl(url);
    m_camera = m_urlCamera.isEmpty() ? m_url : m_urlCamera;
    begin(m_camera);
}

void Fetch::follow(const QString& address)
{
    m_camera = m_urlCamera.isEmpty() ? m_url : m_urlCamera;
    begin(withoutHttpScheme(address));
}

/// Unlike a redirect it has nothing to do with an answer before it.
void Fetch::begin(const QString& address)
{
    m_misreadLocation.clear();
    m_redirects = 0;
    start(address);
}

void Fetch::start(const QString& address)
{
    ++m_run;
    m_target = fetchTargetOf(address);
    m_busy = true;
    m_answer.reset();
    m_tmrOut.setEnabled(false);
    m_tmrNoAnswer.setEnabled(false);
    emit Started();
    emit StatusText("  Connecting to "_L1 + m_target.hostPart);

    m_client.Close();
    m_client.setSecure(m_target.secure);
    m_client.setRemoteHost(m_target.host);
    QString problem;
    if (!m_client.setRemotePort(portNumber(m_target.port)))
        problem = u"The port must be a number from 1 to 65535."_s;
    else if (!m_client.Connect())
        problem = u"The address names no host."_s;
    if (!problem.isEmpty())
        end({.status = "  "_L1 + problem, .kind = FetchOutcome::Kind::BadAddress, .text = problem});
}

void Fetch::Stop()
{
    const auto run = ++m_run;
    letGo();
    emit StatusText(u"  Stopped"_s);
    emit Done();
    if (run == m_run) // else a handler has started the next fetch
        end({.stopped = true});
}

void Fetch::forget()
{
    m_previousBody.clear();
    m_previousCamera.clear();
    m_answer.setLastModified({});
}

void Fetch::forgetBody(const QByteArray& body)
{
    // A head that counts as body lies before the picture, and behind it what is no part of it.
    if (!body.isEmpty() && m_previousBody.contains(body))
        m_previousBody.clear();
}

void Fetch::shutDown()
{
    ++m_run;
    letGo();
    m_tmrFalse.setEnabled(false);
    m_busy = false;
}

void Fetch::connected()
{
    emit StatusText(u"  Connected!"_s);
    m_tmrNoAnswer.restart();
    m_answer.setLastModified(m_history.lastModifiedOf(address(), m_camera));
    m_client.SendData(buildRequest("GET "_L1 + m_target.sentPath(), m_client.RemoteHost(),
                                   m_newOnly ? m_answer.LastModified() : QString(),
                                   m_target.extraHeader));
    // A file that cannot be written costs only the file: the picture is decoded from memory.
    tempFiles::openAnew(m_tempFile,
                        tempFiles::ofFetch(m_folder, imageExtensionOf(m_target.requestPath)));
    m_answer.emptyBody();
}

void Fetch::dataArrival()
{
    const QByteArray chunk = m_client.GetData();
    m_tmrNoAnswer.setEnabled(false);
    m_tmrOut.restart();
    emit ChunkReceived(chunk);

    const auto verdict = m_answer.take(chunk);
    switch (verdict) {
    case FetchAnswer::Verdict::Redirect:
        redirect();
        return;
    case FetchAnswer::Verdict::NotModified:
        emit NotModified(address(), m_camera);
        refuse(u"Not a new image"_s, u"  Not a new image: Process stopped."_s,
               FetchOutcome::Kind::NotModified);
        return;
    case FetchAnswer::Verdict::NotFound:
        refuse(u"File not found"_s, u"  Error: File not found."_s, refusalKind());
        return;
    case FetchAnswer::Verdict::TooLong:
        refuseBody(FetchOutcome::Kind::NotAPicture);
        return;
    case FetchAnswer::Verdict::Receiving:
    case FetchAnswer::Verdict::Complete:
        break;
    }
    if (m_tempFile.isOpen())
        m_tempFile.write(m_answer.lastBodyPart());
    emit StatusText(m_answer.progressText());
    if (verdict == FetchAnswer::Verdict::Complete)
        FinishFetch();
}

/// One without a usable location leads to where it came from. The camera stays the one that was
/// asked for: the next refresh asks it again. The next fetch starts from the event loop, so that
/// Stop gets in between two redirects.
void Fetch::redirect()
{
    if (++m_redirects >= MostRedirects) {
        refuse(u"File not found"_s, u"  Error: File not found."_s, FetchOutcome::Kind::Circle);
        return;
    }
    m_tmrOut.setEnabled(false);
    m_client.Close();
    const QString target = m_answer.redirectUrl().value_or(m_camera);
    const QString location = m_answer.head().locationFrom(webAddressOf(m_camera));
    m_misreadLocation = isSameAddress(webAddressOf(target), location) ? QString() : location;
    setUrl(target, m_camera);
    const auto run = m_run;
    emit UrlChanged();
    QMetaObject::invokeMethod(
        this,
        [this, run, target] {
            if (run == m_run)
                start(target);
        },
        Qt::QueuedConnection);
}

/// What an answer that is no picture's asks a person to do.
FetchOutcome::Kind Fetch::refusalKind() const
{
    using Kind = FetchOutcome::Kind;
    const AnswerHead& head = m_answer.head();
    switch (head.code()) {
    case 301:
    case 308:
        return Kind::Moved;
    case 302:
    case 303:
    case 307:
        return Kind::PointsElsewhere;
    case 401:
    case 403:
        return Kind::SignInWanted;
    default:
        return Kind::Refused;
    }
}

void Fetch::refuse(const QString& error, const QString& status, FetchOutcome::Kind kind)
{
    const auto run = m_run;
    // First of all: a handler of Error may let events go on, and the answer's body is none.
    letGo();
    emit Error(error);
    if (run == m_run) // else a handler has started or stopped a fetch: this one is gone
        end({.status = status, .kind = kind, .text = m_answer.head().status()});
}

/// Kept: Busy stays as it was, so that the error stays on the status line.
void Fetch::socketError(const QString& description, FetchOutcome::Kind kind)
{
    end({.status = "  "_L1 + description,
         .error = description,
         .staysBusy = true,
         .kind = kind,
         .text = description});
}

void Fetch::FinishFetch()
{
    const auto run = m_run;
    letGo();
    emit StatusText(m_answer.completeText());

    // What was set aside for the announced length would stay with the image in the history.
    const QByteArray body = m_answer.takeBody();
    const QByteArray compared = m_answer.comparedBytes(body);
    const bool isSameCamera =
        m_previousCamera.isEmpty() || comparableKey(m_previousCamera) == comparableKey(m_camera);
    if (m_newOnly && isSameCamera && compared == m_previousBody) {
        m_sent = FetchOutcome::Sent::Nothing;
        // Kept: these capitals tell this test from the server's "Not a new image".
        end({.done = true,
             .lastStatus = u"  Not a New Image: Process Stopped."_s,
             .gotBody = true,
             .kind = body.isEmpty() ? FetchOutcome::Kind::NotAPicture
                                    : FetchOutcome::Kind::SamePicture});
        return;
    }
    const bool isIncomplete = m_answer.isIncomplete();
    // The rest of it would never be asked for.
    if (isIncomplete)
        m_answer.setLastModified({});
    // Before it is announced: a handler may want it forgotten.
    const QByteArray previous = std::exchange(m_previousBody, compared);
    const QString previousCamera = std::exchange(m_previousCamera, m_camera);
    const Still picture = m_accept(m_answer.pictureIn(body));
    if (picture.isNull()) {
        m_previousBody = previous;
        m_previousCamera = previousCamera;
        m_sent = whatWasSent(m_answer.pictureIn(body), m_answer.head().value("Content-Type"));
        if (run == m_run)
            refuseBody(isIncomplete ? FetchOutcome::Kind::Incomplete
                                    : FetchOutcome::Kind::NotAPicture);
        return;
    }
    emit Accepted(picture);
    if (run == m_run)
        end({.done = true,
             .gotBody = true,
             .kind =
                 isIncomplete ? FetchOutcome::Kind::Incomplete : FetchOutcome::Kind::NewPicture});
}

void Fetch::refuseBody(FetchOutcome::Kind kind)
{
    end({.status = u"  Error: Not a picture."_s,
         .error = u"Not a picture"_s,
         .gotBody = true,
         .kind = kind});
}

void Fetch::letGo()
{
    m_tmrOut.setEnabled(false);
    m_tmrNoAnswer.setEnabled(false);
    m_tempFile.close();
    m_client.Close();
}

void Fetch::end(const Ending& ending)
{
    const auto run = m_run;
    letGo();
    if (!ending.status.isEmpty())
        emit StatusText(ending.status);
    m_busy = m_busy && ending.staysBusy;
    m_tmrFalse.setEnabled(true);
    if (ending.error)
        emit Error(*ending.error);
    if (ending.done)
        emit Done();
    if (run != m_run)
        return;
    if (!ending.lastStatus.isEmpty())
        emit StatusText(ending.lastStatus);
    if (ending.stopped) {
        emit Stopped();
        return;
    }
    const FetchOutcome outcome = outcomeOf(ending);
    emit Ended(ending.gotBody);
    if (run == m_run)
        emit Outcome(outcome);
}

FetchOutcome Fetch::outcomeOf(const Ending& ending) const
{
    using Kind = FetchOutcome::Kind;
    FetchOutcome outcome{.kind = ending.kind,
                         .camera = m_camera,
                         .host = m_target.host,
                         .text = ending.text,
                         .sent = m_sent};
    if (!m_misreadLocation.isEmpty() && !outcome.isFine()) {
        // What was fetched instead says nothing about the camera, and may not even name a host.
        outcome.kind = Kind::PointsElsewhere;
        outcome.host = fetchTargetOf(m_camera).host;
        outcome.address = m_misreadLocation;
        return outcome;
    }
    if (ending.kind == Kind::Moved || ending.kind == Kind::PointsElsewhere) {
        outcome.address = m_answer.head().locationFrom(webAddressOf(m_camera));
        if (outcome.address.isEmpty())
            outcome.kind = Kind::Refused;
    }
    return outcome;
}
