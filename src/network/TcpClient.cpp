#include "network/TcpClient.h"

#include "network/HeaderEnd.h"
#include "platform/BrokenConnection.h"

#include <QChildEvent>
#include <QNetworkProxy>
#include <QSslSocket>
#include <QTcpSocket>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

/// One answer settles an attempt to connect; a few more are no loop yet.
constexpr int MostConnectAnswers = 4;

bool leftLookUp = false;

} // namespace

void TcpClient::SocketDeleter::operator()(QTcpSocket* socket) const
{
    // It may be one of its own signals that ends it.
    socket->disconnect();
    leftLookUp = leftLookUp || socket->state() == QAbstractSocket::HostLookupState;
    socket->abort();
    socket->deleteLater();
}

TcpClient::TcpClient(FirstChunk firstChunk, QObject* parent)
    : QObject(parent)
    , m_firstChunk(firstChunk)
    , m_headerWait(u"tmrHeader"_s, HeaderWaitMs, this)
{
    connect(&m_headerWait, &Timer::Tick, this, [this] {
        m_headerWait.setEnabled(false);
        m_connection.waitedEnough = true;
        schedule();
    });
}

TcpClient::~TcpClient() = default;

bool TcpClient::hasLeftLookUp()
{
    return leftLookUp;
}

bool TcpClient::setRemotePort(int port)
{
    if (port < 1 || port > 65535)
        return false;
    m_port = port;
    return true;
}

bool TcpClient::Connect()
{
    Close();
    m_wasReset = false;
    QString host = m_host;
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.mid(1, host.size() - 2);
    if (host.trimmed().isEmpty())
        return false;

    // A QSslSocket, even one without TLS, loads the TLS library: only who needs it waits for it.
    if (m_secure)
        m_connection.socket.reset(new QSslSocket);
    else
        m_connection.socket.reset(new QTcpSocket);
    auto* socket = m_connection.socket.get();
    socket->installEventFilter(this);
    socket->setProxy(QNetworkProxy::NoProxy);
    connect(socket, &QTcpSocket::readyRead, this, &TcpClient::readSocket);
    connect(socket, &QTcpSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        if (error != QAbstractSocket::RemoteHostClosedError) {
            receive();
            failed(error, m_connection.socket->errorString());
        }
    });
    if (m_secure)
        connectSecure(host);
    else
        connectPlain(host);
    return true;
}

void TcpClient::connectPlain(const QString& host)
{
    connect(m_connection.socket.get(), &QTcpSocket::connected, this, &TcpClient::Reached);
    connect(m_connection.socket.get(), &QTcpSocket::connected, this, &TcpClient::established);
    connect(m_connection.socket.get(), &QTcpSocket::disconnected, this, &TcpClient::peerHasClosed);
    m_connection.socket->connectToHost(host, static_cast<quint16>(m_port));
}

void TcpClient::connectSecure(const QString& host)
{
    if (!QSslSocket::supportsSsl()) {
        failed(QAbstractSocket::SslInternalError,
               u"Secure connections (TLS) are not available on this computer"_s);
        return;
    }
    auto* socket = static_cast<QSslSocket*>(m_connection.socket.get());
    socket->setPeerVerifyMode(QSslSocket::VerifyPeer);
    connect(socket, &QSslSocket::connected, this, &TcpClient::Reached);
    connect(socket, &QSslSocket::encrypted, this, &TcpClient::established);
    connect(socket, &QSslSocket::disconnected, this, &TcpClient::securePeerHasClosed);
    connect(socket, &QSslSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        // close_notify of TLS comes so, maybe long before the connection itself ends.
        if (error == QAbstractSocket::RemoteHostClosedError)
            securePeerHasClosed();
    });
    socket->connectToHostEncrypted(host, static_cast<quint16>(m_port));
}

void TcpClient::established()
{
    m_connection.established = true;
    emit Connected();
}

/// Where the peer breaks a connection off before the program hears of it, QTcpSocket connects anew,
/// as often as that happens: tens of thousands of times a second, until its own time-out. So the
/// answers to an attempt, which come to socket notifiers below the socket, are counted. A reset
/// is seen here alone: the socket tells it as a close, and by then its descriptor is gone.
bool TcpClient::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ChildAdded) {
        m_connection.connectAnswers = 0;
        static_cast<QChildEvent*>(event)->child()->installEventFilter(this);
    } else if (event->type() == QEvent::SockAct && m_connection.socket &&
               m_connection.socket->state() == QAbstractSocket::ConnectingState &&
               ++m_connection.connectAnswers > MostConnectAnswers) {
        if (!m_connection.failure)
            failed(QAbstractSocket::ConnectionRefusedError, QTcpSocket::tr("Connection refused"));
        return true;
    } else if (event->type() == QEvent::SockAct && m_connection.established &&
               isResetByPeer(m_connection.socket->socketDescriptor())) {
        m_connection.reset = true;
    }
    return QObject::eventFilter(watched, event);
}

void TcpClient::SendData(const QByteArray& bytes)
{
    if (m_connection.established && m_connection.socket->state() == QAbstractSocket::ConnectedState)
        m_connection.socket->write(bytes);
}

QByteArray TcpClient::GetData()
{
    return std::exchange(m_connection.chunk, {});
}

void TcpClient::Close()
{
    m_headerWait.setEnabled(false);
    m_connection = {};
}

/// Before a connection is encrypted, nothing in the socket is the peer's answer.
void TcpClient::receive()
{
    if (m_connection.established)
        m_connection.received += m_connection.socket->readAll();
}

void TcpClient::readSocket()
{
    const bool first = m_connection.received.isEmpty() && !m_connection.firstDelivered;
    receive();
    if (first && !m_connection.received.isEmpty())
        m_headerWait.setEnabled(true);
    schedule();
}

void TcpClient::peerHasClosed()
{
    receive();
    m_connection.peerClosed = true;
    schedule();
}

void TcpClient::securePeerHasClosed()
{
    if (m_connection.established || m_connection.failure)
        peerHasClosed();
    else
        failed(QAbstractSocket::RemoteHostClosedError,
               u"The server closed the connection before it was secure"_s);
}

void TcpClient::failed(int number, const QString& text)
{
    m_connection.failure = {number, text};
    schedule();
}

void TcpClient::schedule()
{
    if (std::exchange(m_scheduled, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_scheduled = false;
            deliverNext();
        },
        Qt::QueuedConnection);
}

/// One signal an event: a handler that closes or connects anew drops all that was to follow.
void TcpClient::deliverNext()
{
    Connection& now = m_connection;
    if (!now.socket)
        return;
    const bool over = now.isOver();

    if (!now.received.isEmpty()) {
        if (!now.firstDelivered && !now.firstChunkIsComplete() && !over)
            return;
        const auto size =
            now.firstDelivered ? now.received.size() : now.firstChunkSize(m_firstChunk);
        if (size == now.received.size()) {
            now.chunk = std::exchange(now.received, {});
        } else {
            now.chunk = now.received.left(size);
            now.received.remove(0, size);
        }
        now.firstDelivered = true;
        m_headerWait.setEnabled(false);
        if (!now.received.isEmpty() || over)
            schedule();
        emit DataArrival();
        return;
    }
    if (!over)
        return;

    const auto failure = now.failure;
    m_wasReset = now.reset;
    Close();
    if (failure)
        emit Error(failure->number, failure->description);
    else
        emit Closed();
}

bool TcpClient::Connection::firstChunkIsComplete()
{
    if (bodyStart < 0)
        bodyStart = headerEnd(received, searched);
    searched = received.size();
    return bodyStart >= 0 || waitedEnough || received.size() >= MaxHeaderBytes;
}

qsizetype TcpClient::Connection::firstChunkSize(FirstChunk firstChunk) const
{
    if (firstChunk == FirstChunk::Whole || bodyStart < 0)
        return received.size();
    return std::min(received.size(), std::max<qsizetype>(bodyStart, PacketBytes));
}
