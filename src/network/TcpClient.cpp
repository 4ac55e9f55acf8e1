#include "network/TcpClient.h"

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

} // namespace

void TcpClient::SocketDeleter::operator()(QTcpSocket* socket) const
{
    // It may be one of its own signals that ends it.
    socket->disconnect();
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
        m_waitedEnough = true;
        schedule();
    });
}

TcpClient::~TcpClient() = default;

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
    QString host = m_host;
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.mid(1, host.size() - 2);
    if (host.trimmed().isEmpty())
        return false;

    // A QSslSocket, even one without TLS, loads the TLS library: only who needs it waits for it.
    if (m_secure)
        m_socket.reset(new QSslSocket);
    else
        m_socket.reset(new QTcpSocket);
    auto* socket = m_socket.get();
    socket->installEventFilter(this);
    socket->setProxy(QNetworkProxy::NoProxy);
    connect(socket, &QTcpSocket::readyRead, this, &TcpClient::readSocket);
    connect(socket, &QTcpSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        if (error != QAbstractSocket::RemoteHostClosedError) {
            receive();
            failed(error, m_socket->errorString());
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
    connect(m_socket.get(), &QTcpSocket::connected, this, &TcpClient::established);
    connect(m_socket.get(), &QTcpSocket::disconnected, this, &TcpClient::peerHasClosed);
    m_socket->connectToHost(host, static_cast<quint16>(m_port));
}

void TcpClient::connectSecure(const QString& host)
{
    if (!QSslSocket::supportsSsl()) {
        failed(QAbstractSocket::SslInternalError,
               u"Secure connections (TLS) are not available on this computer"_s);
        return;
    }
    auto* socket = static_cast<QSslSocket*>(m_socket.get());
    socket->setPeerVerifyMode(QSslSocket::VerifyPeer);
    connect(socket, &QSslSocket::encrypted, this, &TcpClient::established);
    connect(socket, &QSslSocket::disconnected, this, &TcpClient::securePeerHasClosed);
    connect(socket, &QSslSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        // The farewell of TLS comes so, maybe long before the connection itself ends.
        if (error == QAbstractSocket::RemoteHostClosedError)
            securePeerHasClosed();
    });
    socket->connectToHostEncrypted(host, static_cast<quint16>(m_port));
}

void TcpClient::established()
{
    m_established = true;
    emit Connected();
}

/// Where the peer breaks a connection off before the program hears of it, QTcpSocket connects anew,
/// as often as that happens: tens of thousands of times a second, until its own time-out. So the
/// answers to an attempt, which come to socket notifiers below the socket, are counted.
bool TcpClient::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ChildAdded) {
        m_connectAnswers = 0;
        static_cast<QChildEvent*>(event)->child()->installEventFilter(this);
    } else if (event->type() == QEvent::SockAct && m_socket &&
               m_socket->state() == QAbstractSocket::ConnectingState &&
               ++m_connectAnswers > MostConnectAnswers) {
        if (m_errorNumber < 0)
            failed(QAbstractSocket::ConnectionRefusedError, QTcpSocket::tr("Connection refused"));
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void TcpClient::SendData(const QByteArray& bytes)
{
    if (m_established && m_socket->state() == QAbstractSocket::ConnectedState)
        m_socket->write(bytes);
}

QByteArray TcpClient::GetData()
{
    return std::exchange(m_chunk, {});
}

void TcpClient::Close()
{
    m_headerWait.setEnabled(false);
    m_socket.reset();
    m_received.clear();
    m_chunk.clear();
    m_headerEnd = -1;
    m_searched = 0;
    m_established = false;
    m_firstDelivered = false;
    m_waitedEnough = false;
    m_peerClosed = false;
    m_errorNumber = -1;
    m_errorText.clear();
    m_connectAnswers = 0;
}

/// Before a connection is encrypted, nothing in the socket is the peer's answer.
void TcpClient::receive()
{
    if (m_established)
        m_received += m_socket->readAll();
}

void TcpClient::readSocket()
{
    const bool first = m_received.isEmpty() && !m_firstDelivered;
    receive();
    if (first && !m_received.isEmpty())
        m_headerWait.setEnabled(true);
    schedule();
}

void TcpClient::peerHasClosed()
{
    receive();
    m_peerClosed = true;
    schedule();
}

void TcpClient::securePeerHasClosed()
{
    if (m_established || m_errorNumber >= 0)
        peerHasClosed();
    else
        failed(QAbstractSocket::RemoteHostClosedError,
               u"The server closed the connection before it was secure"_s);
}

void TcpClient::failed(int number, const QString& text)
{
    m_errorNumber = number;
    m_errorText = text;
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
    if (!m_socket)
        return;
    const bool over = m_peerClosed || m_errorNumber >= 0;

    if (!m_received.isEmpty()) {
        if (!m_firstDelivered && !firstChunkIsComplete() && !over)
            return;
        const auto size = m_firstDelivered ? m_received.size() : firstChunkSize();
        if (size == m_received.size()) {
            m_chunk = std::exchange(m_received, {});
        } else {
            m_chunk = m_received.left(size);
            m_received.remove(0, size);
        }
        m_firstDelivered = true;
        m_headerWait.setEnabled(false);
        if (!m_received.isEmpty() || over)
            schedule();
        emit DataArrival();
        return;
    }
    if (!over)
        return;

    const int number = m_errorNumber;
    const QString text = m_errorText;
    Close();
    if (number >= 0)
        emit Error(number, text);
    else
        emit Closed();
}

bool TcpClient::firstChunkIsComplete()
{
    const auto from = std::max<qsizetype>(0, m_searched - 3);
    const auto end = m_received.indexOf("\r\n\r\n", from);
    m_searched = m_received.size();
    if (end >= 0 && m_headerEnd < 0)
        m_headerEnd = end + 4;
    return m_headerEnd >= 0 || m_waitedEnough || m_received.size() >= MaxHeaderBytes;
}

qsizetype TcpClient::firstChunkSize() const
{
    if (m_firstChunk == FirstChunk::Whole || m_headerEnd < 0)
        return m_received.size();
    return std::min(m_received.size(), std::max<qsizetype>(m_headerEnd, PacketBytes));
}
