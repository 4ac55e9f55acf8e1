#include "DemoServer.h"

#include "Scene.h"

#include <QBuffer>
#include <QHostAddress>
#include <QImageWriter>
#include <QTcpSocket>
#include <QTimer>

namespace {

/// The standard's own words for a status code.
QByteArray reason(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 304:
        return "Not Modified";
    case 400:
        return "Bad Request";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 431:
        return "Request Header Fields Too Large";
    case 505:
        return "HTTP Version Not Supported";
    default:
        return "Internal Server Error";
    }
}

QString forTheLog(const QByteArray& line)
{
    QString text = QString::fromLatin1(line.left(200));
    for (QChar& letter : text) {
        if (letter < u' ' || letter > u'~')
            letter = u'?';
    }
    return text;
}

} // namespace

/// One client: reads a request, answers it, and reads the next when the answer has gone out.
class DemoServer::Connection : public QObject
{
public:
    Connection(DemoServer& server, QTcpSocket* socket)
        : QObject(&server)
        , m_server(server)
    {
        socket->setParent(this);
        m_socket = socket;
        // What a client sends ahead of its answers waits in the operating system.
        m_socket->setReadBufferSize(2 * HttpRequest::maxHeadBytes);
        m_idle.setSingleShot(true);
        m_idle.setInterval(server.m_options.idleMs);
        connect(m_socket, &QTcpSocket::readyRead, this, &Connection::serve);
        connect(m_socket, &QTcpSocket::bytesWritten, this, [this] {
            m_idle.start();
            serve();
        });
        connect(m_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
        connect(&m_idle, &QTimer::timeout, this, [this] { m_socket->abort(); });
        m_idle.start();
        serve();
    }

    ~Connection() override { m_socket->disconnect(this); }

private:
    void serve()
    {
        while (m_socket->bytesToWrite() == 0 && !m_closing) {
            m_received += m_socket->readAll();
            HttpRequest request;
            switch (HttpRequest::take(m_received, request)) {
            case HttpRequest::Outcome::incomplete:
                return;
            case HttpRequest::Outcome::complete:
                answer(request);
                break;
            case HttpRequest::Outcome::broken:
                send(request, 400);
                break;
            case HttpRequest::Outcome::tooLarge:
                send(request, 431);
                break;
            case HttpRequest::Outcome::version:
                send(request, 505);
                break;
            }
        }
        if (m_closing)
            m_socket->readAll();
    }

    void answer(const HttpRequest& request)
    {
        if (request.method != "GET" && request.method != "HEAD")
            return send(request, 405, "Allow: GET, HEAD\r\n");
        if (request.path != "/" && request.path != "/clock.jpg")
            return send(request, 404);
        m_server.renew();
        if (m_server.m_jpeg.isEmpty())
            return send(request, 500);
        const QByteArray fields =
            "Last-Modified: " + httpDate(m_server.m_drawnAt) + "\r\nCache-Control: no-cache\r\n";
        if (m_server.isKnown(request.ifModifiedSince))
            return send(request, 304, fields);
        send(request, 200, fields);
    }

    /// Sends the picture with 200, nothing with 304, and else a line of text that says what is
    /// wrong.
    void send(const HttpRequest& request, int status, const QByteArray& fields = {})
    {
        const bool keepAlive = request.keepAlive && !request.hasBody;
        QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reason(status) +
                          "\r\nDate: " + httpDate(QDateTime::currentDateTimeUtc()) +
                          "\r\nServer: Pevora-demo-camera\r\n" + fields;
        QByteArray body;
        if (status == 200) {
            body = m_server.m_jpeg;
            head += "Content-Type: image/jpeg\r\n";
        } else if (status != 304) {
            body = QByteArray::number(status) + ' ' + reason(status) + '\n';
            head += "Content-Type: text/plain\r\n";
        }
        if (status != 304)
            head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
        head += keepAlive ? "Connection: keep-alive\r\n\r\n" : "Connection: close\r\n\r\n";
        if (request.method == "HEAD")
            body.clear();
        m_socket->write(head + body);
        emit m_server.answered(forTheLog(request.line), status, body.size());
        if (!keepAlive) {
            m_closing = true;
            m_socket->disconnectFromHost();
        }
    }

    DemoServer& m_server;
    QTcpSocket* m_socket = nullptr;
    QTimer m_idle;
    QByteArray m_received;
    bool m_closing = false;
};

DemoServer::DemoServer(const Options& options, QObject* parent)
    : QObject(parent)
    , m_options(options)
{
    connect(&m_ipv4, &QTcpServer::newConnection, this, [this] { acceptFrom(m_ipv4); });
    connect(&m_ipv6, &QTcpServer::newConnection, this, [this] { acceptFrom(m_ipv6); });
}

bool DemoServer::listen(quint16 port, QString& error)
{
    if (m_ipv4.listen(QHostAddress(QHostAddress::LocalHost), port))
        return true;
    error = m_ipv4.errorString();
    return false;
}

bool DemoServer::listenOnIpv6(QString& error)
{
    if (m_ipv6.listen(QHostAddress(QHostAddress::LocalHostIPv6), port()))
        return true;
    error = m_ipv6.errorString();
    return false;
}

void DemoServer::acceptFrom(QTcpServer& server)
{
    while (QTcpSocket* socket = server.nextPendingConnection()) {
        if (m_connections >= maxConnections) {
            socket->deleteLater();
            continue;
        }
        ++m_connections;
        auto* connection = new Connection(*this, socket);
        connect(connection, &QObject::destroyed, this, [this] { --m_connections; });
    }
}

void DemoServer::renew()
{
    if (!m_jpeg.isEmpty() && m_options.unchangedMs > 0 && !m_age.hasExpired(m_options.unchangedMs))
        return;
    m_age.start();
    m_drawnAt = QDateTime::currentDateTime();
    m_jpeg.clear();
    QBuffer buffer(&m_jpeg);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(m_options.quality);
    if (!writer.write(Scene::draw(m_drawnAt, ++m_frame, m_options.size)))
        m_jpeg.clear();
}

bool DemoServer::isKnown(const QDateTime& moment) const
{
    return m_options.unchangedMs > 0 && moment.isValid() &&
           m_drawnAt.toSecsSinceEpoch() <= moment.toSecsSinceEpoch();
}
