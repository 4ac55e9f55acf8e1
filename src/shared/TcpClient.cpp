#include "shared/TcpClient.h"

#include <QChildEvent>
#include <QNetworkProxy>
#include <QTcpSocket>

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

    m_socket.reset(new QTcpSocket);
    auto* socket = m_socket.get();
    socket->installEventFilter(this);
    socket->setProxy(QNetworkProxy::NoProxy);
    connect(socket, &QTcpSocket::connected, this, &TcpClient::Connected);
    connect(socket, &QTcpSocket::readyRead, this, &TcpClient::readSocket);
    connect(socket, &QTcpSocket::disconnected, this, &TcpClient::peerHasClosed);
    connect(socket, &QTcpSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        if (error != QAbstractSocket::RemoteHostClosedError)
            failed(error);
    });
    socket->connectToHost(host, static_cast<quint16>(m_port));
    return true;
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
        if (m_errorNumber < 0) {
            m_errorNumber = QAbstractSocket::ConnectionRefusedError;
            m_errorText = QTcpSocket::tr("Connection refused");
            schedule();
        }
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void TcpClient::SendData(const QByteArray& bytes)
{
    if (m_socket && m_socket->state() == QAbstractSocket::ConnectedState)
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
    m_firstDelivered = false;
    m_waitedEnough = false;
    m_peerClosed = false;
    m_errorNumber = -1;
    m_errorText.clear();
    m_connectAnswers = 0;
}

void TcpClient::readSocket()
{
    const bool first = m_received.isEmpty() && !m_firstDelivered;
    m_received += m_socket->readAll();
    if (first && !m_received.isEmpty())
        m_headerWait.setEnabled(true);
    schedule();
}

void TcpClient::peerHasClosed()
{
    m_received += m_socket->readAll();
    m_peerClosed = true;
    schedule();
}

void TcpClient::failed(int number)
{
    m_received += m_socket->readAll();
    m_errorNumber = number;
    m_errorText = m_socket->errorString();
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
