#include "instance/InstanceServer.h"

#include "instance/InstanceLock.h"
#include "shared/Timer.h"

#include <QStringDecoder>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Between two attempts to serve or to stand in line, while the instance that holds the place does
/// not listen: at first the one, because it may be about to go, later the other.
constexpr int FirstLineMs = 1;
constexpr int LastLineMs = 200;
/// For a whole message. A sender has written it before it waits.
constexpr int MessageMs = 5'000;
/// Starts that may come at once; the system may allow fewer.
constexpr int Backlog = 1'024;

} // namespace

InstanceServer::InstanceServer(InstanceLock& place, Take take, QObject* parent)
    : QObject(parent)
    , m_place(place)
    , m_take(std::move(take))
    , m_server(this)
    , m_line(this)
    , m_tmrLine(new Timer(u"tmrLine"_s, FirstLineMs, this))
{
    m_server.setListenBacklogSize(Backlog);
    // With this option listen() puts itself into the place of a socket of that name, where without
    // it one that a killed instance left would stand in the way. It would do so with that of a
    // living instance too; but the place is taken before, so there is none.
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &InstanceServer::welcome);
    connect(&m_line, &QLocalSocket::connected, this, [this] {
        m_tmrLine->setEnabled(false);
        m_line.write(meeting::messageOf(meeting::Kind::Line));
    });
    // The instance that served is gone: whoever is the first to see it serves. The system may take
    // a killed one's connections before its lock.
    connect(&m_line, &QLocalSocket::disconnected, this, [this] {
        m_tmrLine->setInterval(FirstLineMs);
        serve();
    });
    connect(m_tmrLine, &Timer::Tick, this, [this] {
        m_tmrLine->setInterval(std::min(2 * m_tmrLine->Interval(), LastLineMs));
        serveOrStandInLine();
    });
    serveOrStandInLine();
}

InstanceServer::~InstanceServer()
{
    m_line.disconnect(this);
    // In this order: the name goes while the place is still this instance's, and those in line,
    // who wake up when their connections end, find the place free.
    const bool served = isServing();
    m_server.close();
    if (served)
        m_place.leave();
    while (!m_connections.isEmpty())
        drop(m_connections.first());
}

void InstanceServer::serveOrStandInLine()
{
    serve();
    if (m_tmrLine->Enabled() && m_line.state() == QLocalSocket::UnconnectedState)
        m_line.connectToServer(m_place.serverName());
}

/// Leaves the timer on where another instance serves.
void InstanceServer::serve()
{
    const FileLock::Result result = m_place.take();
    m_tmrLine->setEnabled(result == FileLock::Result::HeldByAnother);
    // Where nobody can listen (the path may be too long for a socket) nobody has to wait, either.
    if (result == FileLock::Result::Taken && !m_server.listen(m_place.serverName()))
        m_place.leave();
}

void InstanceServer::welcome()
{
    while (QLocalSocket* connection = m_server.nextPendingConnection()) {
        if (m_connections.size() >= MaxConnections)
            drop(m_connections.first());
        m_connections.append(connection);
        connection->setReadBufferSize(meeting::MaxBytes + 2);
        connect(connection, &QLocalSocket::disconnected, this,
                [this, connection] { drop(connection); });
        connect(connection, &QLocalSocket::readyRead, this,
                [this, connection] { listenTo(connection); });
        auto* silence = new Timer(u"tmrMessage"_s, MessageMs, connection);
        connect(silence, &Timer::Tick, this, [this, connection] { drop(connection); });
        silence->setEnabled(true);
        // It may have spoken before anybody listened.
        listenTo(connection);
    }
}

void InstanceServer::listenTo(QLocalSocket* connection)
{
    const QByteArray heard = connection->peek(meeting::MaxBytes + 2);
    const qsizetype end = heard.indexOf('\0');
    if (end >= 0 && end <= meeting::MaxBytes && end == heard.size() - 1)
        answer(connection, heard.left(end));
    else if (end >= 0 || heard.size() > meeting::MaxBytes)
        drop(connection);
}

void InstanceServer::answer(QLocalSocket* connection, const QByteArray& message)
{
    // Nobody says more than one thing.
    disconnect(connection, &QLocalSocket::readyRead, this, nullptr);
    auto* silence = connection->findChild<Timer*>(u"tmrMessage"_s);
    if (message == QByteArray(1, static_cast<char>(meeting::Kind::Line))) {
        silence->setEnabled(false);
        return;
    }
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString name = decode(QByteArrayView(message).sliced(message.isEmpty() ? 0 : 1));
    const bool good =
        message.startsWith(static_cast<char>(meeting::Kind::File)) && !decode.hasError();
    if (!good || !m_take(name))
        return drop(connection);
    connection->putChar(meeting::Taken);
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
