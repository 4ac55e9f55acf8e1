#include "instance/InstanceServer.h"

#include "instance/FileInbox.h"
#include "instance/InstanceLock.h"
#include "instance/InstanceMessage.h"
#include "shared/Timer.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Between two attempts to serve or to be queued, while the instance that holds the lock does not
/// listen: at first the one, because it may be about to end, later the other.
constexpr int FirstRetryMs = 1;
constexpr int LastRetryMs = 200;
/// For a whole message. A client has written it before it waits.
constexpr int MessageMs = 5'000;
/// Starts that may come at once; the system may allow fewer.
constexpr int Backlog = 1'024;

} // namespace

InstanceServer::InstanceServer(InstanceLock& lock, FileInbox& inbox, QObject* parent)
    : QObject(parent)
    , m_lock(lock)
    , m_inbox(inbox)
    , m_server(this)
    , m_queued(this)
    , m_tmrQueue(new Timer(u"tmrQueue"_s, FirstRetryMs, this))
{
    m_server.setListenBacklogSize(Backlog);
    // With this option listen() replaces a socket of that name; without it one that a killed
    // instance left would be in the way. It would replace that of a living instance too; but the
    // lock is taken before, so there is none.
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &InstanceServer::acceptConnections);
    connect(&m_queued, &QLocalSocket::connected, this, [this] {
        m_tmrQueue->setEnabled(false);
        m_queued.write(instanceMessage::encode(instanceMessage::Kind::Queue));
    });
    // The server has ended: the first instance to see it becomes the server. The system may close
    // a killed one's connections before it releases its lock.
    connect(&m_queued, &QLocalSocket::disconnected, this, [this] {
        m_tmrQueue->setInterval(FirstRetryMs);
        serve();
    });
    connect(m_tmrQueue, &Timer::Tick, this, [this] {
        m_tmrQueue->setInterval(std::min(2 * m_tmrQueue->Interval(), LastRetryMs));
        serveOrQueue();
    });
    serveOrQueue();
}

InstanceServer::~InstanceServer()
{
    m_queued.disconnect(this);
    // In this order: the name goes while the lock is still this instance's, and those queued,
    // which act when their connections end, find the lock free.
    const bool served = isServing();
    m_server.close();
    if (served)
        m_lock.release();
    while (!m_connections.isEmpty())
        drop(m_connections.first());
}

void InstanceServer::serveOrQueue()
{
    serve();
    if (m_tmrQueue->Enabled() && m_queued.state() == QLocalSocket::UnconnectedState)
        m_queued.connectToServer(m_lock.serverName());
}

/// Leaves the timer on where another instance is the server.
void InstanceServer::serve()
{
    const FileLock::Result result = m_lock.take();
    m_tmrQueue->setEnabled(result == FileLock::Result::HeldByAnother);
    // Where nobody can listen (the path may be too long for a socket) nobody has to wait, either.
    if (result == FileLock::Result::Taken && !m_server.listen(m_lock.serverName()))
        m_lock.release();
}

void InstanceServer::acceptConnections()
{
    while (QLocalSocket* connection = m_server.nextPendingConnection()) {
        if (m_connections.size() >= MaxConnections)
            drop(m_connections.first());
        m_connections.append(connection);
        connection->setReadBufferSize(instanceMessage::MaxBytes + 2);
        connect(connection, &QLocalSocket::disconnected, this,
                [this, connection] { drop(connection); });
        connect(connection, &QLocalSocket::readyRead, this,
                [this, connection] { read(connection); });
        auto* timeout = new Timer(u"tmrMessage"_s, MessageMs, connection);
        connect(timeout, &Timer::Tick, this, [this, connection] { drop(connection); });
        timeout->setEnabled(true);
        // It may have come before the signal was connected.
        read(connection);
    }
}

void InstanceServer::read(QLocalSocket* connection)
{
    const QByteArray received = connection->peek(instanceMessage::MaxBytes + 2);
    const qsizetype end = received.indexOf('\0');
    if (end >= 0 && end <= instanceMessage::MaxBytes && end == received.size() - 1)
        handle(connection, received.left(end));
    else if (end >= 0 || received.size() > instanceMessage::MaxBytes)
        drop(connection);
}

void InstanceServer::handle(QLocalSocket* connection, const QByteArray& message)
{
    // A connection carries one message.
    disconnect(connection, &QLocalSocket::readyRead, this, nullptr);
    const auto received = instanceMessage::decode(message);
    if (received && received->kind == instanceMessage::Kind::Queue) {
        connection->findChild<Timer*>(u"tmrMessage"_s)->setEnabled(false);
        return;
    }
    if (!received || !m_inbox.receive(received->text))
        return drop(connection);
    connection->putChar(instanceMessage::Acknowledged);
    connection->disconnectFromServer();
}

void InstanceServer::drop(QLocalSocket* connection)
{
    if (!m_connections.removeOne(connection))
        return;
    connection->disconnect(this);
    connection->abort();
    connection->deleteLater();
}
