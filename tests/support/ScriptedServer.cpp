#include "support/ScriptedServer.h"

#include <QSslConfiguration>
#include <QSslServer>
#include <QTcpSocket>
#include <QTimer>

#include <sys/socket.h>

#include <algorithm>
#include <utility>

namespace {

void reset(QTcpSocket* socket)
{
    while (socket->bytesToWrite() > 0 && socket->waitForBytesWritten()) {
    }
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    if (setsockopt(static_cast<int>(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce,
                   sizeof(atOnce)) != 0)
        qFatal("cannot reset");
    socket->abort();
}

QTcpServer* tlsServer(const QSslConfiguration& tls)
{
    auto* server = new QSslServer;
    server->setSslConfiguration(tls);
    return server;
}

} // namespace

ScriptedServer::ScriptedServer(QTcpServer* server, const QString& scheme)
    : m_server(server)
    , m_scheme(scheme)
{
    connect(server, &QTcpServer::pendingConnectionAvailable, this, &ScriptedServer::accept);
}

ScriptedServer::ScriptedServer(QObject* parent)
    : ScriptedServer(new QTcpServer, {})
{
    setParent(parent);
}

ScriptedServer::ScriptedServer(const QSslConfiguration& tls)
    : ScriptedServer(tlsServer(tls), "https://")
{
}

void ScriptedServer::listen(const QString& address)
{
    if (!m_server->listen(QHostAddress(address)))
        qFatal("cannot listen on %s", qPrintable(address));
}

QString ScriptedServer::url(const QString& path) const
{
    return m_scheme + QStringLiteral("127.0.0.1:%1%2").arg(port()).arg(path);
}

void ScriptedServer::accept()
{
    while (auto* socket = m_server->nextPendingConnection()) {
        const auto n = std::min<qsizetype>(m_connections++, m_scripts.size() - 1);
        const Script script = n < 0 ? Script{{}, Script::End::KeepOpen} : m_scripts[n];
        m_newest = socket;
        ++m_open;
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            --m_open;
            if (m_newest == socket)
                m_newest = nullptr;
            socket->deleteLater();
        });
        if (script.atOnce)
            playTo(socket, script);
        auto request = std::make_shared<QByteArray>();
        connect(socket, &QTcpSocket::readyRead, this, [this, socket, script, request] {
            *request += socket->readAll();
            if (!request->endsWith("\r\n\r\n"))
                return;
            m_requests.append(std::exchange(*request, {}));
            if (!script.atOnce)
                playTo(socket, script);
            emit RequestCame();
        });
    }
}

void ScriptedServer::playTo(QTcpSocket* socket, const Script& script)
{
    if (script.pieces.isEmpty()) {
        if (script.end == Script::End::Close)
            socket->disconnectFromHost();
        else if (script.end == Script::End::Abort)
            socket->abort();
        else if (script.end == Script::End::Reset)
            reset(socket);
        return;
    }
    socket->write(script.pieces.first());
    socket->flush();
    Script rest = script;
    rest.pieces.removeFirst();
    QTimer::singleShot(rest.pieces.isEmpty() ? 0 : 1, socket,
                       [this, socket, rest] { playTo(socket, rest); });
}

void ScriptedServer::sendMore(const QByteArray& bytes)
{
    if (m_newest) {
        m_newest->write(bytes);
        m_newest->flush();
    }
}

void ScriptedServer::closeNewest()
{
    if (m_newest)
        m_newest->disconnectFromHost();
}

quint16 portOfNobody()
{
    ScriptedServer gone;
    gone.listen();
    return gone.port();
}

QByteArray httpAnswer(const QByteArray& body, const QByteArray& headers, const QByteArray& status)
{
    return "HTTP/1.0 " + status + "\r\n" + headers + "\r\n" + body;
}

QByteArray pictureAnswer(const QByteArray& body, const QByteArray& moreHeaders)
{
    return httpAnswer(body, "Content-Type: image/jpeg\r\nContent-Length: " +
                                QByteArray::number(body.size()) + "\r\n" + moreHeaders);
}
